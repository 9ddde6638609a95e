#include "mount_nfs/fuse/Request.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace harbrix::nfs {

namespace {
using namespace std::chrono_literals;
/// Ordinary signals must break no read: a caller is let go only from a call that really hangs.
constexpr auto stallBeforeInterrupt = 1s;
constexpr auto watchInterval = 500ms;
} // namespace

Request::Request(Requests& requests, fuse_req_t request, CallKind patience)
    : m_requests(requests), m_request(request), m_patience(patience) {}

fuse_req_t Request::claim() {
    if (!m_request)
        return nullptr;
    fuse_req_t request = std::exchange(m_request, nullptr);
    fuse_req_interrupt_func(request, nullptr, nullptr);
    const auto self = std::find_if(m_requests.m_waiting.begin(), m_requests.m_waiting.end(),
                                   [this](const auto& each) { return each.get() == this; });
    if (self != m_requests.m_waiting.end())
        m_requests.m_waiting.erase(self);
    return request;
}

void Request::fail(int error) {
    if (fuse_req_t request = claim())
        fuse_reply_err(request, error);
}

std::shared_ptr<Request> Requests::add(fuse_req_t request, CallKind patience) {
    auto added = std::make_shared<Request>(*this, request, patience);
    m_waiting.insert(added);
    fuse_req_interrupt_func(request, &Requests::interrupted, added.get());
    armWatch();
    return added;
}

void Requests::interrupted(fuse_req_t, void* data) {
    // libfuse holds locks here, so the answer comes from the loop.
    auto* address = static_cast<Request*>(data);
    Requests& self = address->m_requests;
    const auto found = std::find_if(self.m_waiting.begin(), self.m_waiting.end(),
                                    [&](const auto& each) { return each.get() == address; });
    if (found == self.m_waiting.end())
        return;
    const std::weak_ptr<Request> weak = *found;
    const Duration left = (*found)->since() + stallBeforeInterrupt - Clock::now();
    self.m_loop.after(std::max<Duration>(left, 0s), [&self, weak] {
        if (const auto request = weak.lock())
            self.giveUp(request, EINTR);
    });
}

void Requests::giveUp(const std::shared_ptr<Request>& request, int error) {
    if (request->isAnswered())
        return;
    if (request->m_call != 0)
        m_session.abandon(request->m_call);
    request->fail(error);
}

void Requests::armWatch() {
    if (std::exchange(m_watching, true))
        return;
    m_loop.after(watchInterval, [this] { watch(); });
}

void Requests::watch() {
    m_watching = false;
    if (m_waiting.empty())
        return;
    if (m_session.isStalled()) {
        std::vector<std::shared_ptr<Request>> late;
        for (const auto& request : m_waiting) {
            const Limits& limits = m_session.limits();
            const Duration limit =
                request->patience() == CallKind::Metadata ? limits.metadata : limits.data;
            if (Clock::now() - request->since() >= limit)
                late.push_back(request);
        }
        for (const auto& request : late)
            giveUp(request, ETIMEDOUT);
    }
    armWatch();
}

} // namespace harbrix::nfs
