#include "automation/AutoMountStrategy.h"
#include "config/NASConfigStore.h"

namespace harbrix {

void AutoMountStrategy::observeDeletions() {
    // What waits for its delay goes with the record; a flow that runs already comes to its end.
    connect(&m_store, &NASConfigStore::changed, this, [this] {
        const auto isDeleted = [this](const QUuid& id) { return !m_store.config(id); };
        std::erase_if(m_retries, [&](const auto& entry) { return isDeleted(entry.first); });
        std::erase_if(m_retryCounts, [&](const auto& entry) { return isDeleted(entry.first); });
        m_pending.remove_if([&](const Pending& pending) {
            return !pending.share.isNull() && isDeleted(pending.share);
        });
        emit pendingChanged();
    });
}

void AutoMountStrategy::scheduleRetry(const NASConfig& config) {
    const int count = retryCount(config.id);
    const Seconds delay =
        retryIntervals.at(std::min<std::size_t>(count, retryIntervals.size() - 1));
    m_retryCounts[config.id] = count + 1;
    dispatch([this, config, delay] { armRetryTimer(config, delay); });
}

void AutoMountStrategy::armRetryTimer(const NASConfig& config, Seconds delay) {
    Retry retry;
    retry.due = m_scheduler.now() + toDuration(delay);
    retry.timer = m_scheduler.after(delay, [this, config] { fireRetry(config); });
    m_retries[config.id] = std::move(retry);
    emit pendingChanged();
}

void AutoMountStrategy::fireRetry(const NASConfig& config) {
    m_retries.erase(config.id);
    emit pendingChanged();
    // Elsewhere the chain ends here; the next change of the network begins a new one.
    if (mayMount(config))
        launch(performMount(config));
}

void AutoMountStrategy::cancelRetry(const QUuid& id) {
    dispatch([this, id] {
        const bool wasPending = m_retries.erase(id) > 0;
        m_retryCounts.erase(id);
        if (wasPending)
            emit pendingChanged();
    });
}

void AutoMountStrategy::cancelAllRetries() {
    dispatch([this] {
        m_retries.clear();
        m_retryCounts.clear();
        emit pendingChanged();
    });
}

} // namespace harbrix
