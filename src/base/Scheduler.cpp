#include "base/Scheduler.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>

namespace harbrix {

detail::Alarm::Alarm() = default;
detail::Alarm::~Alarm() = default;

void Timer::cancel() {
    if (!m_alarm)
        return;
    m_alarm->armed = false;
    m_alarm->timer.reset();
    // The callback may hold what owns this very timer: let go of it now, not when the alarm is due.
    const auto released = std::exchange(m_alarm->fire, nullptr);
    m_alarm.reset();
}

Timer Scheduler::after(Seconds delay, std::function<void()> callback) {
    auto alarm = std::make_shared<detail::Alarm>();
    alarm->fire = std::move(callback);
    arm(alarm, toDuration(delay));
    return Timer(std::move(alarm));
}

Timer Scheduler::every(Seconds period, std::function<void()> callback) {
    auto alarm = std::make_shared<detail::Alarm>();
    alarm->fire = std::move(callback);
    alarm->period = toDuration(period);
    arm(alarm, alarm->period);
    return Timer(std::move(alarm));
}

void Scheduler::fireAlarm(const std::shared_ptr<detail::Alarm>& alarm) {
    if (!alarm->armed)
        return;
    if (alarm->period > Duration::zero()) {
        arm(alarm, alarm->period);
        const auto callback = alarm->fire;
        callback();
        return;
    }
    alarm->armed = false;
    const auto callback = std::exchange(alarm->fire, nullptr);
    callback();
}

Duration RealScheduler::now() const {
    return std::chrono::duration_cast<Duration>(
        std::chrono::steady_clock::now().time_since_epoch());
}

QDateTime RealScheduler::wallClock() const {
    return QDateTime::currentDateTimeUtc();
}

void RealScheduler::post(std::function<void()> callback) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(callback),
                              Qt::QueuedConnection);
}

void RealScheduler::arm(const std::shared_ptr<detail::Alarm>& alarm, Duration delay) {
    armUntil(alarm, now() + delay);
}

void RealScheduler::armUntil(const std::shared_ptr<detail::Alarm>& alarm, Duration due) {
    // A QTimer counts milliseconds in an int: what is further away is waited for in pieces.
    constexpr std::chrono::milliseconds longest = std::chrono::hours(24 * 20);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - now());
    const auto piece = std::clamp(left, std::chrono::milliseconds(0), longest);
    // The timer is the alarm's, so a cancelled one leaves nothing behind in the event loop.
    alarm->timer = std::make_unique<QTimer>();
    QTimer& timer = *alarm->timer;
    timer.setSingleShot(true);
    // A coarse timer may be off by a twentieth, which is 15 s of the longest retry delay.
    timer.setTimerType(Qt::PreciseTimer);
    timer.callOnTimeout(&timer,
                        [this, due, isLast = left <= longest, pending = std::weak_ptr(alarm)] {
                            const auto present = pending.lock();
                            if (!present)
                                return;
                            // This very function belongs to the timer that is about to be replaced.
                            present->timer.release()->deleteLater();
                            if (isLast)
                                fireAlarm(present);
                            else
                                armUntil(present, due);
                        });
    timer.start(piece);
}

} // namespace harbrix
