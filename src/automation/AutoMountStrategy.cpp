#include "automation/AutoMountStrategy.h"

#include "platform/UserDefaults.h"
#include "services/LogManager.h"

#include <QPointer>

namespace harbrix {

namespace {

void logEscape(const std::exception_ptr& escaped) {
    QString reason = QStringLiteral("unknown exception");
    try {
        std::rethrow_exception(escaped);
    } catch (const std::exception& exception) {
        reason = QString::fromUtf8(exception.what());
    } catch (...) {
    }
    log(LogLevel::critical, "A mount flow ended unexpectedly: " + reason, LogCategory::mount);
}

} // namespace

AutoMountStrategy::AutoMountStrategy(MountOperations& engine, NASConfigStore& store,
                                     AppStateManager& appState, NetworkMonitor& network,
                                     MountNotifier& notifier, UserDefaults& defaults,
                                     Scheduler& scheduler, SleepMonitor& sleepMonitor)
    : m_engine(engine), m_store(store), m_appState(appState), m_network(network),
      m_notifier(notifier), m_defaults(defaults), m_scheduler(scheduler),
      m_sleepMonitor(sleepMonitor), m_flows(logEscape) {}

AutoMountStrategy::~AutoMountStrategy() = default;

void AutoMountStrategy::start() {
    observeRecords();
    subscribeToNetwork();
    observeSleep();
    startHealthCheckTimer();
    if (m_defaults.boolean(autoMountOnLaunchKey).value_or(true))
        later(launchDelay, [this] { launch(mountAll()); });
}

void AutoMountStrategy::launch(Task<void> flow) {
    m_flows.launch(std::move(flow));
}

void AutoMountStrategy::dispatch(std::function<void()> callback) {
    m_scheduler.post([self = QPointer(this), callback = std::move(callback)] {
        if (self)
            callback();
    });
}

void AutoMountStrategy::later(Seconds delay, std::function<void()> callback, const QUuid& share) {
    const auto entry = m_pending.insert(m_pending.end(), Pending{});
    entry->due = m_scheduler.now() + toDuration(delay);
    entry->share = share;
    entry->timer = m_scheduler.after(delay, [this, entry, callback = std::move(callback)] {
        m_pending.erase(entry);
        callback();
    });
}

std::optional<Seconds> AutoMountStrategy::timeUntilRetry(const QUuid& id) const {
    const auto found = m_retries.find(id);
    if (found == m_retries.end())
        return std::nullopt;
    return found->second.due - m_scheduler.now();
}

int AutoMountStrategy::retryCount(const QUuid& id) const {
    const auto found = m_retryCounts.find(id);
    return found == m_retryCounts.end() ? 0 : found->second;
}

std::optional<Seconds> AutoMountStrategy::timeUntilDelayedMount(const QUuid& id) const {
    // All delays are equal, so the first entry is due first.
    for (const Pending& pending : m_pending)
        if (pending.share == id)
            return pending.due - m_scheduler.now();
    return std::nullopt;
}

} // namespace harbrix
