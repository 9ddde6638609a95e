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

enum class Claim { Held, Taken, Impossible };

Claim claimName(const QDBusConnection& bus, const QString& name) {
    if (!bus.isConnected())
        return Claim::Impossible;
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
    UniqueDescriptor lock;
};

SingleInstance::SingleInstance(const QString& identifier, const QString& runtimeDirectory,
                               const QDBusConnection& bus)
    : m_state(new State{identifier, bus, claimName(bus, identifier), {}}) {
    if (m_state->byName != Claim::Impossible)
        return;
    const QByteArray path = QFile::encodeName(lockPath(identifier, runtimeDirectory));
    UniqueDescriptor file(
        ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        m_state->lock = std::move(file);
}

SingleInstance::~SingleInstance() {
    if (m_state->byName == Claim::Held && m_state->bus.isConnected())
        m_state->bus.unregisterService(m_state->identifier);
}

bool SingleInstance::isFirst() const {
    return m_state->byName == Claim::Held || m_state->lock;
}

bool SingleInstance::activateOther() const {
    if (m_state->byName != Claim::Taken)
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
