#include "ui/menu/MenuBarController.h"

#include "automation/AutoMountStrategy.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "files/FileBrowserState.h"
#include "files/RecentFilesTracker.h"
#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/WindowScenes.h"
#include "ui/about/AboutView.h"
#include "ui/menu/StatusMenu.h"
#include "ui/settings/SettingsView.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/Windows.h"

#include <QCursor>
#include <QGuiApplication>
#include <QSystemTrayIcon>

namespace harbrix {
namespace {

constexpr Seconds wakeDelay{1.0};
constexpr auto statusSymbol = "externaldrive.connected.to.line.below";

/// The sizes that panels ask for, once and twice.
QIcon statusIcon(MenuBarIconState state) {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 44, 48})
        icon.addPixmap(
            symbolPixmap(QString::fromLatin1(statusSymbol), size, statusItemTint(state), 1));
    return icon;
}

} // namespace

QColor statusItemTint(MenuBarIconState state) {
    switch (state) {
    case MenuBarIconState::allMounted:
        return QColor(0x34, 0xc7, 0x59);
    case MenuBarIconState::partiallyMounted:
        return QColor(0xff, 0xcc, 0x00);
    case MenuBarIconState::allFailed:
        return QColor(0xff, 0x3b, 0x30);
    case MenuBarIconState::idle:
    case MenuBarIconState::offline:
    case MenuBarIconState::mounting:
        break;
    }
    return QColor(0x8e, 0x8e, 0x93);
}

MenuBarController::MenuBarController(const Environment& environment, WindowScenes& scenes,
                                     Scheduler& scheduler, QDBusConnection sessionBus)
    : m_environment(environment), m_scenes(scenes), m_scheduler(scheduler),
      m_host(std::move(sessionBus)) {
    connect(&environment.appState, &AppStateManager::changed, this,
            &MenuBarController::scheduleRebuild);
    connect(&environment.configStore, &NASConfigStore::changed, this,
            &MenuBarController::scheduleRebuild);
    connect(&environment.files.recentFiles, &RecentFilesTracker::changed, this,
            &MenuBarController::scheduleRebuild);
    connect(&environment.languageManager, &LanguageManager::localeChanged, this, [this] {
        if (m_statusItem)
            m_statusItem->setToolTip(text("menubar.icon.accessibility"));
        scheduleRebuild();
    });
}

MenuBarController::~MenuBarController() = default;

void MenuBarController::setupStatusItem() {
    connect(&m_host, &TrayHost::availabilityChanged, this, &MenuBarController::setupStatusItem,
            Qt::UniqueConnection);
    m_statusItem.reset();
    m_menu.reset();
    if (!m_host.isAvailable())
        return;
    m_menu = makeMenu();
    rebuild(); // before the item is made: some hosts ask for the menu once only
    m_statusItem = std::make_unique<QSystemTrayIcon>();
    m_statusItem->setToolTip(text("menubar.icon.accessibility"));
    setTint(m_environment.appState.menuBarIconState());
    m_statusItem->setContextMenu(m_menu.get());
    connect(m_statusItem.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    popUpMenu();
            });
    m_statusItem->show();
}

std::unique_ptr<StatusMenu> MenuBarController::makeMenu() {
    auto menu = std::make_unique<StatusMenu>();
    m_menuIsOpen = false;
    m_hostTellsClosing = false;
    connect(menu.get(), &StatusMenu::commandChosen, this, &MenuBarController::choose);
    connect(menu.get(), &QMenu::aboutToShow, this, &MenuBarController::menuWillOpen);
    connect(menu.get(), &QMenu::aboutToHide, this, [this] {
        m_menuIsOpen = false;
        m_hostTellsClosing = true;
        scheduleRebuild();
    });
    return menu;
}

