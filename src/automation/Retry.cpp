#include "automation/AutoMountStrategy.h"
#include "config/NASConfigStore.h"

namespace harbrix {

void AutoMountStrategy::observeRecords() {
    connect(&m_store, &NASConfigStore::changed, this, &AutoMountStrategy::forgetDeleted);
    connect(&m_store, &NASConfigStore::edited, this,
            [this](const NASConfig& before, const NASConfig& after) {
                const bool isSwitchedOff = before.isEnabled && !after.isEnabled;
                if (!isSwitchedOff || m_mountedByHand.contains(after.id))
                    return;
                cancelRetry(after.id);
                cancelDelayedMounts(after.id);
            });
}

void AutoMountStrategy::forgetDeleted() {
    const auto isDeleted = [this](const QUuid& id) { return !m_store.config(id); };
    std::erase_if(m_retries, [&](const auto& entry) { return isDeleted(entry.first); });
    std::erase_if(m_retryCounts, [&](const auto& entry) { return isDeleted(entry.first); });
    std::erase_if(m_mountedByHand, isDeleted);
    m_pending.remove_if([&](const Pending& pending) {
        return !pending.share.isNull() && isDeleted(pending.share);
    });
    emit pendingChanged();
}

void AutoMountStrategy::scheduleRetry(const QUuid& id) {
    const int count = retryCount(id);
    const Seconds delay =
        retryIntervals.at(std::min<std::size_t>(count, retryIntervals.size() - 1));
    m_retryCounts[id] = count + 1;
    dispatch([this, id, delay] { armRetryTimer(id, delay); });
}

void AutoMountStrategy::armRetryTimer(const QUuid& id, Seconds delay) {
    if (!m_store.config(id))
        return;
    Retry retry;
    retry.due = m_scheduler.now() + toDuration(delay);
    retry.timer = m_scheduler.after(delay, [this, id] { fireRetry(id); });
    m_retries[id] = std::move(retry);
    emit pendingChanged();
}

void AutoMountStrategy::fireRetry(const QUuid& id) {
    m_retries.erase(id);
    emit pendingChanged();
    // Elsewhere the chain ends here; the next change of the network begins a new one.
    const auto config = m_store.config(id);
    if (config && mayMount(*config))
        launch(performMount(*config));
}

void AutoMountStrategy::disarmRetry(const QUuid& id) {
    dispatch([this, id] {
        if (m_retries.erase(id) > 0)
            emit pendingChanged();
    });
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
