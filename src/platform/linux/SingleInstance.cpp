#include "platform/SingleInstance.h"

#include "base/UniqueDescriptor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>

namespace harbrix {

namespace {

constexpr int activationTimeoutMilliseconds = 1000;

enum class Claim { Open, Held, Taken, Impossible };

Claim lookAtName(const QDBusConnection& bus, const QString& name) {
    if (!bus.isConnected())
        return Claim::Impossible;
    const QDBusReply<bool> reply = bus.interface()->isServiceRegistered(name);
    if (!reply.isValid())
        return Claim::Impossible;
    return reply.value() ? Claim::Taken : Claim::Open;
}

Claim registerName(const QDBusConnection& bus, const QString& name) {
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid())
        return Claim::Impossible;
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Claim::Held
                                                                        : Claim::Taken;
}

QString lockPath(const QString& identifier, const QString& runtimeDirectory) {
    if (!runtimeDirectory.isEmpty())
        return QDir(runtimeDirectory).filePath(identifier + QStringLiteral(".lock"));
    // The directory for temporary files is everybody's, so the user is part of the name.
    return QDir::temp().filePath(
        QStringLiteral("%1-%2.lock").arg(identifier, QString::number(::geteuid())));
}

/// How applications are told about the click that led to a call, so that they may take the focus.
QVariantMap platformData() {
    QVariantMap data;
    for (const auto& [variable, key] : {std::pair("XDG_ACTIVATION_TOKEN", "activation-token"),
                                        std::pair("DESKTOP_STARTUP_ID", "desktop-startup-id")}) {
        if (qEnvironmentVariableIsSet(variable))
            data.insert(QString::fromLatin1(key), qEnvironmentVariable(variable));
    }
    return data;
}

} // namespace

struct SingleInstance::State {
    QString identifier;
    QDBusConnection bus;
    Claim byName;
    Claim byLock = Claim::Impossible;
    UniqueDescriptor lock;
};

SingleInstance::SingleInstance(const QString& identifier, const QString& runtimeDirectory,
                               const QDBusConnection& bus)
    : m_state(new State{identifier, bus, lookAtName(bus, identifier), Claim::Impossible, {}}) {
    const QByteArray path = QFile::encodeName(lockPath(identifier, runtimeDirectory));
    UniqueDescriptor file(
        ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file)
        return;
    const bool isLocked = ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
    m_state->byLock = isLocked ? Claim::Held : Claim::Taken;
    if (isLocked)
        m_state->lock = std::move(file);
}

SingleInstance::~SingleInstance() {
    release();
}

void SingleInstance::claimName() {
    if (m_state->byName == Claim::Open && m_state->byLock != Claim::Taken)
        m_state->byName = registerName(m_state->bus, m_state->identifier);
}

bool SingleInstance::isFirst() const {
    const auto is = [this](Claim claim) {
        return m_state->byName == claim || m_state->byLock == claim;
    };
    return !is(Claim::Taken) && (is(Claim::Held) || is(Claim::Open));
}

void SingleInstance::release() {
    if (m_state->byName == Claim::Held && m_state->bus.isConnected())
        m_state->bus.unregisterService(m_state->identifier);
    m_state->byName = m_state->byLock = Claim::Impossible;
    m_state->lock.reset();
}

bool SingleInstance::activateOther() const {
    if (isFirst() || !m_state->bus.isConnected())
        return false;
    const QString path =
        QLatin1Char('/') + QString(m_state->identifier).replace(QLatin1Char('.'), QLatin1Char('/'));
    auto message = QDBusMessage::createMethodCall(m_state->identifier, path,
                                                  QStringLiteral("org.freedesktop.Application"),
                                                  QStringLiteral("Activate"));
    message << platformData();
    const auto reply = m_state->bus.call(message, QDBus::Block, activationTimeoutMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace harbrix
