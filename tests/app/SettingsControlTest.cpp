#include "app/SettingsControl.h"

#include "automation/AutoMountStrategy.h"
#include "base/ManualScheduler.h"
#include "files/CacheDirectoryManager.h"
#include "files/CacheManager.h"
#include "platform/LoginItem.h"
#include "services/LanguageManager.h"
#include "services/LogManager.h"
#include "services/NotificationPreferences.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

class SettingsControlTest : public testing::Test {
protected:
    QTemporaryDir folder;
    ManualScheduler scheduler;
    UserDefaults defaults{folder.filePath("defaults.json")};
    LanguageManager language{defaults};
    LogManager log{defaults, folder.path(), folder.path()};
    NotificationPreferences notifications{defaults};
    CacheManager cache{defaults, scheduler, folder.path()};
    CacheDirectoryManager cacheDirectory{cache, defaults, scheduler};
    LoginItem loginItem{folder.path(), "com.harbrix.test", "/usr/bin/harbrix"};
    SettingsControl control{
        {defaults, language, log, notifications, cache, cacheDirectory, loginItem}};

    void set(const char* key, const char* text) {
        const Setting* setting = findSetting(key);
        ASSERT_TRUE(setting) << key;
        const auto value = parseSetting(*setting, text);
        ASSERT_TRUE(value) << value.error().toStdString();
        control.set(*setting, *value);
        EXPECT_EQ(control.describe(*setting).value("value").toVariant().toString(), text) << key;
    }
    void reset(const char* key) { control.reset(*findSetting(key)); }
};

TEST_F(SettingsControlTest, WhoKeepsACopyHearsOfTheChange) {
    set("HarbrixSelectedLanguage", "de");
    EXPECT_EQ(language.selectedLanguage(), AppLanguage::german);
    set("notificationsEnabled", "false");
    EXPECT_FALSE(notifications.globalEnabled());
    set("notify.unmount", "true");
    EXPECT_TRUE(notifications.eventState(NotificationEvent::unmount));
    set("cache.maxSize", "209715200");
    EXPECT_EQ(cache.statistics().maxSize, 209'715'200);
    set("log.minimumLevel", "3");
    set("log.debugMode", "true");
    EXPECT_EQ(log.minimumLevel(), LogLevel::debug);
    set("launchAtLogin", "true");
    EXPECT_TRUE(loginItem.isRegistered());
}

TEST_F(SettingsControlTest, ResetForgetsWhatWasStoredAndTellsIt) {
    for (const char* key :
         {"HarbrixSelectedLanguage", "notify.unmount", "launchAtLogin", "cache.maxSize"})
        defaults.remove(key);
    const QStringList before = defaults.keys();
    set("HarbrixSelectedLanguage", "ja");
    set("notify.unmount", "true");
    set("launchAtLogin", "true");
    set("cache.maxSize", "209715200");
    for (const char* key :
         {"HarbrixSelectedLanguage", "notify.unmount", "launchAtLogin", "cache.maxSize"})
        reset(key);
    EXPECT_EQ(defaults.keys(), before);
    EXPECT_EQ(language.selectedLanguage(), AppLanguage::system);
    EXPECT_FALSE(notifications.eventState(NotificationEvent::unmount));
    EXPECT_FALSE(loginItem.isRegistered());
    EXPECT_EQ(cache.statistics().maxSize, CacheManager::defaultMaxSize);
}

TEST_F(SettingsControlTest, AutomaticCleanUpStopsAndStarts) {
    cacheDirectory.startPeriodicCleanup();
    const auto timers = scheduler.pendingAlarms();
    set("cache.autoCleanup", "false");
    EXPECT_EQ(scheduler.pendingAlarms(), timers - 1);
    set("cache.autoCleanup", "true");
    EXPECT_EQ(scheduler.pendingAlarms(), timers);
}

TEST_F(SettingsControlTest, EachKeyAndDefaultIsThatOfItsReader) {
    const std::pair<const char*, UserDefaults::Value> readers[] = {
        {AutoMountStrategy::autoMountOnLaunchKey, true},
        {AutoMountStrategy::keepAliveEnabledKey, true},
        {AutoMountStrategy::keepAliveIntervalKey,
         AutoMountStrategy::defaultKeepAliveInterval.count()},
        {CacheManager::maxCacheSizeKey, CacheManager::defaultMaxSize},
        {CacheDirectoryManager::autoCleanupKey, true},
        {CacheDirectoryManager::cleanupIntervalKey,
         CacheDirectoryManager::defaultCleanupInterval.count()},
        {CacheDirectoryManager::maxEntryAgeKey, CacheDirectoryManager::defaultMaxEntryAge.count()},
    };
    for (const auto& [key, value] : readers) {
        const Setting* setting = findSetting(key);
        ASSERT_TRUE(setting) << key;
        EXPECT_EQ(setting->defaultValue, value) << key;
    }
    for (const NotificationEvent event : allNotificationEvents()) {
        const Setting* setting =
            findSetting(NotificationPreferences::eventPrefix + rawValue(event));
        ASSERT_TRUE(setting) << rawValue(event).toStdString();
        EXPECT_EQ(setting->defaultValue, UserDefaults::Value(notifications.eventState(event)));
    }
}

} // namespace
} // namespace harbrix
