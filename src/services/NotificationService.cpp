#include "services/NotificationService.h"

#include "base/Json.h"
#include "core/HarbrixError.h"
#include "platform/DesktopNotifications.h"
#include "services/LogManager.h"
#include "services/Text.h"

namespace harbrix {

NotificationService::NotificationService(DesktopNotifications& desktop,
                                         const NotificationPreferences& preferences,
                                         Scheduler& scheduler)
    : m_desktop(desktop), m_preferences(preferences), m_scheduler(scheduler) {
    connect(&desktop, &DesktopNotifications::actionInvoked, this,
            [this](const QString&, const QString&, const QString& activationToken) {
                emit activationRequested(activationToken);
            });
}

void NotificationService::notifyMountSuccess(const QString& nasName) {
    if (!m_preferences.isEnabled(NotificationEvent::mountSuccess))
        return;
    scheduleNotification({.title = text("notification.mount.success.title"),
                          .body = formatted("notification.mount.success.body", {nasName}),
                          .withSound = true,
                          .categoryIdentifier = {}},
                         QStringLiteral("mount-success-") + nasName);
}

void NotificationService::notifyMountFailure(const QString& nasName, const HarbrixError& error) {
    if (!m_preferences.isEnabled(NotificationEvent::mountFailure))
        return;
    scheduleNotification(
        {.title = text("notification.mount.failure.title"),
         .body = formatted("notification.mount.failure.body", {nasName, error.errorDescription()}),
         .withSound = true,
         .categoryIdentifier = QLatin1String(retryCategory)},
        QStringLiteral("mount-failure-") + nasName);
}

void NotificationService::notifyUnmount(const QString& nasName) {
    if (!m_preferences.isEnabled(NotificationEvent::unmount))
        return;
    // The user asked for it or left the network: nothing to start up for.
    scheduleNotification({.title = text("notification.unmount.title"),
                          .body = formatted("notification.unmount.body", {nasName}),
                          .withSound = false,
                          .categoryIdentifier = {}},
                         QStringLiteral("unmount-") + nasName);
}

void NotificationService::notifySettingsDamaged(const QString& copyPath) {
    scheduleNotification({.title = text("notification.settingsDamaged.title"),
                          .body = formatted("notification.settingsDamaged.body", {copyPath}),
                          .withSound = false,
                          .categoryIdentifier = {}},
                         QStringLiteral("settings-damaged"));
}

void NotificationService::notifyTransferCompleted(const QString& fileName,
                                                  TransferDirection direction) {
    if (!m_preferences.isEnabled(NotificationEvent::transferComplete))
        return;
    const bool isDownload = direction == TransferDirection::download;
    // Each transfer is told of, also two of files with one name: the identifier never repeats.
    const QString identifier = QStringLiteral("transfer-completed-") + fileName + u'-' +
                               uuidText(QUuid::createUuid()).left(4);
    scheduleNotification({.title = isDownload ? text("notification.transfer.download.title")
                                              : text("notification.transfer.upload.title"),
                          .body = isDownload
                                      ? formatted("notification.transfer.download.body", {fileName})
                                      : formatted("notification.transfer.upload.body", {fileName}),
                          .withSound = true,
                          .categoryIdentifier = {}},
                         identifier);
}

void NotificationService::scheduleNotification(const Content& content, const QString& identifier) {
    m_pending[identifier] = m_scheduler.after(delay, [this, content, identifier] {
        m_pending.erase(identifier);
        post(content, identifier);
    });
}

void NotificationService::post(const Content& content, const QString& identifier) {
    DesktopNotifications::Notification notification;
    notification.title = content.title;
    notification.body = content.body;
    notification.withSound = content.withSound;
    if (content.categoryIdentifier == QLatin1String(retryCategory))
        notification.actions = {{QLatin1String(retryActionID), text("notification.action.retry")}};
    m_desktop.post(identifier, notification,
                   [identifier](const DesktopNotifications::Outcome& outcome) {
                       if (!outcome)
                           log(LogLevel::error,
                               QStringLiteral("Failed to schedule notification '") + identifier +
                                   QStringLiteral("': ") + outcome.error().description);
                   });
}

} // namespace harbrix
