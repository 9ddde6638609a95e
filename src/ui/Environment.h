#pragma once

#include <QUrl>

#include <functional>

namespace harbrix {

class AppStateManager;
class AutoMountStrategy;
class LanguageManager;
class MountOperations;
class NASConfigStore;
class NetworkMonitor;
class ShareSaver;

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
    /// Opens a folder in the file viewer, a page in the browser.
    std::function<void(const QUrl&)> openUrl;
};

} // namespace harbrix
