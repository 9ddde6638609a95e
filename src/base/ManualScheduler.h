#pragma once

#include "base/Scheduler.h"

#include <deque>
#include <map>

namespace harbrix {

/// A scheduler whose clock moves only when it is told to: what takes 700 seconds of back-off runs
/// in a millisecond, and always in the same order.
class ManualScheduler final : public Scheduler {
public:
    [[nodiscard]] Duration now() const override { return m_now; }
    [[nodiscard]] QDateTime wallClock() const override;
    void post(std::function<void()> callback) override;

    /// Moves the clock on, stopping at each alarm on the way; posted callbacks run before the clock
    /// moves from where they were posted.
    void advance(Seconds span);
    /// Runs what is posted, and what that posts, without moving the clock.
    void settle();
    /// When the next alarm is due, counted from now; nothing if none is pending.
    [[nodiscard]] std::optional<Duration> untilNextAlarm();
    /// How many alarms stand; what nobody accounts for was left behind.
    [[nodiscard]] std::size_t pendingAlarms();

protected:
    void arm(const std::shared_ptr<detail::Alarm>& alarm, Duration delay) override;

private:
    void dropDisarmed();

    Duration m_now{0};
    std::multimap<Duration, std::weak_ptr<detail::Alarm>> m_alarms;
    std::deque<std::function<void()>> m_posted;
};

} // namespace harbrix
