#include "mount_nfs/session/Session.h"

#include <algorithm>
#include <utility>

namespace harbrix::nfs {

namespace {
using namespace std::chrono_literals;
constexpr auto tickInterval = 250ms;
constexpr auto probeInterval = 2s;
} // namespace

void Session::transportUp() {
    m_connectedAt = Clock::now();
    if (m_phase == Phase::Ready || m_phase == Phase::Reclaiming) {
        resendAll();
        if (m_stalled)
            probe();
        dispatch();
    } else if (m_phase != Phase::ShuttingDown) {
        setUp(m_clientIsKnown);
    }
}

void Session::transportDown(const std::string& reason) {
    m_probeXid = 0;
    m_setUpPending.reset();
    if (m_setUpTimer)
        m_loop.cancel(*m_setUpTimer);
    m_setUpTimer.reset();
    if (m_phase == Phase::SettingUp)
        m_phase = Phase::Down;
    if (!m_calls.empty() && !m_waitingSince)
        m_waitingSince = Clock::now();
    if (m_failed && m_phase == Phase::Down)
        m_failed(reason, Status::LocalTimedOut);
}

void Session::resendAll() {
    std::vector<CallId> gone;
    for (auto& [id, pending] : m_calls) {
        if (pending.place != Place::Sent)
            continue;
        if (!pending.abandoned) {
            m_transport.send(pending.message);
        } else if (m_minorVersion == 0) {
            gone.push_back(id);
        } else {
            // Nobody waits for it any more, so it must not be carried out now if it was not before:
            // a bare SEQUENCE in its place settles the slot either way (RFC 8881, 2.10.6.2).
            pending.call.encode = nullptr;
            pending.call.late = nullptr;
            pending.message =
                encode(pending.xid, pending.call.credentials, [&](CompoundWriter& out) {
                    out.sequence(m_sessionId, m_slots.sequence(pending.slot), pending.slot,
                                 m_slots.highestBusy(), false);
                });
            m_transport.send(pending.message);
        }
    }
    for (const CallId id : gone) {
        m_sent.erase(m_calls.at(id).xid);
        m_calls.erase(id);
        --m_inFlight;
    }
}

void Session::transportReply(const RpcReply& reply, const Record& record) {
    if (reply.outcome == RpcOutcome::Malformed) {
        m_transport.restart("the server sent something that is no RPC reply");
        return;
    }
    heard();
    if (m_probeXid != 0 && reply.xid == m_probeXid) {
        m_probeXid = 0;
        return;
    }
    if (m_setUpPending && m_setUpPending->xid == reply.xid) {
        auto done = std::move(m_setUpPending->done);
        m_setUpPending.reset();
        Reply result;
        result.buffer = record.buffer;
        if (reply.outcome == RpcOutcome::Success) {
            result.results = CompoundReader(reply.results);
            result.status = result.results.status();
        } else if (reply.outcome == RpcOutcome::AuthError) {
            result.status = Status::LocalRefused;
        }
        return done(result);
    }
    const auto found = m_sent.find(reply.xid);
    if (found == m_sent.end())
        return;
    const CallId id = found->second;
    m_sent.erase(found);
    answered(id, reply, record);
    if (m_calls.empty())
        m_waitingSince.reset();
}

void Session::heard() {
    m_stalled = false;
    if (m_waitingSince)
        m_waitingSince = Clock::now();
}

void Session::armTick() {
    if (m_tick)
        return;
    (void) m_transport.hasMovedData(); // what moved before counts no more
    m_tick = m_loop.after(tickInterval, [this] { tick(); });
}

void Session::tick() {
    m_tick.reset();
    if (m_calls.empty() && !m_stalled) {
        m_waitingSince.reset();
        return;
    }
    const TimePoint now = Clock::now();
    if (m_transport.hasMovedData() && m_waitingSince)
        m_waitingSince = now;
    const Duration silence = m_waitingSince ? now - *m_waitingSince : Duration::zero();
    if (silence >= m_config.limits.metadata)
        m_stalled = true;
    if (m_transport.isUp()) {
        if (silence >= m_config.limits.reconnectAfter &&
            now - m_connectedAt >= m_config.limits.reconnectAfter)
            m_transport.restart("the server does not answer");
        else if (silence >= m_config.limits.probeAfter && now - m_probedAt >= probeInterval)
            probe();
    }
    expire(now, silence);
    armTick();
}

void Session::probe() {
    m_probedAt = Clock::now();
    m_probeXid = m_nextXid++;
    if (m_probeXid == 0)
        m_probeXid = m_nextXid++;
    XdrWriter out;
    beginCall(out, m_probeXid, Procedure::Null, {}, m_machine);
    m_transport.send(std::make_shared<const Message>(finishCall(std::move(out))));
}

void Session::expire(TimePoint now, Duration silence) {
    std::vector<CallId> late;
    for (const auto& [id, pending] : m_calls) {
        if (pending.abandoned)
            continue;
        const CallKind kind = pending.call.kind;
        if (kind == CallKind::Metadata &&
            (silence >= m_config.limits.metadata ||
             (pending.delays == 0 && now - pending.submitted >= m_config.limits.live)))
            late.push_back(id);
        else if (kind == CallKind::Data && silence >= m_config.limits.data)
            late.push_back(id);
    }
    for (const CallId id : late)
        fail(id, Status::LocalTimedOut);
}

void Session::setLease(Duration lease) {
    m_lease = std::max<Duration>(lease, 2s);
    armRenewal();
}

void Session::armRenewal() {
    // In 4.0 nothing is held at the server between calls, so there is nothing to renew.
    if (m_minorVersion == 0)
        return;
    if (m_renewal)
        m_loop.cancel(*m_renewal);
    const TimePoint due = std::max(m_renewedAt, Clock::now() - m_lease / 2) + m_lease / 2;
    m_renewal = m_loop.after(due - Clock::now(), [this] {
        m_renewal.reset();
        if (m_phase == Phase::ShuttingDown)
            return;
        if (Clock::now() - m_renewedAt < m_lease / 2)
            return armRenewal();
        Call call;
        call.kind = CallKind::Persistent;
        call.credentials = m_config.credentials;
        call.done = [this](Reply&) {
            m_renewedAt = Clock::now();
            armRenewal();
        };
        submit(std::move(call));
    });
}

} // namespace harbrix::nfs
