#include "services/Settings.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>

namespace harbrix {
namespace {

using Value = UserDefaults::Value;

TEST(Settings, WhatIsTypedIsTakenOnlyWhereItFits) {
    const struct {
        const char* key;
        const char* text;
        std::optional<Value> value;
    } rows[] = {
        {"launchAtLogin", "true", true},
        {"launchAtLogin", "false", false},
        {"launchAtLogin", "1", {}},
        {"launchAtLogin", "True", {}},
        {"launchAtLogin", "", {}},
        {"keepAliveInterval", "60", 60.0},
        {"keepAliveInterval", "600", 600.0},
        {"keepAliveInterval", "59", {}},
        {"keepAliveInterval", "660", {}},
        {"keepAliveInterval", "90", {}},
        {"keepAliveInterval", "nan", {}},
        {"keepAliveInterval", "inf", {}},
        {"keepAliveInterval", "60s", {}},
        {"mount.defaultTimeout", "5", 5.0},
        {"mount.defaultTimeout", "7", {}},
        {"mount.defaultRetryCount", "0", 0.0},
        {"mount.defaultRetryCount", "10", 10.0},
        {"mount.defaultRetryCount", "2.5", {}},
        {"mount.defaultRetryInterval", "65", {}},
        {"mount.defaultSMBVersion", "3", QString("3")},
        {"mount.defaultSMBVersion", "1", {}},
        {"mount.defaultSMBVersion", "", {}},
        {"log.minimumLevel", "4", qint64(4)},
        {"log.minimumLevel", "5", {}},
        {"log.minimumLevel", "-1", {}},
        {"log.minimumLevel", "2.0", {}},
        {"cache.maxSize", "104857600", qint64(104'857'600)},
        {"cache.maxSize", "5242880000", qint64(5'242'880'000)},
        {"cache.maxSize", "500", {}},
        {"cache.maxSize", "104857601", {}},
        {"cache.cleanupInterval", "90.5", 90.5},
        {"cache.maxEntryAge", "0", {}},
        {"HarbrixSelectedLanguage", "zh-Hans", QString("zh-Hans")},
        {"HarbrixSelectedLanguage", "klingon", {}},
    };
    for (const auto& row : rows) {
        const Setting* setting = findSetting(row.key);
        ASSERT_TRUE(setting) << row.key;
        const auto parsed = parseSetting(*setting, row.text);
        EXPECT_EQ(parsed ? std::optional(*parsed) : std::nullopt, row.value)
            << row.key << " " << row.text;
        if (!parsed) {
            EXPECT_TRUE(parsed.error().startsWith(QString(row.key) + " takes "));
        }
    }
}

TEST(Settings, EveryDefaultCanBeTypedAndStandsForWhatCannotBeRead) {
    QTemporaryDir folder;
    UserDefaults defaults(folder.filePath("defaults.json"));
    for (const Setting& setting : allSettings()) {
        const std::string key = setting.key.toStdString();
        const QString typed = std::visit(
            [](const auto& value) {
                using T = std::decay_t<decltype(value)>;
                if constexpr (std::is_same_v<T, bool>)
                    return QString(value ? "true" : "false");
                else if constexpr (std::is_same_v<T, qint64> || std::is_same_v<T, double>)
                    return QString::number(value);
                else if constexpr (std::is_same_v<T, QString>)
                    return value;
                else
                    return QString();
            },
            setting.defaultValue);
        EXPECT_EQ(parseSetting(setting, typed).value_or(Value()), setting.defaultValue) << key;

        EXPECT_EQ(settingValue(setting, defaults), setting.defaultValue) << key;
        defaults.set(setting.key, QStringList{"of", "another", "type"});
        EXPECT_EQ(settingValue(setting, defaults), setting.defaultValue) << key;
        defaults.set(setting.key, QString("klingon"));
        EXPECT_EQ(settingValue(setting, defaults), setting.defaultValue) << key;
    }
}

TEST(Settings, KeysThatAreTheProgramsOwnAreNone) {
    for (const char* key : {"com.harbrix.configs", "com.harbrix.recentFiles", "AppleLanguages",
                            "cache.lastCleanupDate", "", "Log.minimumLevel"})
        EXPECT_FALSE(findSetting(key)) << key;
}

TEST(Settings, AnUnknownKeyIsAnsweredWithSimilarOnes) {
    const std::pair<const char*, const char*> rows[] = {
        {"keepAliveIntervall", "keepAliveInterval"}, {"Log.MinimumLevel", "log.minimumLevel"},
        {"launchAtLogon", "launchAtLogin"},          {"unmount", "notify.unmount"},
        {"minimumLevel", "log.minimumLevel"},
    };
    for (const auto& [typed, meant] : rows)
        EXPECT_EQ(similarSettingKeys(typed).value(0), meant) << typed;
    EXPECT_TRUE(similarSettingKeys("quite something else").isEmpty());
    EXPECT_LE(similarSettingKeys("cache").size(), 3);
}

} // namespace
} // namespace harbrix
