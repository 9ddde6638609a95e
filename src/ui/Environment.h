#pragma once

#include "core/TransferDirection.h"

#include <QUrl>

#include <functional>

namespace harbrix {

class AppStateManager;
class AutoMountStrategy;
class CacheDirectoryManager;
class CacheManager;
class FileBrowserState;
class FormDrafts;
class LanguageManager;
class LogManager;
class LoginItem;
class MountOperations;
class NASConfigStore;
class NetworkMonitor;
class NotificationPreferences;
class RecentFilesTracker;
class Scheduler;
class ShareSaver;
class UserDefaults;

/// What the browser window works with.
struct FileServices {
    FileBrowserState& browserState;
    CacheManager& cache;
    RecentFilesTracker& recentFiles;
    Scheduler& scheduler;
    /// Shows a file in its folder.
    std::function<void(const QUrl&)> showInFileViewer;
    /// Tells the user of a transfer that has ended well, by the name of the file.
    std::function<void(const QString&, TransferDirection)> notifyTransferFinished;
};

/// What the settings window works with.
struct SettingsServices {
    UserDefaults& defaults;
    LogManager& log;
    NotificationPreferences& notifications;
    CacheDirectoryManager& cacheDirectory;
    const LoginItem& loginItem;
};

/// What every window is given: the observable state that it renders, and whom it calls. Everything
/// outlives the windows.
struct Environment {
    AppStateManager& appState;
    NASConfigStore& configStore;
    LanguageManager& languageManager;
    NetworkMonitor& network;
    AutoMountStrategy& strategy;
    MountOperations& engine;
    ShareSaver& saver;
    FormDrafts& drafts;
    /// Opens a folder in the file viewer, a page in the browser.
    std::function<void(const QUrl&)> openUrl;
    std::function<void()> checkForUpdates;
    FileServices files;
    SettingsServices settings;
    /// Opens a window of the program by its identifier; WindowScenes fills it in.
    std::function<void(const QString&)> openWindow = {};
};

} // namespace harbrix
