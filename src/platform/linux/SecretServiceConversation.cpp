#include "platform/linux/SecretServiceConversation.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QThread>

namespace harbrix {

/// The structure (oayays) that a secret crosses the bus in.
struct WireSecret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};

QDBusArgument& operator<<(QDBusArgument& argument, const WireSecret& secret) {
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.contentType;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, WireSecret& secret) {
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    argument.endStructure();
    return argument;
}

} // namespace harbrix

Q_DECLARE_METATYPE(harbrix::WireSecret)

namespace harbrix {

namespace {

using Attributes = QMap<QString, QString>;

const QString serviceName = QStringLiteral("org.freedesktop.secrets");
const QString servicePath = QStringLiteral("/org/freedesktop/secrets");
const QString serviceInterface = QStringLiteral("org.freedesktop.Secret.Service");
const QString collectionInterface = QStringLiteral("org.freedesktop.Secret.Collection");
const QString itemInterface = QStringLiteral("org.freedesktop.Secret.Item");
const QString promptInterface = QStringLiteral("org.freedesktop.Secret.Prompt");
const QString sessionInterface = QStringLiteral("org.freedesktop.Secret.Session");
const QString nowhere = QStringLiteral("/");

void registerTypes() {
    static const bool done = [] {
        qDBusRegisterMetaType<WireSecret>();
        qDBusRegisterMetaType<Attributes>();
        return true;
    }();
    Q_UNUSED(done)
}

Attributes wireAttributes(const SecretIdentity& identity) {
    Attributes attributes = identity.attributes;
    const bool isGeneric = identity.kind == SecretIdentity::Kind::GenericPassword;
    attributes.insert(QStringLiteral("xdg:schema"),
                      isGeneric ? QStringLiteral("com.harbrix.GenericPassword")
                                : QStringLiteral("com.harbrix.InternetPassword"));
    return attributes;
}

QString labelOf(const SecretIdentity& identity) {
    const QString account = identity.attributes.value(QStringLiteral("account"));
    const QString server = identity.attributes.value(QStringLiteral("server"));
    return server.isEmpty() ? QStringLiteral("Harbrix: ") + account
                            : QStringLiteral("Harbrix: ") + account + QLatin1Char('@') + server;
}

SecretStore::Status statusOf(const QDBusMessage& error) {
    const QString name = error.errorName();
    if (name == QLatin1String("org.freedesktop.Secret.Error.IsLocked"))
        return SecretStore::InteractionNotAllowed;
    if (name == QLatin1String("org.freedesktop.Secret.Error.NoSuchObject") ||
        name == QLatin1String("org.freedesktop.DBus.Error.UnknownObject"))
        return SecretStore::NotFound;
    static const QStringList gone = {
        QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"),
        QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner"),
        QStringLiteral("org.freedesktop.DBus.Error.NoReply"),
        QStringLiteral("org.freedesktop.DBus.Error.Timeout"),
        QStringLiteral("org.freedesktop.DBus.Error.TimedOut"),
        QStringLiteral("org.freedesktop.DBus.Error.Disconnected"),
        QStringLiteral("org.freedesktop.DBus.Error.NoServer"),
    };
    if (gone.contains(name) || name.startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn")))
        return SecretStore::NotAvailable;
    return SecretStore::IoError;
}

/// The argument as that type; a default value where the service answered something else.
template <typename T>
T argument(const QVariantList& arguments, qsizetype index) {
    return qdbus_cast<T>(arguments.value(index));
}

} // namespace

SecretServiceConversation::SecretServiceConversation(QDBusConnection bus,
                                                     std::chrono::milliseconds limit)
    : m_bus(std::move(bus)), m_deadline(limit) {
    registerTypes();
}

SecretServiceConversation::~SecretServiceConversation() {
    if (!m_session.path().isEmpty())
        m_bus.send(QDBusMessage::createMethodCall(serviceName, m_session.path(), sessionInterface,
                                                  QStringLiteral("Close")));
}

SecretServiceConversation::Answer<QVariantList>
SecretServiceConversation::call(const QString& path, const QString& interface,
                                const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(serviceName, path, interface, method);
    message.setArguments(arguments);
    // QtDBus takes 0 and -1 for its own limit of 25 s.
    const auto left = static_cast<int>(std::max<qint64>(m_deadline.remainingTime(), 1));
    const QDBusMessage reply = m_bus.call(message, QDBus::Block, left);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return std::unexpected(statusOf(reply));
    return reply.arguments();
}

SecretServiceConversation::Answer<QVariantList>
SecretServiceConversation::callService(const QString& method, const QVariantList& arguments) {
    return call(servicePath, serviceInterface, method, arguments);
}

bool SecretServiceConversation::serviceIsOnBus() {
    const auto askBus = [this](const QString& method, const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), method);
        message.setArguments(arguments);
        const auto left = static_cast<int>(std::max<qint64>(m_deadline.remainingTime(), 1));
        return m_bus.call(message, QDBus::Block, left).arguments().value(0);
    };
    return askBus(QStringLiteral("NameHasOwner"), {serviceName}).toBool() ||
           askBus(QStringLiteral("ListActivatableNames"), {}).toStringList().contains(serviceName);
}

