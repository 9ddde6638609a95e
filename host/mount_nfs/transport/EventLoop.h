#pragma once

#include "base/UniqueDescriptor.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace harbrix::nfs {

using Clock = std::chrono::steady_clock;
using Duration = Clock::duration;
using TimePoint = Clock::time_point;

/// One thread's epoll(7) loop with timers. Everything of a mount runs on it; nothing here is
/// thread-safe.
class EventLoop {
public:
    using TimerId = std::pair<TimePoint, std::uint64_t>;
    using Handler = std::function<void(std::uint32_t events)>;

    EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    /// Calls `handler` with the epoll events of `fd`, level-triggered. One handler a descriptor; a
    /// second call replaces the events and the handler.
    void watch(int fd, std::uint32_t events, Handler handler);
    /// Changes only the events.
    void rewatch(int fd, std::uint32_t events);
    void forget(int fd);

    /// Runs `action` once after `delay`.
    TimerId after(Duration delay, std::function<void()> action);
    /// A timer that has run already is ignored.
    void cancel(const TimerId& timer) { m_timers.erase(timer); }

    /// Runs `action` each time before the loop looks for events, so that work gathered from many
    /// events goes out together.
    void beforeWait(std::function<void()> action) { m_beforeWait.push_back(std::move(action)); }

    /// For how long the loop polls after an event before it sleeps: waking an idle virtual CPU
    /// costs more than most answers take to come. Zero turns it off.
    void setSpin(Duration spin) { m_spin = spin; }

    /// Until `stop`.
    void run();
    /// Until `stop`, or `done` is true.
    void runUntil(const std::function<bool()>& done);
    void stop() { m_stopped = true; }

private:
    void runTimers();
    [[nodiscard]] int timeoutMilliseconds(TimePoint lastEvent) const;

    struct Watch {
        std::uint64_t generation;
        Handler handler;
    };

    UniqueDescriptor m_epoll;
    std::map<int, Watch> m_watches;
    std::uint64_t m_nextGeneration = 1;
    std::map<TimerId, std::function<void()>> m_timers;
    std::uint64_t m_nextTimer = 1;
    std::vector<std::function<void()>> m_beforeWait;
    Duration m_spin = Duration::zero();
    bool m_stopped = false;
};

} // namespace harbrix::nfs
