#include "app/HarbrixApp.h"

#include "app/TerminationSignals.h"
#include "base/Worker.h"
#include "platform/MessageBus.h"
#include "platform/OpenUrl.h"

#include <QApplication>

namespace harbrix {
namespace {

std::unique_ptr<SecretStore> makeSecretStore(const AppDirectories& directories) {
    const QString path = directories.applicationSupport + QStringLiteral("/Harbrix/secrets.json");
    return createSecretStore(BusAddress::session(), path, [path] {
        log(LogLevel::warning,
            QStringLiteral("No Secret Service on the session bus; passwords are kept in ") + path,
            LogCategory::keychain);
    });
}

void openInDesktop(const QUrl& url) {
    if (!openUrl(url))
        log(LogLevel::warning, QStringLiteral("Nothing opens ") + url.toString(), LogCategory::ui);
}

} // namespace

QString HarbrixApp::defaultsPath(const AppDirectories& directories) {
    return directories.config + QStringLiteral("/Harbrix/defaults.json");
}

HarbrixApp::HarbrixApp()
    : m_instance(QLatin1String(AppDelegate::applicationIdentifier), m_directories.runtime),
      m_defaults(defaultsPath(m_directories), m_instance.isFirst()
                                                  ? UserDefaults::Access::ReadWrite
                                                  : UserDefaults::Access::ReadOnly),
      m_log(m_defaults, m_directories.applicationSupport, m_directories.temporary),
      m_languageManager(m_defaults), m_appState([this] { return m_scheduler.wallClock(); }),
      m_secrets(makeSecretStore(m_directories)), m_keychain(*m_secrets),
      m_configStore(m_defaults, m_appState, m_keychain), m_fileSystem(FileSystem::create()),
      m_launcher(ProcessLauncher::create()),
      m_engine(m_keychain, m_configStore, m_appState, *m_fileSystem, *m_launcher, m_scheduler,
               m_directories.home),
      m_networkPath(NetworkPathMonitor::create()),
      m_wifi(WiFiNetworkName::create(BusAddress::system())),
      m_network(*m_networkPath, NetworkSources::ofThisMachine(*m_wifi), m_scheduler),
      m_sleepMonitor(SleepMonitor::create(BusAddress::system(), m_scheduler)),
      m_notificationPreferences(m_defaults),
      m_desktopNotifications(DesktopNotifications::create(
          BusAddress::session(), m_scheduler, QStringLiteral("Harbrix"),
          QLatin1String(AppDelegate::applicationIdentifier))),
      m_notifications(*m_desktopNotifications, m_notificationPreferences, m_scheduler),
      m_strategy(m_engine, m_configStore, m_appState, m_network, m_notifications, m_defaults,
                 m_scheduler, *m_sleepMonitor),
      m_saver(m_configStore, m_keychain, m_strategy), m_drafts(m_configStore),
      m_cache(m_defaults, m_scheduler, m_directories.caches),
      m_cacheDirectory(m_cache, m_defaults, m_scheduler), m_recentFiles(m_defaults, m_scheduler),
      m_crashReporter(m_directories.applicationSupport, m_directories.home),
      m_updates(openInDesktop), m_analytics(m_defaults, m_directories.applicationSupport,
                                            [this] { return m_scheduler.wallClock(); }),
      m_loginItem(m_directories.config, QLatin1String(AppDelegate::applicationIdentifier),
                  QCoreApplication::applicationFilePath()),
      m_settings({m_defaults, m_languageManager, m_log, m_notificationPreferences, m_cache,
                  m_cacheDirectory, m_loginItem}),
      m_remoteControl({m_configStore, m_appState, m_keychain, m_engine, m_network, m_strategy,
                       m_settings, m_log, m_defaults}) {
    // The objects are there before the name is: who sees the name can call them.
    publish();
    m_instance.claimName();
    m_appDelegate = std::make_unique<AppDelegate>(
        LaunchedServices{m_instance, m_crashReporter, m_updates, *m_desktopNotifications, m_network,
                         m_strategy, m_cacheDirectory, m_analytics, m_defaults, m_scheduler});
    connectParts();
}

HarbrixApp::~HarbrixApp() = default;

void HarbrixApp::publish() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        log(LogLevel::warning, QStringLiteral("No session bus; remote control (harbrixctl) is off"),
            LogCategory::system);
        return;
    }
    if (!m_remoteControl.publish(bus) || !m_applicationObject.publish(bus))
        log(LogLevel::error, QStringLiteral("The session bus refused the remote control"),
            LogCategory::system);
}

