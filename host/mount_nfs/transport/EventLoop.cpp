#include "mount_nfs/transport/EventLoop.h"

#include <sys/epoll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace harbrix::nfs {

EventLoop::EventLoop() : m_epoll(epoll_create1(EPOLL_CLOEXEC)) {
    if (!m_epoll) {
        std::perror("epoll_create1");
        std::abort();
    }
}

void EventLoop::watch(int fd, std::uint32_t events, Handler handler) {
    const bool known = m_watches.contains(fd);
    const std::uint64_t generation = m_nextGeneration++;
    m_watches[fd] = {generation, std::move(handler)};
    epoll_event event{};
    event.events = events;
    event.data.fd = fd;
    epoll_ctl(m_epoll.get(), known ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, fd, &event);
}

void EventLoop::rewatch(int fd, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.fd = fd;
    epoll_ctl(m_epoll.get(), EPOLL_CTL_MOD, fd, &event);
}

void EventLoop::forget(int fd) {
    if (m_watches.erase(fd) > 0)
        epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, fd, nullptr);
}

EventLoop::TimerId EventLoop::after(Duration delay, std::function<void()> action) {
    const TimerId id{Clock::now() + delay, m_nextTimer++};
    m_timers.emplace(id, std::move(action));
    return id;
}

void EventLoop::runTimers() {
    if (m_timers.empty())
        return;
    const TimePoint now = Clock::now();
    while (!m_timers.empty() && m_timers.begin()->first.first <= now) {
        const auto action = std::move(m_timers.begin()->second);
        m_timers.erase(m_timers.begin());
        action();
    }
}

int EventLoop::timeoutMilliseconds(TimePoint lastEvent) const {
    const TimePoint now = Clock::now();
    if (now - lastEvent < m_spin)
        return 0;
    if (m_timers.empty())
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(m_timers.begin()->first.first - now);
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60'000));
}

void EventLoop::run() {
    runUntil([] { return false; });
}

void EventLoop::runUntil(const std::function<bool()>& done) {
    std::array<epoll_event, 16> events;
    TimePoint lastEvent{};
    while (!m_stopped && !done()) {
        runTimers();
        for (const auto& action : m_beforeWait)
            action();
        if (m_stopped || done())
            break;
        const int count = epoll_wait(m_epoll.get(), events.data(), static_cast<int>(events.size()),
                                     timeoutMilliseconds(lastEvent));
        if (count <= 0) {
            std::this_thread::yield(); // a spinning loop leaves the processor to whoever has work
            continue;
        }
        lastEvent = Clock::now();
        // A handler may close descriptors that have events waiting in this batch, and the number
        // may even be in use again: only watches older than the batch are served.
        const std::uint64_t newest = m_nextGeneration;
        for (int index = 0; index < count; ++index) {
            const epoll_event& event = events[static_cast<std::size_t>(index)];
            const auto found = m_watches.find(event.data.fd);
            if (found == m_watches.end() || found->second.generation >= newest)
                continue;
            const Handler handler = found->second.handler;
            handler(event.events);
        }
    }
}

} // namespace harbrix::nfs
