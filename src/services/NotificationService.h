#pragma once

#include "base/Scheduler.h"
#include "core/TransferDirection.h"
#include "services/MountNotifier.h"
#include "services/NotificationPreferences.h"

#include <QObject>

#include <map>

namespace harbrix {

class DesktopNotifications;

/// Builds the notifications of the program and posts each one second after it was asked for; one
/// that is asked for under the identifier of a waiting one takes its place. Main thread.
class NotificationService final : public QObject, public MountNotifier {
    Q_OBJECT

public:
    static constexpr auto retryCategory = "MOUNT_FAILURE_CATEGORY";
    static constexpr auto retryActionID = "RETRY_ACTION";
    static constexpr Seconds delay{1.0};

    struct Content {
        QString title;
        QString body;
        bool withSound = false;
        QString categoryIdentifier; ///< retryCategory brings the retry action along
    };

    NotificationService(DesktopNotifications& desktop, const NotificationPreferences& preferences,
                        Scheduler& scheduler);

    void notifyMountSuccess(const QString& nasName) override;
    void notifyMountFailure(const QString& nasName, const HarbrixError& error) override;
    void notifyUnmount(const QString& nasName) override;
    /// No preference switches this one off: it is about what the user may have lost.
    void notifySettingsDamaged(const QString& copyPath);
    void notifyTransferCompleted(const QString& fileName, TransferDirection direction);

    /// The common posting step; asks no preference.
    void scheduleNotification(const Content& content, const QString& identifier);

signals:
    /// The user pressed a notification or its retry action, which brings the program forward and
    /// does nothing else. The token may be empty.
    void activationRequested(const QString& activationToken);

private:
    void post(const Content& content, const QString& identifier);

    DesktopNotifications& m_desktop;
    const NotificationPreferences& m_preferences;
    Scheduler& m_scheduler;
    std::map<QString, Timer> m_pending;
};

} // namespace harbrix
