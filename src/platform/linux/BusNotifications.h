#pragma once

#include "platform/DesktopNotifications.h"
#include "platform/MessageBus.h"

#include <QDBusServiceWatcher>
#include <QHash>

#include <deque>

class QDBusPendingCall;
class QDBusPendingCallWatcher;

namespace harbrix {

/// org.freedesktop.Notifications. Requests go out one after the other, because a second one of the
/// same identifier needs the number that the service gave to the first.
class BusNotifications final : public DesktopNotifications {
    Q_OBJECT

public:
    BusNotifications(const BusAddress& sessionBus, Scheduler& scheduler, QString applicationName,
                     QString desktopEntry);

    void post(const QString& identifier, const Notification& notification,
              std::function<void(Outcome)> done) override;
    void withdraw(const QString& identifier) override;
    void checkReachable(std::function<void(Outcome)> done) override;

private slots:
    void onActionInvoked(uint number, const QString& actionKey);
    void onActivationToken(uint number, const QString& token);
    void onClosed(uint number, uint reason);

private:
    struct Request {
        QString identifier;
        Notification notification;
        std::function<void(Outcome)> done;
    };
    using ReplyHandler = std::function<void(const QDBusPendingCallWatcher&)>;

    void subscribe();
    void forgetService();
    void sendNext();
    void askCapabilities(std::function<void(Outcome)> done);
    void notify();
    void finish(const Outcome& outcome);
    void call(const QString& method, const QVariantList& arguments, ReplyHandler onReply);
    [[nodiscard]] QVariantList argumentsOf(const Request& request) const;

    MessageBus m_bus;
    QDBusServiceWatcher m_serviceWatcher;
    QString m_applicationName;
    QString m_desktopEntry;
    std::deque<Request> m_requests; ///< the first one is under way
    std::optional<QStringList> m_capabilities;
    QHash<QString, uint> m_numbers; ///< of what is shown, by identifier
    QHash<uint, QString> m_activationTokens;
};

} // namespace harbrix