// A click is to show the menu; to many hosts the menu belongs to the other button, and they tell
// the program of the click instead. Wayland lets nobody place a menu there.
void MenuBarController::popUpMenu() {
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return openMainWindow();
    // One of its own, as the one of the host is kept for the host in state and in writing.
    m_popUp = std::make_unique<StatusMenu>(StatusMenu::ShownBy::Program);
    connect(m_popUp.get(), &StatusMenu::commandChosen, this, &MenuBarController::choose);
    m_popUp->setContent(content());
    m_popUp->popup(QCursor::pos());
}

void MenuBarController::observeMenuBarIconState() {
    connect(&m_environment.appState, &AppStateManager::menuBarIconStateChanged, this,
            &MenuBarController::setTint);
}

void MenuBarController::setTint(MenuBarIconState state) {
    if (m_statusItem)
        m_statusItem->setIcon(statusIcon(state));
}

bool MenuBarController::hasStatusItem() const {
    return m_statusItem && m_statusItem->isVisible();
}

void MenuBarController::handleSystemWake() {
    m_wakeCheck = m_scheduler.after(wakeDelay, [this] {
        if (!hasStatusItem())
            setupStatusItem();
    });
}

void MenuBarController::choose(const MenuEntry& entry) {
    switch (entry.command) {
    case MenuCommand::openFileBrowser:
        if (const auto* id = std::get_if<QUuid>(&entry.target))
            openFileBrowser(*id);
        return;
    case MenuCommand::openRecentFile:
        if (const auto* url = std::get_if<QUrl>(&entry.target))
            m_environment.openUrl(*url);
        return;
    case MenuCommand::mountAll:
        return mountAll();
    case MenuCommand::unmountAll:
        return unmountAll();
    case MenuCommand::openMainWindow:
        return openMainWindow();
    case MenuCommand::openSettings:
        return openSettings();
    case MenuCommand::checkForUpdates:
        return m_environment.checkForUpdates();
    case MenuCommand::openAbout:
        return openAbout();
    case MenuCommand::quit:
        emit quitRequested();
        return;
    case MenuCommand::none:
        return;
    }
}

void MenuBarController::mountAll() {
    m_environment.strategy.launch(m_environment.strategy.mountAll());
}

void MenuBarController::unmountAll() {
    m_environment.strategy.launch(m_environment.strategy.unmountAll());
}

void MenuBarController::openMainWindow() {
    m_scenes.open(QStringLiteral("main"));
}

void MenuBarController::openFileBrowser(const QUuid& configID) {
    const auto config = m_environment.configStore.config(configID);
    const auto status = m_environment.appState.status(configID);
    if (!config || !status || !status->mountPoint)
        return;
    m_environment.files.browserState.show(*config, *status->mountPoint);
    m_scenes.open(QStringLiteral("file-browser"));
}

// Windows of the menu's own, beside those that are declared and the one of the main window.
void MenuBarController::openSettings() {
    if (!m_settingsWindow)
        m_settingsWindow = makeSettingsWindow(m_environment);
    bringToFront(*m_settingsWindow);
}

void MenuBarController::openAbout() {
    if (!m_aboutWindow)
        m_aboutWindow = makeAboutWindow(m_environment);
    bringToFront(*m_aboutWindow);
}

void MenuBarController::menuWillOpen() {
    rebuild();
    m_menuIsOpen = true;
}

// An open menu keeps telling of the moment when it was opened. For a host that never says when it
// closes the menu, it is kept current all the time.
void MenuBarController::scheduleRebuild() {
    if (m_rebuildIsScheduled || (m_menuIsOpen && m_hostTellsClosing))
        return;
    m_rebuildIsScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_rebuildIsScheduled = false;
            if (!(m_menuIsOpen && m_hostTellsClosing))
                rebuild();
        },
        Qt::QueuedConnection);
}

void MenuBarController::rebuild() {
    if (m_menu)
        m_menu->setContent(content());
}

std::vector<MenuEntry> MenuBarController::content() const {
    return menuContent(m_environment.configStore.configs(), m_environment.appState.nasStatuses(),
                       m_environment.files.recentFiles.recentFiles());
}

} // namespace harbrix
