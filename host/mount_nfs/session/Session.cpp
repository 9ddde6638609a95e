#include "mount_nfs/session/Session.h"

#include <sys/random.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace harbrix::nfs {

namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t minorZeroInFlight = 64;
constexpr unsigned maximumStateRetries = 3;
constexpr unsigned maximumReplays = 3;

std::string hostName() {
    std::array<char, 256> name{};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

std::uint64_t randomNumber() {
    std::uint64_t value = 0;
    if (getrandom(&value, sizeof value, 0) != sizeof value)
        value = static_cast<std::uint64_t>(Clock::now().time_since_epoch().count());
    return value;
}

/// The server has forgotten this one open file, not the whole session.
bool meansLostState(Status status) {
    switch (status) {
    case Status::BadStateid:
    case Status::StaleStateid:
    case Status::Expired:
    case Status::AdminRevoked:
    case Status::DelegRevoked:
        return true;
    default:
        return false;
    }
}

} // namespace

Session::Session(EventLoop& loop, BufferPool& pool, Config config)
    : m_loop(loop), m_config(std::move(config)), m_machine(hostName()),
      m_nextXid(static_cast<std::uint32_t>(randomNumber())),
      m_transport(loop, pool, m_config.addresses, m_config.sourcePort, *this) {
    m_minorVersion = m_config.minorVersion.value_or(1);
    const std::uint64_t boot = randomNumber();
    std::memcpy(m_bootVerifier.data(), &boot, sizeof boot);
    // Unlike a kernel's, this client's state does not outlive its process, so its name need not
    // either.
    m_clientName = "harbrix mount_nfs " + m_machine + " " + std::to_string(getpid()) + " " +
                   std::to_string(randomNumber());
}

Session::~Session() = default;

void Session::start(std::function<void()> established,
                    std::function<void(const std::string&, Status)> failed) {
    m_established = std::move(established);
    m_failed = std::move(failed);
    m_transport.start();
}

CallId Session::submit(Call call) {
    const CallId id = m_nextCall++;
    Pending& pending = m_calls[id];
    pending.call = std::move(call);
    pending.submitted = Clock::now();
    const bool refused = (m_stalled && pending.call.kind == CallKind::Metadata) ||
                         (pending.call.state && pending.call.state->lost);
    if (refused) {
        // Not from in here: the caller does not have the id yet.
        pending.place = Place::Waiting;
        const Status status = m_stalled ? Status::LocalTimedOut : Status::BadStateid;
        m_loop.after(0s, [this, id, status] { fail(id, status); });
        return id;
    }
    if (!m_waitingSince)
        m_waitingSince = pending.submitted;
    armTick();
    enqueue(id, pending);
    dispatch();
    return id;
}

void Session::abandon(CallId id) {
    const auto found = m_calls.find(id);
    if (found == m_calls.end())
        return;
    if (found->second.place == Place::Sent) {
        found->second.abandoned = true;
        found->second.call.done = nullptr;
    } else {
        m_calls.erase(found); // the queues skip ids that are gone
    }
}

void Session::enqueue(CallId id, Pending& pending) {
    pending.place = Place::Queued;
    (pending.call.kind == CallKind::Recovery ? m_recoveryQueue : m_queue).push_back(id);
}

void Session::dispatch() {
    if (!m_transport.isUp())
        return;
    if (m_phase == Phase::Reclaiming || m_phase == Phase::Ready)
        dispatchFrom(m_recoveryQueue);
    if (m_phase == Phase::Ready)
        dispatchFrom(m_queue);
}

void Session::dispatchFrom(std::deque<CallId>& queue) {
    while (!queue.empty()) {
        const CallId id = queue.front();
        const auto found = m_calls.find(id);
        if (found != m_calls.end() && found->second.place == Place::Queued &&
            !send(id, found->second))
            return;
        queue.pop_front();
    }
}

bool Session::send(CallId id, Pending& pending) {
    if (m_minorVersion == 0) {
        if (m_inFlight >= minorZeroInFlight)
            return false;
    } else {
        const auto slot = m_slots.acquire();
        if (!slot)
            return false;
        pending.slot = *slot;
    }
    ++m_inFlight;
    pending.xid = m_nextXid++;
    pending.place = Place::Sent;
    pending.message = encode(pending.xid, pending.call.credentials, [&](CompoundWriter& out) {
        if (m_minorVersion > 0)
            out.sequence(m_sessionId, m_slots.sequence(pending.slot), pending.slot,
                         m_slots.highestBusy(), pending.call.cacheReply);
        if (pending.call.encode)
            pending.call.encode(out);
    });
    m_sent[pending.xid] = id;
    m_transport.send(pending.message);
    return true;
}

std::shared_ptr<const Message>
Session::encode(std::uint32_t xid, const Credentials& credentials,
                const std::function<void(CompoundWriter&)>& operations) const {
    XdrWriter out;
    beginCall(out, xid, Procedure::Compound, credentials, m_machine);
    CompoundWriter compound(out, m_minorVersion);
    operations(compound);
    return std::make_shared<const Message>(finishCall(std::move(out)));
}

