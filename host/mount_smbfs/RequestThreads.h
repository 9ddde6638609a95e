#pragma once

#include "common/FuseSession.h"

#include <mutex>

namespace harbrix {

/// The threads that read requests and answer them. One is always free to read the next, up to a
/// limit, so that what needs no server is answered while others wait for it.
class RequestThreads {
public:
    explicit RequestThreads(FuseSession& session) : m_session(session) {}

    void start();
    /// A descriptor that becomes readable when the mount is gone.
    [[nodiscard]] int goneFd() const { return m_gone.get(); }

private:
    void startOne();
    void run();

    static constexpr unsigned kept = 4;
    static constexpr unsigned maximum = 64;

    FuseSession& m_session;
    UniqueDescriptor m_gone;
    std::mutex m_mutex;
    unsigned m_total = 0;
    unsigned m_reading = 0;
};

} // namespace harbrix
