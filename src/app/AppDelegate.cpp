#include "app/AppDelegate.h"

#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "files/CacheDirectoryManager.h"
#include "platform/DesktopNotifications.h"
#include "platform/SingleInstance.h"
#include "platform/UserDefaults.h"
#include "services/AnalyticsService.h"
#include "services/CrashReporter.h"
#include "services/LogManager.h"
#include "services/UpdateManager.h"

#include <memory>
#include <semaphore>

namespace harbrix {
namespace {

using Semaphore = std::counting_semaphore<>;

Task<void> unmountAllAndSignal(AutoMountStrategy* strategy, std::shared_ptr<Semaphore> ended) {
    auto flow = strategy->unmountAll();
    co_await flow;
    ended->release();
}

} // namespace

bool AppDelegate::ensureSingleInstance() {
    if (m_services.instance.isFirst())
        return true;
    log(LogLevel::info,
        QStringLiteral("Another Harbrix instance is running. Activating it and exiting."),
        LogCategory::lifecycle);
    m_services.instance.activateOther();
    emit terminateRequested();
    return false;
}

// The order is a requirement: whatever shows the state exists before the network monitor can report
// anything, and the monitor runs before the conductor that listens to it.
void AppDelegate::applicationDidFinishLaunching() {
    if (!ensureSingleInstance())
        return;
    log(LogLevel::info, QStringLiteral("Harbrix application starting..."), LogCategory::lifecycle);

    m_services.crashReporter.setBackendURL(QStringLiteral(HARBRIX_API_URL));
    m_services.crashReporter.startMonitoring();
    configureUpdates();

    emit statusItemRequested();

    requestNotificationPermission();

    m_services.network.start();
    log(LogLevel::info, QStringLiteral("Network monitoring started"), LogCategory::network);

    m_services.strategy.start();
    log(LogLevel::info, QStringLiteral("Auto-mount strategy started"), LogCategory::mount);

    m_services.cacheDirectory.startPeriodicCleanup();
    m_services.scheduler.post([&cacheDirectory = m_services.cacheDirectory] {
        cacheDirectory.launch(cacheDirectory.performStartupCleanup());
    });

    m_services.analytics.track(AnalyticsEvent::appLaunch);

    scheduleOnboarding();
    log(LogLevel::info, QStringLiteral("Harbrix application started successfully"),
        LogCategory::lifecycle);
    emit launched();
}

void AppDelegate::configureUpdates() {
    const QUrl feed(QStringLiteral(HARBRIX_WEB_URL "/updates/appcast.xml"), QUrl::StrictMode);
    // Without the address of a web site there is only a path.
    if (feed.isValid() && !feed.isRelative())
        m_services.updates.configure(feed);
}

void AppDelegate::requestNotificationPermission() {
    m_services.notifications.checkReachable([](const DesktopNotifications::Outcome& outcome) {
        if (outcome)
            log(LogLevel::info, QStringLiteral("Notification permission granted"));
        else
            log(LogLevel::warning,
                QStringLiteral("Notification permission denied: ") + outcome.error().description);
    });
}

void AppDelegate::scheduleOnboarding() {
    if (m_services.defaults.boolean(QLatin1String(hasCompletedOnboardingKey)).value_or(false))
        return;
    m_onboarding = m_services.scheduler.after(onboardingDelay, [this] { emit showOnboarding(); });
}

void AppDelegate::applicationWillTerminate() {
    log(LogLevel::info, QStringLiteral("Harbrix application terminating..."),
        LogCategory::lifecycle);
    // A new start during the wait below must not take this process for a running one.
    m_services.instance.release();
    const auto ended = std::make_shared<Semaphore>(0);
    m_services.scheduler.post([strategy = &m_services.strategy, ended] {
        strategy->launch(unmountAllAndSignal(strategy, ended));
    });
    [[maybe_unused]] const bool inTime = ended->try_acquire_for(terminationWait);
    log(LogLevel::info, QStringLiteral("Harbrix application terminated"), LogCategory::lifecycle);
}

} // namespace harbrix
