#include "base/ManualScheduler.h"
#include "core/HarbrixError.h"
#include "fakes/FakeMachineEvents.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"
#include "services/NotificationService.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

class NotificationTest : public testing::Test {
protected:
    QTemporaryDir directory;
    UserDefaults defaults{directory.filePath(QStringLiteral("defaults.json"))};
    NotificationPreferences preferences{defaults};
    FakeDesktopNotifications desktop;
    ManualScheduler scheduler;
    NotificationService service{desktop, preferences, scheduler};
    const QString nas = QStringLiteral("Home %@ 100%");
    const HarbrixError error = HarbrixError::timeout(QStringLiteral("slow"));

    void notifyOfEverything() {
        service.notifyMountSuccess(nas);
        service.notifyMountFailure(nas, error);
        service.notifyUnmount(nas);
        service.notifyTransferCompleted(nas, TransferDirection::download);
        service.notifyTransferCompleted(nas, TransferDirection::upload);
    }
};

TEST_F(NotificationTest, OnAFreshInstallationTheUnmountIsSilent) {
    const QMap<NotificationEvent, bool> expected{
        {NotificationEvent::mountSuccess, true},     {NotificationEvent::mountFailure, true},
        {NotificationEvent::unmount, false},         {NotificationEvent::networkChange, true},
        {NotificationEvent::transferComplete, true}, {NotificationEvent::transferFailed, true},
        {NotificationEvent::cacheCleanup, false}};
    for (const NotificationEvent event : allNotificationEvents())
        EXPECT_EQ(preferences.isEnabled(event), expected[event]) << rawValue(event).toStdString();
    EXPECT_EQ(displayName(NotificationEvent::networkChange).toStdString(), "网络变化");

    notifyOfEverything();
    scheduler.advance(Seconds(1));
    EXPECT_EQ(desktop.posted.size(), 4u);
}

TEST_F(NotificationTest, SwitchesAreStoredAndReset) {
    preferences.setEnabled(true, NotificationEvent::unmount);
    preferences.setEnabled(false, NotificationEvent::mountFailure);
    EXPECT_EQ(defaults.boolean(QStringLiteral("notify.unmount")), true);
    defaults.set(QStringLiteral("notify.mountSuccess"), QStringLiteral("no"));
    const NotificationPreferences next(defaults);
    EXPECT_TRUE(next.isEnabled(NotificationEvent::unmount));
    EXPECT_FALSE(next.isEnabled(NotificationEvent::mountFailure));
    EXPECT_TRUE(next.isEnabled(NotificationEvent::mountSuccess)) << "a text is no switch";

    preferences.setGlobalEnabled(false);
    preferences.resetToDefaults();
    EXPECT_FALSE(preferences.globalEnabled());
    EXPECT_EQ(defaults.boolean(QLatin1String(NotificationPreferences::globalKey)), false);
    EXPECT_EQ(defaults.value(QStringLiteral("notify.unmount")), std::nullopt);
    EXPECT_FALSE(preferences.eventState(NotificationEvent::unmount));
    EXPECT_TRUE(preferences.eventState(NotificationEvent::mountFailure));
    EXPECT_FALSE(preferences.isEnabled(NotificationEvent::mountFailure));
}

TEST_F(NotificationTest, TheGlobalSwitchSilencesAll) {
    preferences.setEnabled(true, NotificationEvent::unmount);
    preferences.setGlobalEnabled(false);
    notifyOfEverything();
    scheduler.advance(Seconds(2));
    EXPECT_TRUE(desktop.posted.empty());
}

TEST_F(NotificationTest, EachTellsItsOwnStory) {
    preferences.setEnabled(true, NotificationEvent::unmount);
    notifyOfEverything();
    scheduler.advance(Seconds(1));
    const struct {
        const char* identifier;
        const char* title;
        const char* body;
        bool withSound;
        bool withRetry;
    } rows[] = {
        {"mount-success-Home %@ 100%", "NAS 已连接", "Home %@ 100% 已成功挂载", true, false},
        {"mount-failure-Home %@ 100%", "NAS 连接失败", "Home %@ 100%: Operation timed out: slow",
         true, true},
        {"unmount-Home %@ 100%", "NAS 已断开", "Home %@ 100% 已卸载", false, false},
        {"transfer-completed-Home %@ 100%-", "下载完成", "Home %@ 100% 已下载到本地", true, false},
        {"transfer-completed-Home %@ 100%-", "上传完成", "Home %@ 100% 已上传到 NAS", true, false},
    };
    ASSERT_EQ(desktop.posted.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const auto& [identifier, notification] = desktop.posted[i];
        EXPECT_TRUE(identifier.startsWith(QString::fromUtf8(rows[i].identifier)));
        EXPECT_EQ(notification.title.toStdString(), rows[i].title);
        EXPECT_EQ(notification.body.toStdString(), rows[i].body);
        EXPECT_EQ(notification.withSound, rows[i].withSound);
        const QList<DesktopNotifications::Action> retry{
            {QStringLiteral("RETRY_ACTION"), QStringLiteral("重试连接")}};
        EXPECT_EQ(notification.actions,
                  rows[i].withRetry ? retry : QList<DesktopNotifications::Action>());
    }
}

TEST_F(NotificationTest, AWaitingOneIsReplacedAndItsSecondBeginsAnew) {
    service.notifyMountFailure(nas, error);
    scheduler.advance(Seconds(0.6));
    service.notifyMountFailure(nas, HarbrixError::mountFailed(QStringLiteral("newer")));
    scheduler.advance(Seconds(0.6));
    EXPECT_TRUE(desktop.posted.empty());
    scheduler.advance(Seconds(0.4));
    ASSERT_EQ(desktop.posted.size(), 1u);
    EXPECT_TRUE(desktop.posted[0].notification.body.endsWith(QStringLiteral("newer")));
    scheduler.advance(Seconds(10));
    EXPECT_EQ(desktop.posted.size(), 1u);
}

TEST_F(NotificationTest, TransfersAreNeverMerged) {
    service.notifyTransferCompleted(nas, TransferDirection::upload);
    service.notifyTransferCompleted(nas, TransferDirection::upload);
    scheduler.advance(Seconds(1));
    EXPECT_EQ(desktop.posted.size(), 2u);
}

TEST_F(NotificationTest, AFailedPostIsLogged) {
    LogManager logManager(defaults, directory.path(), directory.path());
    defaults.set(QLatin1String(LogManager::fileLoggingKey), true);
    desktop.outcome = std::unexpected(SystemError{1, QStringLiteral("no service")});
    service.notifyMountSuccess(QStringLiteral("nas"));
    scheduler.advance(Seconds(1));
    logManager.waitForWrites();
    QFile file(logManager.logDirectory() + QStringLiteral("/Harbrix.log"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().endsWith(
        " - Failed to schedule notification 'mount-success-nas': no service\n"));
}

TEST_F(NotificationTest, PressingOneBringsTheProgramForward) {
    QStringList tokens;
    QObject::connect(&service, &NotificationService::activationRequested,
                     [&](const QString& token) { tokens << token; });
    emit desktop.actionInvoked(QStringLiteral("mount-failure-x"), QStringLiteral("RETRY_ACTION"),
                               QStringLiteral("token"));
    EXPECT_EQ(tokens, QStringList{QStringLiteral("token")});
}

} // namespace
} // namespace harbrix
