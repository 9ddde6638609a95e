#include "base/Scheduler.h"

#include <QCoreApplication>
#include <QTimer>

namespace harbrix {

void Timer::cancel() {
    if (!m_alarm)
        return;
    m_alarm->armed = false;
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
    const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(delay);
    // A coarse timer may be off by a twentieth, which is 15 s of the longest retry delay.
    QTimer::singleShot(rounded, Qt::PreciseTimer, QCoreApplication::instance(),
                       [this, pending = std::weak_ptr(alarm)] {
                           if (const auto due = pending.lock())
                               fireAlarm(due);
                       });
}

} // namespace harbrix
