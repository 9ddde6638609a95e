#include "mount_smbfs/JobQueue.h"

namespace harbrix {

JobQueue::JobQueue(unsigned threads) {
    for (unsigned i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { run(); });
}

JobQueue::~JobQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

void JobQueue::post(std::function<void()> job) {
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_one();
}

void JobQueue::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [&] { return m_isEnding || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const auto job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
}

} // namespace harbrix
