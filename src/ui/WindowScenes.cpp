#include "ui/WindowScenes.h"

#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/about/AboutView.h"
#include "ui/browser/FileBrowserWindow.h"
#include "ui/main/MainWindowView.h"
#include "ui/settings/SettingsView.h"
#include "ui/widgets/Windows.h"

#include <QWidget>

#include <algorithm>

namespace harbrix {

/// How a window is declared.
struct WindowScenes::Scene {
    QString identifier;
    TextKey title;
    QSize defaultSize;
    QSize minimumSize; ///< empty for a window that keeps its content's size
    QWidget* (*makeContent)(const Environment&);
};

const WindowScenes::Scene* WindowScenes::sceneOf(const QString& identifier) {
    static const std::vector<Scene> scenes{
        {QStringLiteral("main"),
         "window.main.title",
         {600, 500},
         {500, 400},
         [](const Environment& environment) -> QWidget* {
             return new MainWindowView(environment);
         }},
        {QStringLiteral("file-browser"),
         "window.browser.title",
         {900, 600},
         FileBrowserWindow::smallestHint,
         [](const Environment& environment) -> QWidget* {
             return new FileBrowserWindow(environment);
         }},
        {QStringLiteral("about"),
         "window.about.title",
         AboutView::size,
         {},
         [](const Environment& environment) -> QWidget* {
             return new AboutView(environment, AboutInformation::ofThisBuild());
         }},
        {QStringLiteral("settings"), "window.settings.title", SettingsView::defaultSize,
         SettingsView::smallest,
         [](const Environment& environment) -> QWidget* { return new SettingsView(environment); }},
    };
    const auto found = std::ranges::find(scenes, identifier, &Scene::identifier);
    return found == scenes.end() ? nullptr : &*found;
}

WindowScenes::WindowScenes(const Environment& environment) : m_environment(environment) {
    m_environment.openWindow = [this](const QString& identifier) { open(identifier); };
    connect(&m_environment.languageManager, &LanguageManager::localeChanged, this,
            &WindowScenes::retranslate);
}

WindowScenes::~WindowScenes() = default;

void WindowScenes::open(const QString& identifier) {
    const Scene* scene = sceneOf(identifier);
    if (!scene)
        return;
    auto& window = m_windows[identifier];
    if (!window)
        window.reset(make(*scene));
    bringToFront(*window);
}

QWidget* WindowScenes::window(const QString& identifier) const {
    const auto found = m_windows.find(identifier);
    return found == m_windows.end() ? nullptr : found->second.get();
}

QWidget* WindowScenes::make(const Scene& scene) const {
    QWidget* window = scene.makeContent(m_environment);
    window->setObjectName(scene.identifier);
    window->setWindowTitle(text(scene.title));
    window->setLocale(m_environment.languageManager.locale());
    if (!scene.minimumSize.isEmpty()) {
        window->setMinimumSize(scene.minimumSize);
        window->resize(scene.defaultSize);
    }
    return window;
}

void WindowScenes::retranslate() {
    for (const auto& [identifier, window] : m_windows) {
        window->setWindowTitle(text(sceneOf(identifier)->title));
        window->setLocale(m_environment.languageManager.locale());
    }
}

} // namespace harbrix
