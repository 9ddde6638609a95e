#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace harbrix {

/// One thread that calls back at given times. It sleeps without a time limit while nothing is due,
/// so that an idle mount wakes nobody. Callbacks run one after the other on its thread and must not
/// block.
class Watchdog {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    /// Returns when it wants to be called again, if at all.
    using Callback = std::function<std::optional<TimePoint>()>;

    Watchdog();
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /// One pending call. Its end takes the call back, and waits for it if it is running just now;
    /// so do not end it while holding a lock that the callback takes.
    class Alarm {
    public:
        Alarm() = default;
        Alarm(Watchdog& watchdog, TimePoint due, Callback callback);
        ~Alarm() { cancel(); }
        Alarm(Alarm&& other) noexcept;
        Alarm& operator=(Alarm&& other) noexcept;
        void cancel();

    private:
        Watchdog* m_watchdog = nullptr;
        std::uint64_t m_id = 0;
    };

private:
    struct Entry {
        TimePoint due;
        Callback callback;
    };

    std::uint64_t add(TimePoint due, Callback callback);
    void remove(std::uint64_t id);
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::condition_variable m_callbackDone;
    std::map<std::uint64_t, Entry> m_entries;
    std::uint64_t m_nextId = 1;
    std::uint64_t m_running = 0;
    TimePoint m_wakesAt = TimePoint::max();
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace harbrix
