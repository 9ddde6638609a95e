#pragma once

#include "mount_nfs/session/Session.h"
#include "mount_nfs/transport/EventLoop.h"

#include <fuse_lowlevel.h>

#include <memory>
#include <set>

namespace harbrix::nfs {

class Requests;

/// A request of the kernel's that waits for the server. It is answered exactly once: by the
/// outcome, or before that because the caller was interrupted or the server is silent for too long.
class Request {
public:
    Request(Requests& requests, fuse_req_t request, CallKind patience);

    /// Claims the right to answer; null if somebody else has answered already.
    [[nodiscard]] fuse_req_t claim();
    /// For libfuse's formatting functions only; null once answered.
    [[nodiscard]] fuse_req_t peek() const { return m_request; }
    void fail(int error);
    void fail(Status status) { fail(errnoOf(status)); }
    void succeed() { fail(0); }

    /// The call that this request waits for now, to be given up with it.
    void waitsFor(CallId call) { m_call = call; }
    [[nodiscard]] TimePoint since() const { return m_since; }
    [[nodiscard]] CallKind patience() const { return m_patience; }
    [[nodiscard]] bool isAnswered() const { return m_request == nullptr; }

private:
    friend class Requests;
    Requests& m_requests;
    fuse_req_t m_request;
    CallKind m_patience;
    TimePoint m_since = Clock::now();
    CallId m_call = 0;
};

/// All requests that wait. Lets interrupted callers go, and those that would wait for a silent
/// server.
class Requests {
public:
    Requests(EventLoop& loop, Session& session) : m_loop(loop), m_session(session) {}

    [[nodiscard]] std::shared_ptr<Request> add(fuse_req_t request, CallKind patience);

private:
    friend class Request;
    static void interrupted(fuse_req_t request, void* data);
    void giveUp(const std::shared_ptr<Request>& request, int error);
    void armWatch();
    void watch();

    EventLoop& m_loop;
    Session& m_session;
    std::set<std::shared_ptr<Request>> m_waiting;
    bool m_watching = false;
};

} // namespace harbrix::nfs
