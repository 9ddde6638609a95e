#pragma once

#include "base/Scheduler.h"
#include "base/TaskScope.h"
#include "config/NASConfig.h"
#include "core/HarbrixError.h"

#include <QObject>

#include <array>
#include <list>
#include <map>
#include <set>

namespace harbrix {

class AppStateManager;
class MountNotifier;
class MountOperations;
class NASConfigStore;
class NetworkMonitor;
class SleepMonitor;
class UserDefaults;

/// The conductor: the one place that decides when a share is mounted or unmounted and that writes
/// the outcome into AppStateManager. Main thread.
///
/// Two flows of one share may overlap (a timer, the network and the user may start one each); each
/// ends with its own update of the state, and the last one stands.
class AutoMountStrategy : public QObject {
    Q_OBJECT

public:
    /// From the last of a burst of network changes to looking at the shares.
    static constexpr Seconds debounceDelay{2.0};
    /// From a decision to mount to the mount, for the network to settle.
    static constexpr Seconds nasWakeDelay{5.0};
    static constexpr Seconds launchDelay{2.0};
    static constexpr Seconds wakeDelay{2.0};
    /// The back-off after failures in a row; the last one goes on for ever.
    static constexpr std::array<Seconds, 4> retryIntervals{Seconds(10), Seconds(30), Seconds(60),
                                                           Seconds(300)};
    static constexpr Seconds defaultKeepAliveInterval{180.0};

    static constexpr auto autoMountOnLaunchKey = "autoMountOnLaunch";
    static constexpr auto keepAliveEnabledKey = "keepAliveEnabled";
    static constexpr auto keepAliveIntervalKey = "keepAliveInterval";

    AutoMountStrategy(MountOperations& engine, NASConfigStore& store, AppStateManager& appState,
                      NetworkMonitor& network, MountNotifier& notifier, UserDefaults& defaults,
                      Scheduler& scheduler, SleepMonitor& sleepMonitor);
    ~AutoMountStrategy() override;

    /// Follows the network, sleep and wake, starts the health check and, unless the user has
    /// switched that off, mounts all shares two seconds later. Once.
    void start();

    /// Mounts the share by hand: whatever its binding says, and also one that is not mounted
    /// automatically. Ends at once for an unknown id.
    Task<void> mount(QUuid id);
    /// The mount that follows a saved form, as long as the record is enabled.
    Task<void> mountSaved(QUuid id);
    /// Tries a failed share again, since its record has been corrected; ends at once for others.
    Task<void> retryCorrected(QUuid id);
    Task<void> unmount(QUuid id);
    /// All enabled shares whose binding matches, side by side.
    Task<void> mountAll();
    /// All enabled shares, side by side.
    Task<void> unmountAll();

    /// Runs a flow on behalf of a caller that does not wait for it:
    /// `strategy.launch(strategy.mount(id));`
    void launch(Task<void> flow);
    /// Ready once no flow runs any more; what only waits for its delay does not count.
    [[nodiscard]] Completion<std::monostate> whenIdle() { return m_flows.whenIdle(); }
    [[nodiscard]] std::size_t runningFlows() const { return m_flows.running(); }

    // What is under way, for those who show it.

    /// Time until the next attempt of a share in back-off; nothing if none is pending.
    [[nodiscard]] std::optional<Seconds> timeUntilRetry(const QUuid& id) const;
    /// How many failures in a row the back-off has counted.
    [[nodiscard]] int retryCount(const QUuid& id) const;
    /// Time until the next delayed mount of a share; nothing if none is pending.
    [[nodiscard]] std::optional<Seconds> timeUntilDelayedMount(const QUuid& id) const;
    /// Whether a network change is waiting to be acted upon.
    [[nodiscard]] bool isDebouncePending() const { return m_debounce.isActive(); }
    [[nodiscard]] bool isHealthCheckArmed() const { return m_healthCheck.isActive(); }
    [[nodiscard]] std::size_t pendingRetries() const { return m_retries.size(); }
    /// Delayed mounts, the mount at launch and wakes that are not acted upon yet.
    [[nodiscard]] std::size_t pendingDelays() const { return m_pending.size(); }

signals:
    /// A retry or a delayed mount was armed, fired or cancelled.
    void pendingChanged();

private:
    struct Retry {
        Timer timer;
        Duration due{};
    };
    struct Pending {
        Timer timer;
        Duration due{};
        QUuid share; ///< null unless it is a delayed mount
    };

    // MountFlows.cpp
    Task<void> performMount(NASConfig config);
    Task<void> performUnmount(NASConfig config);
    Task<void> unmountAfterCancel(NASConfig config);
    /// Ends a mount whose record was removed while it was under way.
    Task<void> unmountDeleted(QUrl mountPoint);
    void scheduleDelayedMount(const QUuid& id);

    // NetworkHandling.cpp
    void subscribeToNetwork();
    void startDebounce();
    Task<void> handleNetworkChange();
    Task<void> handleMatchingShare(NASConfig config);
    void markAllOffline();
    [[nodiscard]] bool mayMount(const NASConfig& config) const;

    // Retry.cpp
    void observeRecords();
    /// Drops what waits for its delay on behalf of shares without a record.
    void forgetDeleted();
    void scheduleRetry(const QUuid& id);
    void armRetryTimer(const QUuid& id, Seconds delay);
    void fireRetry(const QUuid& id);
    /// Ends the armed retry; the count of failures stays.
    void disarmRetry(const QUuid& id);
    void cancelRetry(const QUuid& id);
    void cancelDelayedMounts(const QUuid& id);
    void cancelAllRetries();

    // SleepAndWake.cpp
    void observeSleep();
    void handleSystemSleep();
    void handleSystemWake();

    // HealthCheck.cpp
    void startHealthCheckTimer();
    Task<void> performHealthCheck();
    Task<void> checkVolume(NASConfig config);
    [[nodiscard]] bool believedMounted(const QUuid& id) const;
    /// For a walk over shares that takes a while: whether the record is still there and enabled.
    [[nodiscard]] bool isStillWanted(const QUuid& id) const;

    /// Runs the callback in a later turn, unless this object is gone by then.
    void dispatch(std::function<void()> callback);
    /// Runs the callback once after the delay; nothing cancels it but the end of this object.
    void later(Seconds delay, std::function<void()> callback, const QUuid& share = {});

    MountOperations& m_engine;
    NASConfigStore& m_store;
    AppStateManager& m_appState;
    NetworkMonitor& m_network;
    MountNotifier& m_notifier;
    UserDefaults& m_defaults;
    Scheduler& m_scheduler;
    SleepMonitor& m_sleepMonitor;

    std::map<QUuid, Retry> m_retries;
    std::map<QUuid, int> m_retryCounts;
    std::set<QUuid> m_mountedByHand; ///< the user asked for these, and has not unmounted them since
    std::list<Pending> m_pending;
    Timer m_debounce;
    Timer m_healthCheck;
    TaskScope m_flows;
};

} // namespace harbrix
