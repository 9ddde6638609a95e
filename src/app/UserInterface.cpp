#include "app/UserInterface.h"

#include "platform/SleepMonitor.h"
#include "services/LanguageManager.h"
#include "ui/widgets/Windows.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QWidget>

namespace harbrix {

UserInterface::UserInterface(QApplication& application, const Environment& environment,
                             Scheduler& scheduler, SleepMonitor& sleepMonitor)
    : m_application(application), m_sleepMonitor(sleepMonitor), m_theme(application),
      m_scenes(environment),
      m_menuBarController(environment, m_scenes, scheduler, QDBusConnection::sessionBus()) {
    m_theme.followDesktop(QDBusConnection::sessionBus());
    const LanguageManager& language = environment.languageManager;
    useLanguage(language.locale());
    connect(&language, &LanguageManager::localeChanged, this,
            [this, &language] { useLanguage(language.locale()); });
    connect(&m_menuBarController, &MenuBarController::quitRequested, this,
            &UserInterface::quitRequested);
}

void UserInterface::start() {
    m_menuBarController.setupStatusItem();
    m_menuBarController.observeMenuBarIconState();
    connect(&m_sleepMonitor, &SleepMonitor::didWake, &m_menuBarController,
            &MenuBarController::handleSystemWake);
    connect(&m_application, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive)
                    applicationDidBecomeActive();
            });
}

void UserInterface::useLanguage(const QLocale& locale) {
    m_theme.useLanguage(locale);
    // What Qt itself says: in the panel that saves, in the menu of a field. Without its tables,
    // which are a package of their own, that stays English.
    QCoreApplication::removeTranslator(&m_textsOfQt);
    if (m_textsOfQt.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_textsOfQt);
}

void UserInterface::activate() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->isWindow() && window->windowType() != Qt::Popup)
            bringToFront(*window);
    openMainWindow();
}

void UserInterface::openMainWindow() {
    m_scenes.open(QStringLiteral("main"));
}

// The desktop may have dropped the item.
void UserInterface::applicationDidBecomeActive() {
    if (!m_menuBarController.hasStatusItem())
        m_menuBarController.setupStatusItem();
}

} // namespace harbrix