void HarbrixApp::connectParts() {
    QCoreApplication* application = QCoreApplication::instance();
    const auto quit = &QCoreApplication::quit;
    QObject::connect(m_appDelegate.get(), &AppDelegate::terminateRequested, application, quit);
    QObject::connect(&m_remoteControl, &RemoteControl::quitRequested, application, quit);
    QObject::connect(application, &QCoreApplication::aboutToQuit, m_appDelegate.get(),
                     &AppDelegate::applicationWillTerminate);
    QObject::connect(&m_defaults, &UserDefaults::writeErrorChanged, application,
                     [this] { reportSettingsFile(); });
    QObject::connect(m_appDelegate.get(), &AppDelegate::launched, application,
                     [this] { reportDamagedSettings(); });
    makeUserInterface();
}

/// Once a change: the bar of the main window and harbrixctl repeat it as long as it lasts.
void HarbrixApp::reportSettingsFile() {
    if (const auto error = m_defaults.lastWriteError())
        log(LogLevel::error,
            QStringLiteral("Settings cannot be saved to %1: %2")
                .arg(m_defaults.filePath(), error->description),
            LogCategory::config);
    else
        log(LogLevel::info, QStringLiteral("Settings are saved again"), LogCategory::config);
}

void HarbrixApp::reportDamagedSettings() {
    if (m_defaults.lastWriteError())
        reportSettingsFile();
    const auto& copy = m_defaults.damagedCopy();
    if (!copy)
        return;
    log(LogLevel::warning,
        QStringLiteral("The settings file was damaged and has been set aside as ") + *copy,
        LogCategory::config);
    m_notifications.notifySettingsDamaged(*copy);
}

Environment HarbrixApp::environment() {
    return {m_appState,
            m_configStore,
            m_languageManager,
            m_network,
            m_strategy,
            m_engine,
            m_saver,
            m_drafts,
            openInDesktop,
            [this] { m_updates.checkForUpdates(); },
            {m_browserState, m_cache, m_recentFiles, m_scheduler,
             [](const QUrl& file) { showInFileViewer(file); },
             [this](const QString& fileName, TransferDirection direction) {
                 m_notifications.notifyTransferCompleted(fileName, direction);
             }},
            {m_defaults, m_log, m_notificationPreferences, m_cacheDirectory, m_loginItem}};
}

void HarbrixApp::makeUserInterface() {
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        return;
    m_userInterface =
        std::make_unique<UserInterface>(*application, environment(), m_scheduler, *m_sleepMonitor);
    UserInterface* ui = m_userInterface.get();
    QObject::connect(m_appDelegate.get(), &AppDelegate::statusItemRequested, ui,
                     &UserInterface::start);
    QObject::connect(m_appDelegate.get(), &AppDelegate::launched, ui,
                     &UserInterface::openMainWindow);
    QObject::connect(ui, &UserInterface::quitRequested, application, &QCoreApplication::quit);
    QObject::connect(&m_applicationObject, &ApplicationObject::activated, ui,
                     &UserInterface::activate);
    QObject::connect(&m_notifications, &NotificationService::activationRequested, ui,
                     &UserInterface::activate);
}

int HarbrixApp::run() {
    const TerminationSignals signalsOfTheSystem([] { QCoreApplication::quit(); });
    m_scheduler.post([this] { m_appDelegate->applicationDidFinishLaunching(); });
    const int exitCode = QCoreApplication::exec();
    m_log.waitForWrites();
    return exitCode;
}

bool HarbrixApp::isBusy() const {
    return m_strategy.runningFlows() > 0 || m_saver.isSaving() ||
           m_remoteControl.runningCalls() > 0 || m_crashReporter.runningFlows() > 0 ||
           workerPool().activeThreadCount() > 0;
}

} // namespace harbrix