SecretServiceConversation::Answer<SecretServiceConversation::Items>
SecretServiceConversation::search(const SecretIdentity& identity) {
    const auto found =
        callService(QStringLiteral("SearchItems"), {QVariant::fromValue(wireAttributes(identity))});
    if (!found)
        return std::unexpected(found.error());
    return Items{argument<Paths>(*found, 0), argument<Paths>(*found, 1)};
}

SecretServiceConversation::Status SecretServiceConversation::unlockQuietly(const Paths& objects) {
    const auto answer = callService(QStringLiteral("Unlock"), {QVariant::fromValue(objects)});
    if (!answer)
        return answer.error();
    dismiss(argument<QDBusObjectPath>(*answer, 1));
    const Paths unlocked = argument<Paths>(*answer, 0);
    return unlocked.size() == objects.size() ? Status::Success : Status::InteractionNotAllowed;
}

SecretServiceConversation::Status SecretServiceConversation::openSession() {
    if (!m_session.path().isEmpty())
        return Status::Success;
    const auto opened =
        callService(QStringLiteral("OpenSession"),
                    {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))});
    if (!opened)
        return opened.error();
    m_session = argument<QDBusObjectPath>(*opened, 1);
    return m_session.path().isEmpty() ? Status::IoError : Status::Success;
}

SecretServiceConversation::Answer<QByteArray>
SecretServiceConversation::secretOf(const QDBusObjectPath& item) {
    if (const Status status = openSession(); status != Status::Success)
        return std::unexpected(status);
    const auto answer = call(item.path(), itemInterface, QStringLiteral("GetSecret"),
                             {QVariant::fromValue(m_session)});
    if (!answer)
        return std::unexpected(answer.error());
    return argument<WireSecret>(*answer, 0).value;
}

SecretServiceConversation::Status
SecretServiceConversation::removeItem(const QDBusObjectPath& item) {
    const auto answer = call(item.path(), itemInterface, QStringLiteral("Delete"), {});
    if (!answer)
        return answer.error();
    const auto prompt = argument<QDBusObjectPath>(*answer, 0);
    dismiss(prompt);
    return prompt.path() == nowhere ? Status::Success : Status::InteractionNotAllowed;
}

SecretServiceConversation::Status
SecretServiceConversation::createItem(const QDBusObjectPath& collection,
                                      const SecretIdentity& identity, const QByteArray& secret) {
    if (const Status status = openSession(); status != Status::Success)
        return status;
    const QVariantMap properties = {
        {itemInterface + QStringLiteral(".Label"), labelOf(identity)},
        {itemInterface + QStringLiteral(".Attributes"),
         QVariant::fromValue(wireAttributes(identity))},
    };
    const WireSecret wire = {m_session, {}, secret, QStringLiteral("text/plain")};
    constexpr bool replace = false;
    const auto answer = call(collection.path(), collectionInterface, QStringLiteral("CreateItem"),
                             {properties, QVariant::fromValue(wire), replace});
    if (!answer)
        return answer.error();
    const auto prompt = argument<QDBusObjectPath>(*answer, 1);
    dismiss(prompt);
    return prompt.path() == nowhere ? Status::Success : Status::InteractionNotAllowed;
}

SecretServiceConversation::Answer<QDBusObjectPath>
SecretServiceConversation::collectionForNewItems() {
    for (const char* alias : {"default", "login"}) {
        const auto answer = callService(QStringLiteral("ReadAlias"), {QString::fromLatin1(alias)});
        if (!answer)
            return std::unexpected(answer.error());
        const auto collection = argument<QDBusObjectPath>(*answer, 0);
        if (!collection.path().isEmpty() && collection.path() != nowhere)
            return collection;
    }
    return std::unexpected(Status::NotFound);
}

SecretServiceConversation::Answer<QDBusObjectPath> SecretServiceConversation::makeCollection() {
    const QVariantMap properties = {
        {collectionInterface + QStringLiteral(".Label"), QStringLiteral("Default keyring")}};
    const auto answer =
        callService(QStringLiteral("CreateCollection"), {properties, QStringLiteral("default")});
    if (!answer)
        return std::unexpected(answer.error());
    const auto collection = argument<QDBusObjectPath>(*answer, 0);
    const auto prompt = argument<QDBusObjectPath>(*answer, 1);
    if (prompt.path() == nowhere)
        return collection;
    if (const auto shown =
            call(prompt.path(), promptInterface, QStringLiteral("Prompt"), {QString()});
        !shown)
        return std::unexpected(shown.error());
    // This thread has no event loop that could hear of the prompt's end.
    while (!m_deadline.hasExpired()) {
        if (const auto made = collectionForNewItems())
            return made;
        QThread::msleep(200);
    }
    return std::unexpected(Status::InteractionNotAllowed);
}

void SecretServiceConversation::dismiss(const QDBusObjectPath& prompt) {
    if (!prompt.path().isEmpty() && prompt.path() != nowhere)
        m_bus.send(QDBusMessage::createMethodCall(serviceName, prompt.path(), promptInterface,
                                                  QStringLiteral("Dismiss")));
}

} // namespace harbrix
