#pragma once

#include "base/Scheduler.h"
#include "core/AppState.h"
#include "ui/Environment.h"
#include "ui/menu/MenuContent.h"
#include "ui/menu/TrayHost.h"

#include <QObject>
#include <QPointer>

#include <memory>

class QSystemTrayIcon;
class QWidget;

namespace harbrix {

class StatusMenu;
class WindowScenes;

/// Owns the status item: a drive whose tint tells the overall state, and a menu of all shares and
/// the commands of the program. The item is there whenever the desktop has a place for it. Main
/// thread.
class MenuBarController : public QObject {
    Q_OBJECT

public:
    MenuBarController(const Environment& environment, WindowScenes& scenes, Scheduler& scheduler,
                      QDBusConnection sessionBus);
    ~MenuBarController() override;

    /// Makes the item anew, if there is a place for it; without one it is made once there is.
    void setupStatusItem();
    /// The tint follows the icon state from now on.
    void observeMenuBarIconState();
    /// Whether there is an item that can be seen.
    [[nodiscard]] bool hasStatusItem() const;
    /// To be called after the machine wakes: makes the item anew, a second later, if it was lost.
    void handleSystemWake();

    void mountAll();
    void unmountAll();
    void openMainWindow();
    void openSettings();
    void openAbout();
    /// Shows the share in the browser window, if it is mounted.
    void openFileBrowser(const QUuid& configID);

signals:
    void quitRequested();

private:
    [[nodiscard]] std::unique_ptr<StatusMenu> makeMenu();
    void choose(const MenuEntry& entry);
    void popUpMenu();
    void setTint(MenuBarIconState state);
    void menuWillOpen();
    void scheduleRebuild();
    void rebuild();
    [[nodiscard]] std::vector<MenuEntry> content() const;

    Environment m_environment;
    WindowScenes& m_scenes;
    Scheduler& m_scheduler;
    TrayHost m_host;
    std::unique_ptr<StatusMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_statusItem; ///< goes before its menu
    std::unique_ptr<StatusMenu> m_popUp;           ///< the latest one that was shown by a click
    QPointer<QWidget> m_aboutWindow;
    QPointer<QWidget> m_settingsWindow;
    Timer m_wakeCheck;
    bool m_rebuildIsScheduled = false;
    bool m_menuIsOpen = false;
    bool m_hostTellsClosing = false; ///< only then "open" can be believed
};

/// The colour of the status item, the same on light and dark panels.
[[nodiscard]] QColor statusItemTint(MenuBarIconState state);

} // namespace harbrix
