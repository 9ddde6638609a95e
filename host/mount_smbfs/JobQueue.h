#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace harbrix {

/// A few threads that run jobs in the order of their arrival.
class JobQueue {
public:
    explicit JobQueue(unsigned threads);
    /// Runs what is queued, then ends.
    ~JobQueue();
    JobQueue(const JobQueue&) = delete;
    JobQueue& operator=(const JobQueue&) = delete;

    void post(std::function<void()> job);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_jobs;
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};

} // namespace harbrix
