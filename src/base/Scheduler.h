#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>

#ifndef Q_MOC_RUN // moc stumbles over the concepts that it pulls in
#include <coroutine>
#endif

class QTimer;

namespace harbrix {

/// Spans of time as the rules state them.
using Seconds = std::chrono::duration<double>;
/// Spans and instants as the scheduler keeps them; an instant counts from an arbitrary start.
using Duration = std::chrono::microseconds;

[[nodiscard]] constexpr Duration toDuration(Seconds seconds) {
    return std::chrono::round<Duration>(seconds);
}

namespace detail {
struct Alarm {
    Alarm();
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    ~Alarm();

    std::function<void()> fire;
    Duration period{0}; ///< zero for a single shot
    bool armed = true;
    std::unique_ptr<QTimer> timer; ///< of the event loop, where that is what counts the time
};
} // namespace detail

/// A pending callback. Dropping the handle cancels it; the callback never runs after that.
class Timer {
public:
    Timer() = default;
    explicit Timer(std::shared_ptr<detail::Alarm> alarm) : m_alarm(std::move(alarm)) {}
    Timer(Timer&& other) noexcept = default;
    Timer& operator=(Timer&& other) noexcept {
        if (this != &other) {
            cancel();
            m_alarm = std::move(other.m_alarm);
        }
        return *this;
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() { cancel(); }

    void cancel();
    /// True until the callback of a single shot has run, or until the timer is cancelled.
    [[nodiscard]] bool isActive() const { return m_alarm && m_alarm->armed; }

private:
    std::shared_ptr<detail::Alarm> m_alarm;
};

/// The one source of time. Every delay of the program goes through it, so that tests can jump.
/// Main thread only.
class Scheduler {
public:
    Scheduler() = default;
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    virtual ~Scheduler() = default;

    /// Monotonic; stands still while the machine sleeps.
    [[nodiscard]] virtual Duration now() const = 0;
    [[nodiscard]] virtual QDateTime wallClock() const = 0;

    /// Runs the callback once, `delay` from now, in a later turn of the event loop.
    [[nodiscard]] Timer after(Seconds delay, std::function<void()> callback);
    /// Runs the callback every `period`, first one period from now.
    [[nodiscard]] Timer every(Seconds period, std::function<void()> callback);
    /// Runs the callback in a later turn of the event loop, in the order of the calls.
    virtual void post(std::function<void()> callback) = 0;

    /// A pause that a flow can await: `auto pause = scheduler.pause(2s); co_await pause;`
    class Pause {
    public:
        Pause(Scheduler& scheduler, Seconds delay) : m_scheduler(scheduler), m_delay(delay) {}
        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> flow) {
            m_timer = m_scheduler.after(m_delay, [flow] { flow.resume(); });
        }
        void await_resume() noexcept {}

    private:
        Scheduler& m_scheduler;
        Seconds m_delay;
        Timer m_timer;
    };
    [[nodiscard]] Pause pause(Seconds delay) { return {*this, delay}; }

protected:
    /// Sees to it that fireAlarm(alarm) is called `delay` from now, unless it was disarmed before.
    virtual void arm(const std::shared_ptr<detail::Alarm>& alarm, Duration delay) = 0;
    /// Runs the callback if the alarm still stands, and arms a repeating one again.
    void fireAlarm(const std::shared_ptr<detail::Alarm>& alarm);
};

/// The scheduler that the program runs on: the event loop of the main thread.
class RealScheduler final : public Scheduler {
public:
    [[nodiscard]] Duration now() const override;
    [[nodiscard]] QDateTime wallClock() const override;
    void post(std::function<void()> callback) override;

protected:
    void arm(const std::shared_ptr<detail::Alarm>& alarm, Duration delay) override;

private:
    void armUntil(const std::shared_ptr<detail::Alarm>& alarm, Duration due);
};

} // namespace harbrix
