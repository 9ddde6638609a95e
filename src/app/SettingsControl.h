#pragma once

#include "services/LaunchAtLoginManager.h"
#include "services/Settings.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>

namespace harbrix {

class CacheDirectoryManager;
class CacheManager;
class LanguageManager;
class LogManager;
class LoginItem;
class NotificationPreferences;

/// The services that follow a setting at once; the others read it when they need it.
struct SettingsFollowers {
    UserDefaults& defaults;
    LanguageManager& language;
    LogManager& log;
    NotificationPreferences& notifications;
    CacheManager& cache;
    CacheDirectoryManager& cacheDirectory;
    const LoginItem& loginItem;
};

/// The user's settings from outside of the windows. Changing one does what its control in the
/// settings window does. Main thread.
class SettingsControl {
public:
    explicit SettingsControl(const SettingsFollowers& services)
        : m_services(services), m_launchAtLogin(services.loginItem) {}

    /// {"key", "type", "default", "value", "accepts", "meaning"}; the type is boolean, integer,
    /// number or text.
    [[nodiscard]] QJsonObject describe(const Setting& setting) const;
    [[nodiscard]] QJsonArray describeAll() const;

    /// The value is of the setting's type and one that it takes.
    void set(const Setting& setting, const UserDefaults::Value& value);
    /// Returns to the default, with nothing stored.
    void reset(const Setting& setting);

private:
    void store(const Setting& setting, const UserDefaults::Value& value);
    void follow(const Setting& setting, const UserDefaults::Value& value);

    SettingsFollowers m_services;
    LaunchAtLoginManager m_launchAtLogin;
};

} // namespace harbrix
