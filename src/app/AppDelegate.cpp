#include "app/AppDelegate.h"

#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "files/CacheDirectoryManager.h"
#include "platform/DesktopNotifications.h"
#include "platform/SingleInstance.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"

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

AppDelegate::AppDelegate(SingleInstance& instance, DesktopNotifications& notifications,
                         NetworkMonitor& network, AutoMountStrategy& strategy,
                         CacheDirectoryManager& cacheDirectory, UserDefaults& defaults,
                         Scheduler& scheduler)
    : m_instance(instance), m_notifications(notifications), m_network(network),
      m_strategy(strategy), m_cacheDirectory(cacheDirectory), m_defaults(defaults),
      m_scheduler(scheduler) {}

bool AppDelegate::ensureSingleInstance() {
    if (m_instance.isFirst())
        return true;
    log(LogLevel::info,
        QStringLiteral("Another Harbrix instance is running. Activating it and exiting."),
        LogCategory::lifecycle);
    m_instance.activateOther();
    emit terminateRequested();
    return false;
}

// The order is a requirement: whatever shows the state exists before the network monitor can report
// anything, and the monitor runs before the conductor that listens to it.
void AppDelegate::applicationDidFinishLaunching() {
    if (!ensureSingleInstance())
        return;
    log(LogLevel::info, QStringLiteral("Harbrix application starting..."), LogCategory::lifecycle);

    emit statusItemRequested();

    requestNotificationPermission();

    m_network.start();
    log(LogLevel::info, QStringLiteral("Network monitoring started"), LogCategory::network);

    m_strategy.start();
    log(LogLevel::info, QStringLiteral("Auto-mount strategy started"), LogCategory::mount);

    m_cacheDirectory.startPeriodicCleanup();
    m_cacheDirectory.launch(m_cacheDirectory.performStartupCleanup());

    scheduleOnboarding();
    log(LogLevel::info, QStringLiteral("Harbrix application started successfully"),
        LogCategory::lifecycle);
    emit launched();
}

void AppDelegate::requestNotificationPermission() {
    m_notifications.checkReachable([](const DesktopNotifications::Outcome& outcome) {
        if (outcome)
            log(LogLevel::info, QStringLiteral("Notification permission granted"));
        else
            log(LogLevel::warning,
                QStringLiteral("Notification permission denied: ") + outcome.error().description);
    });
}

void AppDelegate::scheduleOnboarding() {
    if (m_defaults.boolean(QLatin1String(hasCompletedOnboardingKey)).value_or(false))
        return;
    m_onboarding = m_scheduler.after(onboardingDelay, [this] { emit showOnboarding(); });
}

void AppDelegate::applicationWillTerminate() {
    log(LogLevel::info, QStringLiteral("Harbrix application terminating..."),
        LogCategory::lifecycle);
    const auto ended = std::make_shared<Semaphore>(0);
    m_scheduler.post([strategy = &m_strategy, ended] {
        strategy->launch(unmountAllAndSignal(strategy, ended));
    });
    [[maybe_unused]] const bool inTime = ended->try_acquire_for(terminationWait);
    log(LogLevel::info, QStringLiteral("Harbrix application terminated"), LogCategory::lifecycle);
}

} // namespace harbrix
