#pragma once

#include "base/Scheduler.h"

#include <QObject>

namespace harbrix {

class AnalyticsService;
class AutoMountStrategy;
class CacheDirectoryManager;
class CrashReporter;
class DesktopNotifications;
class NetworkMonitor;
class SingleInstance;
class UpdateManager;
class UserDefaults;

/// What the launch starts, in the order of its steps, and what it needs for that.
struct LaunchedServices {
    SingleInstance& instance;
    CrashReporter& crashReporter;
    UpdateManager& updates;
    DesktopNotifications& notifications;
    NetworkMonitor& network;
    AutoMountStrategy& strategy;
    CacheDirectoryManager& cacheDirectory;
    AnalyticsService& analytics;
    const UserDefaults& defaults;
    Scheduler& scheduler;
};

/// The start and the end of the process: one running instance, every service started in a fixed
/// order, the automation stopped at quit. Main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    static constexpr auto applicationIdentifier = "com.harbrix.app";
    static constexpr auto hasCompletedOnboardingKey = "hasCompletedOnboarding";
    static constexpr Seconds onboardingDelay{0.5};
    /// How long a quit blocks.
    static constexpr Seconds terminationWait{5.0};

    explicit AppDelegate(const LaunchedServices& services) : m_services(services) {}

    /// Starts the services in order. Where another instance runs, brings that one to the front and
    /// asks for the end of this process instead.
    void applicationDidFinishLaunching();

    /// Asks the conductor to unmount all shares and waits for it on the very thread that it needs,
    /// so that the wait lasts its full time and the shares stay mounted: they survive a quit.
    void applicationWillTerminate();

signals:
    /// The program is to end in the regular way.
    void terminateRequested();
    /// The moment for the status item: before any service can report.
    void statusItemRequested();
    /// All services run.
    void launched();
    /// A hook for a first-run tour; nothing answers it.
    void showOnboarding();

private:
    [[nodiscard]] bool ensureSingleInstance();
    void configureUpdates();
    void requestNotificationPermission();
    void scheduleOnboarding();

    const LaunchedServices m_services;
    Timer m_onboarding;
};

} // namespace harbrix
