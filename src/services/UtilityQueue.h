#pragma once

#include <QThreadPool>

#include <functional>

namespace harbrix {

/// Runs what it is given one after the other on a thread of low priority, which lives only while
/// there is something to do. Any thread.
class UtilityQueue {
public:
    UtilityQueue();
    UtilityQueue(const UtilityQueue&) = delete;
    UtilityQueue& operator=(const UtilityQueue&) = delete;
    /// Drops what has not begun and waits for what has.
    ~UtilityQueue();

    void enqueue(std::function<void()> work);
    /// Waits until all that was queued before is done.
    void wait();

private:
    QThreadPool m_thread;
};

} // namespace harbrix
