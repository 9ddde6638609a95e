#include "base/ManualScheduler.h"

#include <QTimeZone>

namespace harbrix {

QDateTime ManualScheduler::wallClock() const {
    const QDateTime start(QDate(2026, 1, 1), QTime(0, 0), QTimeZone::utc());
    return start.addMSecs(std::chrono::duration_cast<std::chrono::milliseconds>(m_now).count());
}

void ManualScheduler::post(std::function<void()> callback) {
    m_posted.push_back(std::move(callback));
}

void ManualScheduler::arm(const std::shared_ptr<detail::Alarm>& alarm, Duration delay) {
    m_alarms.emplace(m_now + std::max(delay, Duration::zero()), alarm);
}

void ManualScheduler::settle() {
    while (!m_posted.empty()) {
        const auto callback = std::move(m_posted.front());
        m_posted.pop_front();
        callback();
    }
}

void ManualScheduler::advance(Seconds span) {
    const Duration end = m_now + toDuration(span);
    settle();
    while (!m_alarms.empty() && m_alarms.begin()->first <= end) {
        const auto next = m_alarms.begin();
        m_now = std::max(m_now, next->first);
        const auto alarm = next->second.lock();
        m_alarms.erase(next);
        if (alarm)
            fireAlarm(alarm);
        settle();
    }
    m_now = end;
}

std::optional<Duration> ManualScheduler::untilNextAlarm() {
    dropDisarmed();
    if (m_alarms.empty())
        return std::nullopt;
    return m_alarms.begin()->first - m_now;
}

std::size_t ManualScheduler::pendingAlarms() {
    dropDisarmed();
    return m_alarms.size();
}

void ManualScheduler::dropDisarmed() {
    std::erase_if(m_alarms, [](const auto& entry) {
        const auto alarm = entry.second.lock();
        return !alarm || !alarm->armed;
    });
}

} // namespace harbrix
