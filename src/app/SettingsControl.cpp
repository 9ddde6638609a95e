#include "app/SettingsControl.h"

#include "files/CacheDirectoryManager.h"
#include "files/CacheManager.h"
#include "services/LanguageManager.h"
#include "services/LogManager.h"
#include "services/NotificationPreferences.h"

#include <algorithm>

namespace harbrix {
namespace {

QString typeName(Setting::Type type) {
    switch (type) {
    case Setting::Type::Boolean:
        return QStringLiteral("boolean");
    case Setting::Type::Integer:
        return QStringLiteral("integer");
    case Setting::Type::Number:
        return QStringLiteral("number");
    case Setting::Type::Text:
        return QStringLiteral("text");
    }
    Q_UNREACHABLE();
}

QJsonValue toJson(const UserDefaults::Value& value) {
    if (const auto* isOn = std::get_if<bool>(&value))
        return *isOn;
    if (const auto* integer = std::get_if<qint64>(&value))
        return *integer;
    if (const auto* number = std::get_if<double>(&value))
        return *number;
    return std::get<QString>(value);
}

std::optional<AppLanguage> languageOfCode(const QString& code) {
    const auto found = std::ranges::find(allLanguages(), code,
                                         [](AppLanguage language) { return rawValue(language); });
    return found == allLanguages().end() ? std::nullopt : std::optional(*found);
}

std::optional<NotificationEvent> eventOfKey(const QString& key) {
    const auto found = std::ranges::find(allNotificationEvents(), key, [](NotificationEvent event) {
        return NotificationPreferences::eventPrefix + rawValue(event);
    });
    return found == allNotificationEvents().end() ? std::nullopt : std::optional(*found);
}

} // namespace

QJsonObject SettingsControl::describe(const Setting& setting) const {
    return {{"key", setting.key},
            {"type", typeName(setting.type())},
            {"default", toJson(setting.defaultValue)},
            {"value", toJson(settingValue(setting, m_services.defaults))},
            {"accepts", acceptedValues(setting)},
            {"meaning", setting.meaning}};
}

QJsonArray SettingsControl::describeAll() const {
    QJsonArray all;
    for (const Setting& setting : allSettings())
        all.append(describe(setting));
    return all;
}

void SettingsControl::set(const Setting& setting, const UserDefaults::Value& value) {
    store(setting, value);
    follow(setting, value);
}

void SettingsControl::reset(const Setting& setting) {
    // Those that keep a copy of their own have to hear of the default before it is forgotten.
    store(setting, setting.defaultValue);
    m_services.defaults.remove(setting.key);
    follow(setting, setting.defaultValue);
}

/// Settings that a service keeps a copy of are stored by that service.
void SettingsControl::store(const Setting& setting, const UserDefaults::Value& value) {
    if (setting.key == LanguageManager::appLanguageKey)
        m_services.language.setSelectedLanguage(
            languageOfCode(std::get<QString>(value)).value_or(AppLanguage::system));
    else if (setting.key == NotificationPreferences::globalKey)
        m_services.notifications.setGlobalEnabled(std::get<bool>(value));
    else if (const auto event = eventOfKey(setting.key))
        m_services.notifications.setEnabled(std::get<bool>(value), *event);
    else if (setting.key == LogManager::debugModeKey)
        m_services.log.setDebugMode(std::get<bool>(value));
    else
        m_services.defaults.set(setting.key, value);
}

void SettingsControl::follow(const Setting& setting, const UserDefaults::Value& value) {
    if (setting.key == "launchAtLogin")
        m_launchAtLogin.setEnabled(std::get<bool>(value));
    else if (setting.key == CacheManager::maxCacheSizeKey)
        m_services.cache.updateStatistics();
    else if (setting.key == CacheDirectoryManager::autoCleanupKey && std::get<bool>(value))
        m_services.cacheDirectory.startPeriodicCleanup();
    else if (setting.key == CacheDirectoryManager::autoCleanupKey)
        m_services.cacheDirectory.stopPeriodicCleanup();
}

} // namespace harbrix
