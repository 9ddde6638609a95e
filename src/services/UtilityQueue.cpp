#include "services/UtilityQueue.h"

#include <sys/resource.h>
#include <unistd.h>

namespace harbrix {
namespace {

/// The nice(2) value that keeps the work below the user's own.
constexpr int utilityPriority = 5;

void lowerPriorityOfThisThread() {
    // On Linux the nice value belongs to the thread.
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), utilityPriority);
}

} // namespace

UtilityQueue::UtilityQueue() {
    // One thread makes the pool a serial queue.
    m_thread.setMaxThreadCount(1);
    m_thread.setExpiryTimeout(1'000);
}

UtilityQueue::~UtilityQueue() {
    m_thread.clear();
    m_thread.waitForDone();
}

void UtilityQueue::enqueue(std::function<void()> work) {
    m_thread.start([work = std::move(work)] {
        thread_local const bool lowered = (lowerPriorityOfThisThread(), true);
        Q_UNUSED(lowered);
        work();
    });
}

void UtilityQueue::wait() {
    m_thread.waitForDone();
}

} // namespace harbrix
