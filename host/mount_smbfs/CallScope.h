#pragma once

#include <fuse_lowlevel.h>

#include <atomic>
#include <chrono>

namespace harbrix {

/// What the calling thread is at: the FUSE request that it answers, if any, and whether the caller
/// has lost patience. A caller's signal counts only after a second of stall, so that an ordinary
/// one (SIGCHLD, a timer, a resized window) breaks no read.
class CallScope {
public:
    /// Whoever waits for something else looks this often whether the caller has lost patience.
    static constexpr std::chrono::milliseconds impatienceCheck{250};

    explicit CallScope(fuse_req_t request);
    ~CallScope();
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;

    /// The scope of this thread, or null on a thread that serves no request. There is one at a
    /// time.
    [[nodiscard]] static CallScope* current();

    /// True once the request was interrupted and has waited for a second.
    [[nodiscard]] bool shouldGiveUp() const;

private:
    static void noteInterrupt(fuse_req_t request, void* scope);

    fuse_req_t m_request;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    std::atomic<bool> m_isInterrupted = false;
};

} // namespace harbrix
