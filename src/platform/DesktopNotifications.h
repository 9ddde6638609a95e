#pragma once

#include "base/Result.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace harbrix {

class BusAddress;
class Scheduler;

/// The desktop's notification service. It shows at once what it is given: delays and pending
/// requests are the caller's affair. Main thread only; nothing here blocks.
class DesktopNotifications : public QObject {
    Q_OBJECT

public:
    struct Action {
        QString key;   ///< what actionInvoked() tells
        QString label; ///< what the button says

        bool operator==(const Action&) const = default;
    };

    struct Notification {
        QString title;
        QString body; ///< plain text
        bool withSound = false;
        QList<Action> actions; ///< left out where the service shows none

        bool operator==(const Notification&) const = default;
    };

    using Outcome = Result<void, SystemError>;

    /// Shows it, in place of the one that was posted before under this identifier, if that is still
    /// shown. `done` is called once, in a later turn: with an error where no service took it.
    virtual void post(const QString& identifier, const Notification& notification,
                      std::function<void(Outcome)> done) = 0;
    /// Takes a shown one off the screen; nothing happens if it is not shown.
    virtual void withdraw(const QString& identifier) = 0;
    /// Whether there is a service that would show notifications, started on demand if need be;
    /// without one, the error of the attempt. Called once, in a later turn.
    virtual void checkReachable(std::function<void(Outcome)> done) = 0;

    /// The Desktop Notifications Specification, on the session bus. A service that comes late or is
    /// started anew is used from then on; so is a bus.
    /// `applicationName` and `desktopEntry` are what the service shows as the sender.
    [[nodiscard]] static std::unique_ptr<DesktopNotifications>
    create(const BusAddress& sessionBus, Scheduler& scheduler, const QString& applicationName,
           const QString& desktopEntry);

signals:
    /// The user pressed an action ("default" for the notification itself). The token, where the
    /// service gives one, lets a window come to the front (XDG activation); it may be empty.
    void actionInvoked(const QString& identifier, const QString& actionKey,
                       const QString& activationToken);
};

} // namespace harbrix
