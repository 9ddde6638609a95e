#pragma once

#include "app/AppDelegate.h"
#include "app/ApplicationObject.h"
#include "app/RemoteControl.h"
#include "app/SettingsControl.h"
#include "app/UserInterface.h"
#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "automation/ShareSaver.h"
#include "base/Scheduler.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "files/CacheDirectoryManager.h"
#include "files/CacheManager.h"
#include "files/FileBrowserState.h"
#include "files/RecentFilesTracker.h"
#include "mount/MountEngine.h"
#include "platform/AppDirectories.h"
#include "platform/ChildProcess.h"
#include "platform/DesktopNotifications.h"
#include "platform/FileSystem.h"
#include "platform/LoginItem.h"
#include "platform/SecretStore.h"
#include "platform/SingleInstance.h"
#include "platform/SleepMonitor.h"
#include "platform/UserDefaults.h"
#include "platform/WiFiNetworkName.h"
#include "services/AnalyticsService.h"
#include "services/CrashReporter.h"
#include "services/LanguageManager.h"
#include "services/LogManager.h"
#include "services/NotificationPreferences.h"
#include "services/NotificationService.h"
#include "services/UpdateManager.h"
#include "ui/form/FormDrafts.h"

#include <memory>

namespace harbrix {

/// The composition root: exactly one of each service, made in dependency order and ended in
/// reverse. Needs a QCoreApplication. Nothing below this room sees it.
class HarbrixApp {
public:
    HarbrixApp();
    HarbrixApp(const HarbrixApp&) = delete;
    HarbrixApp& operator=(const HarbrixApp&) = delete;
    ~HarbrixApp();

    /// Launches, runs the event loop until a quit is asked for and runs the termination sequence.
    /// The exit code of the process.
    [[nodiscard]] int run();

    /// Whether a flow or a worker still uses the services, which then must not be destroyed.
    [[nodiscard]] bool isBusy() const;

    /// Where the user's settings lie.
    [[nodiscard]] static QString defaultsPath(const AppDirectories& directories);

private:
    void connectParts();
    [[nodiscard]] Environment environment();
    void makeUserInterface();
    void publish();
    void reportSettingsFile();
    void reportDamagedSettings();

    // Members are made from top to bottom and ended from bottom to top.
    const AppDirectories m_directories = AppDirectories::ofThisUser();
    // Looked at before anything is written: the files are those of the first instance.
    SingleInstance m_instance;
    RealScheduler m_scheduler;
    UserDefaults m_defaults;
    LogManager m_log;
    LanguageManager m_languageManager;
    AppStateManager m_appState;
    std::unique_ptr<SecretStore> m_secrets;
    KeychainManager m_keychain;
    NASConfigStore m_configStore;
    std::unique_ptr<FileSystem> m_fileSystem;
    std::unique_ptr<ProcessLauncher> m_launcher;
    MountEngine m_engine;
    std::unique_ptr<NetworkPathMonitor> m_networkPath;
    std::unique_ptr<WiFiNetworkName> m_wifi;
    NetworkMonitor m_network;
    std::unique_ptr<SleepMonitor> m_sleepMonitor;
    NotificationPreferences m_notificationPreferences;
    std::unique_ptr<DesktopNotifications> m_desktopNotifications;
    NotificationService m_notifications;
    AutoMountStrategy m_strategy;
    ShareSaver m_saver;
    FormDrafts m_drafts;
    CacheManager m_cache;
    CacheDirectoryManager m_cacheDirectory;
    RecentFilesTracker m_recentFiles;
    FileBrowserState m_browserState;
    CrashReporter m_crashReporter;
    UpdateManager m_updates;
    AnalyticsService m_analytics;
    LoginItem m_loginItem;
    SettingsControl m_settings;
    RemoteControl m_remoteControl;
    ApplicationObject m_applicationObject;
    std::unique_ptr<AppDelegate> m_appDelegate;
    std::unique_ptr<UserInterface> m_userInterface; ///< none without a display
};

} // namespace harbrix
