#include "mount_smbfs/Watchdog.h"

#include <algorithm>
#include <utility>

namespace harbrix {

Watchdog::Watchdog() : m_thread([this] { run(); }) {}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

std::uint64_t Watchdog::add(TimePoint due, Callback callback) {
    const std::lock_guard lock(m_mutex);
    const std::uint64_t id = m_nextId++;
    m_entries.emplace(id, Entry{due, std::move(callback)});
    // Usually the thread already wakes earlier, for an entry that has come and gone: no wake-up a
    // call.
    if (due < m_wakesAt)
        m_changed.notify_one();
    return id;
}

void Watchdog::remove(std::uint64_t id) {
    std::unique_lock lock(m_mutex);
    m_entries.erase(id);
    if (std::this_thread::get_id() != m_thread.get_id())
        m_callbackDone.wait(lock, [&] { return m_running != id; });
}

void Watchdog::run() {
    std::unique_lock lock(m_mutex);
    while (!m_isEnding) {
        const auto first =
            std::min_element(m_entries.begin(), m_entries.end(), [](const auto& a, const auto& b) {
                return a.second.due < b.second.due;
            });
        if (first == m_entries.end()) {
            m_wakesAt = TimePoint::max();
            m_changed.wait(lock);
            continue;
        }
        if (first->second.due > std::chrono::steady_clock::now()) {
            m_wakesAt = first->second.due;
            m_changed.wait_until(lock, m_wakesAt);
            continue;
        }
        m_running = first->first;
        // It stays in the table while it runs, so that a removal meanwhile keeps it from coming
        // again.
        const std::uint64_t id = m_running;
        const Callback callback = first->second.callback;
        lock.unlock();
        const auto again = callback();
        lock.lock();
        m_running = 0;
        if (const auto entry = m_entries.find(id); entry != m_entries.end()) {
            if (again)
                entry->second.due = *again;
            else
                m_entries.erase(entry);
        }
        m_callbackDone.notify_all();
    }
}

Watchdog::Alarm::Alarm(Watchdog& watchdog, TimePoint due, Callback callback)
    : m_watchdog(&watchdog), m_id(watchdog.add(due, std::move(callback))) {}

Watchdog::Alarm::Alarm(Alarm&& other) noexcept
    : m_watchdog(std::exchange(other.m_watchdog, nullptr)), m_id(other.m_id) {}

Watchdog::Alarm& Watchdog::Alarm::operator=(Alarm&& other) noexcept {
    if (this != &other) {
        cancel();
        m_watchdog = std::exchange(other.m_watchdog, nullptr);
        m_id = other.m_id;
    }
    return *this;
}

void Watchdog::Alarm::cancel() {
    if (Watchdog* watchdog = std::exchange(m_watchdog, nullptr))
        watchdog->remove(m_id);
}

} // namespace harbrix
