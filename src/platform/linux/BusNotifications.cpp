#include "platform/linux/BusNotifications.h"

#include "platform/SystemLog.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace harbrix {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
constexpr int callTimeoutMilliseconds = 5000;
constexpr int serviceDecidesWhenItExpires = -1;

SystemError errorOf(const QDBusError& error) {
    return {static_cast<int>(error.type()), error.message()};
}

} // namespace

BusNotifications::BusNotifications(const BusAddress& sessionBus, Scheduler& scheduler,
                                   QString applicationName, QString desktopEntry)
    : m_bus(sessionBus, scheduler), m_applicationName(std::move(applicationName)),
      m_desktopEntry(std::move(desktopEntry)) {
    m_serviceWatcher.addWatchedService(service);
    connect(&m_serviceWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            &BusNotifications::forgetService);
    connect(&m_bus, &MessageBus::connected, this, &BusNotifications::subscribe);
    connect(&m_bus, &MessageBus::lost, this, &BusNotifications::forgetService);
    if (m_bus.connection().isConnected())
        subscribe();
}

void BusNotifications::subscribe() {
    QDBusConnection connection = m_bus.connection();
    m_serviceWatcher.setConnection(connection);
    const auto listen = [&](const char* signal, const char* slot) {
        return connection.connect(service, path, service, QString::fromLatin1(signal), this, slot);
    };
    const bool done = listen("ActionInvoked", SLOT(onActionInvoked(uint, QString))) &&
                      listen("ActivationToken", SLOT(onActivationToken(uint, QString))) &&
                      listen("NotificationClosed", SLOT(onClosed(uint, uint)));
    if (!done) {
        static const SystemLog logger(QStringLiteral("com.harbrix"), QStringLiteral("Default"));
        logger.write(SystemLog::Type::Error, QStringLiteral("No answers to notifications"));
    }
}

void BusNotifications::forgetService() {
    // Another service counts its notifications anew and has other abilities.
    m_capabilities.reset();
    m_numbers.clear();
    m_activationTokens.clear();
}

void BusNotifications::call(const QString& method, const QVariantList& arguments,
                            ReplyHandler onReply) {
    m_bus.ensureConnected();
    auto message = QDBusMessage::createMethodCall(service, path, service, method);
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(
        m_bus.connection().asyncCall(message, callTimeoutMilliseconds), this);
    const auto answer = [watcher, onReply = std::move(onReply)] {
        watcher->deleteLater();
        onReply(*watcher);
    };
    // A call that fails at once, for want of a bus, never emits finished().
    if (watcher->isFinished())
        QMetaObject::invokeMethod(watcher, answer, Qt::QueuedConnection);
    else
        connect(watcher, &QDBusPendingCallWatcher::finished, this, answer);
}

void BusNotifications::askCapabilities(std::function<void(Outcome)> done) {
    call(QStringLiteral("GetCapabilities"), {},
         [this, done = std::move(done)](const QDBusPendingCallWatcher& answer) {
             const QDBusPendingReply<QStringList> reply = answer;
             if (reply.isError()) {
                 done(std::unexpected(errorOf(reply.error())));
                 return;
             }
             m_capabilities = reply.value();
             done({});
         });
}

void BusNotifications::checkReachable(std::function<void(Outcome)> done) {
    askCapabilities(std::move(done));
}

void BusNotifications::post(const QString& identifier, const Notification& notification,
                            std::function<void(Outcome)> done) {
    m_requests.push_back({identifier, notification, std::move(done)});
    if (m_requests.size() == 1)
        sendNext();
}

void BusNotifications::sendNext() {
    if (m_capabilities) {
        notify();
        return;
    }
    askCapabilities([this](const Outcome& outcome) {
        if (outcome)
            notify();
        else
            finish(outcome);
    });
}

void BusNotifications::notify() {
    call(QStringLiteral("Notify"), argumentsOf(m_requests.front()),
         [this](const QDBusPendingCallWatcher& answer) {
             const QDBusPendingReply<uint> reply = answer;
             if (reply.isError()) {
                 finish(std::unexpected(errorOf(reply.error())));
                 return;
             }
             m_numbers.insert(m_requests.front().identifier, reply.value());
             finish({});
         });
}

void BusNotifications::finish(const Outcome& outcome) {
    // What waits behind a request that was not answered in time would only wait as long.
    const bool timedOut = !outcome && (outcome.error().code == QDBusError::NoReply ||
                                       outcome.error().code == QDBusError::TimedOut);
    std::deque<Request> finished;
    do {
        finished.push_back(std::move(m_requests.front()));
        m_requests.pop_front();
    } while (timedOut && !m_requests.empty());
    if (!m_requests.empty())
        sendNext();
    for (const Request& request : finished) {
        if (request.done)
            request.done(outcome);
    }
}

QVariantList BusNotifications::argumentsOf(const Request& request) const {
    const Notification& notification = request.notification;
    const QStringList& capabilities = *m_capabilities;
    QStringList actions;
    if (capabilities.contains(QStringLiteral("actions"))) {
        for (const Action& action : notification.actions)
            actions << action.key << action.label;
    }
    // Where the service reads the body as markup, an ampersand in a name would spoil it.
    const QString body = capabilities.contains(QStringLiteral("body-markup"))
                             ? notification.body.toHtmlEscaped()
                             : notification.body;
    QVariantMap hints{{QStringLiteral("desktop-entry"), m_desktopEntry}};
    if (notification.withSound)
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
    else
        hints.insert(QStringLiteral("suppress-sound"), true);
    return {m_applicationName,
            m_numbers.value(request.identifier, 0),
            m_desktopEntry,
            notification.title,
            body,
            actions,
            hints,
            serviceDecidesWhenItExpires};
}

void BusNotifications::withdraw(const QString& identifier) {
    const uint number = m_numbers.take(identifier);
    if (number != 0)
        call(QStringLiteral("CloseNotification"), {number}, [](const auto&) {});
}

void BusNotifications::onActivationToken(uint number, const QString& token) {
    // It comes right before the action that it is for. Numbers of other programs come here too.
    if (!m_numbers.key(number).isNull())
        m_activationTokens.insert(number, token);
}

void BusNotifications::onActionInvoked(uint number, const QString& actionKey) {
    const QString identifier = m_numbers.key(number);
    if (!identifier.isNull())
        emit actionInvoked(identifier, actionKey, m_activationTokens.take(number));
}

void BusNotifications::onClosed(uint number, uint) {
    m_activationTokens.remove(number);
    m_numbers.remove(m_numbers.key(number));
}

std::unique_ptr<DesktopNotifications> DesktopNotifications::create(const BusAddress& sessionBus,
                                                                   Scheduler& scheduler,
                                                                   const QString& applicationName,
                                                                   const QString& desktopEntry) {
    return std::make_unique<BusNotifications>(sessionBus, scheduler, applicationName, desktopEntry);
}

} // namespace harbrix