void Session::answered(CallId id, const RpcReply& rpc, const Record& record) {
    const auto found = m_calls.find(id);
    if (found == m_calls.end())
        return;
    Pending& pending = found->second;
    Reply reply;
    reply.buffer = record.buffer;
    reply.asked = pending.submitted;
    pending.message.reset();
    --m_inFlight;
    if (rpc.outcome != RpcOutcome::Success) {
        reply.status =
            rpc.outcome == RpcOutcome::AuthError ? Status::LocalRefused : Status::LocalMalformed;
        if (m_minorVersion > 0)
            m_slots.release(pending.slot, false);
    } else {
        reply.results = CompoundReader(rpc.results);
        reply.status = reply.results.status();
        if (m_minorVersion > 0 && !sequenceAccepted(id, pending, reply))
            return dispatch();
    }
    judge(id, reply);
    dispatch();
}

bool Session::sequenceAccepted(CallId id, Pending& pending, Reply& reply) {
    const std::uint32_t slot = pending.slot;
    if (!reply.results.next(Op::Sequence)) {
        const Status status = reply.results.lastStatus();
        switch (status) {
        case Status::Delay:
            m_slots.release(slot, false);
            retryLater(id, m_config.limits.live, status);
            return false;
        case Status::BadSession:
        case Status::DeadSession:
        case Status::BadSlot:
        case Status::BadHighSlot:
        case Status::SeqMisordered:
        case Status::ConnNotBoundToSession:
            if (pending.abandoned) {
                m_calls.erase(id);
            } else {
                pending.place = Place::Queued;
                (pending.call.kind == CallKind::Recovery ? m_recoveryQueue : m_queue)
                    .push_front(id);
            }
            sessionLost();
            return false;
        case Status::SeqFalseRetry:
        case Status::RetryUncachedRep:
            // The first request of this number was carried out, but its reply is gone.
            m_slots.release(slot, true);
            if (pending.abandoned || pending.call.cacheReply) {
                reply.status = Status::Io;
                return true;
            }
            enqueue(id, pending);
            return false;
        default:
            m_slots.release(slot, status == Status::LocalMalformed);
            reply.status = status;
            return true;
        }
    }
    const SequenceResult sequence = reply.results.sequence();
    if (reply.results.malformed() || sequence.session != m_sessionId || sequence.slot != slot) {
        reply.status = Status::LocalMalformed;
        m_slots.release(slot, true);
        return true;
    }
    m_slots.setTarget(sequence.targetHighestSlot);
    m_slots.release(slot, true);
    m_renewedAt = Clock::now();
    if ((sequence.statusFlags & sequenceRestartReclaimNeeded) && m_phase == Phase::Ready) {
        m_phase = Phase::Reclaiming;
        reclaim();
    }
    return true;
}

void Session::judge(CallId id, Reply& reply) {
    const Pending& pending = m_calls.at(id);
    if (!pending.abandoned) {
        if (reply.status == Status::Delay)
            return retryLater(id, m_config.limits.live, reply.status);
        if (reply.status == Status::Grace)
            return retryLater(id, m_config.limits.grace, reply.status);
        // Servers tell a lost reply in the operation behind SEQUENCE, too. The request was carried
        // out; one whose reply was not to be kept may be carried out again.
        if (reply.status == Status::RetryUncachedRep && !pending.call.cacheReply &&
            pending.replays < maximumReplays) {
            ++m_calls.at(id).replays;
            return enqueue(id, m_calls.at(id));
        }
        const auto& state = pending.call.state;
        if (state && !state->anonymous && meansLostState(reply.status) &&
            pending.call.kind != CallKind::Recovery && pending.stateRetries < maximumStateRetries)
            return recoverState(id, state);
        // In 4.0 nothing but the creation of files refers to the client id.
        if (m_minorVersion == 0 && m_phase == Phase::Ready &&
            pending.stateRetries < maximumStateRetries &&
            (reply.status == Status::StaleClientId || reply.status == Status::Expired)) {
            ++m_calls.at(id).stateRetries;
            enqueue(id, m_calls.at(id));
            return setUp(false);
        }
    }
    complete(id, reply);
}

void Session::retryLater(CallId id, Duration limit, Status status) {
    Pending& pending = m_calls.at(id);
    pending.place = Place::Waiting;
    const bool bounded =
        pending.call.kind == CallKind::Metadata || pending.call.kind == CallKind::Data;
    if (pending.abandoned || (bounded && Clock::now() - pending.submitted > limit))
        return fail(id, Status::LocalTimedOut);
    const Duration pause = std::min<Duration>(100ms * (1u << std::min(pending.delays, 4u)),
                                              status == Status::Grace ? 1s : 2s);
    ++pending.delays;
    m_loop.after(pause, [this, id] {
        const auto found = m_calls.find(id);
        if (found == m_calls.end() || found->second.place != Place::Waiting)
            return;
        enqueue(id, found->second);
        dispatch();
    });
}

void Session::complete(CallId id, Reply& reply) {
    auto node = m_calls.extract(id);
    if (node.empty())
        return;
    Pending& pending = node.mapped();
    if (pending.abandoned) {
        if (pending.call.late)
            pending.call.late(reply);
    } else if (pending.call.done) {
        pending.call.done(reply);
    }
}

void Session::fail(CallId id, Status status) {
    const auto found = m_calls.find(id);
    if (found == m_calls.end())
        return;
    Pending& pending = found->second;
    Reply reply;
    reply.status = status;
    auto done = std::move(pending.call.done);
    if (pending.place == Place::Sent)
        pending.abandoned = true; // it keeps its slot until the server has answered
    else
        m_calls.erase(found);
    if (done)
        done(reply);
}

} // namespace harbrix::nfs
