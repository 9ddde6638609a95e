#include "mount_nfs/session/Session.h"

#include <algorithm>
#include <utility>

namespace harbrix::nfs {

namespace {
using namespace std::chrono_literals;
constexpr auto setUpLimit = 5s;
constexpr auto setUpPause = 2s;
constexpr auto delayPause = 250ms;
constexpr std::uint32_t slotsWanted = 64;
constexpr std::uint32_t largestMessage = (1 << 20) + 2048;
constexpr std::uint32_t smallestMessage = 8192;
} // namespace

void Session::setUp(bool clientIsKnown) {
    m_phase = Phase::SettingUp;
    if (m_minorVersion == 0)
        setClientId();
    else if (clientIsKnown)
        createSession();
    else
        exchangeId();
}

void Session::setUpCall(std::function<void(CompoundWriter&)> operations,
                        std::move_only_function<void(Reply&)> done) {
    if (!m_transport.isUp()) {
        m_phase = Phase::Down;
        return;
    }
    if (m_setUpTimer)
        m_loop.cancel(*m_setUpTimer);
    const std::uint32_t xid = m_nextXid++;
    m_setUpTimer = m_loop.after(setUpLimit, [this] {
        m_setUpTimer.reset();
        m_transport.restart("the server does not answer");
    });
    m_setUpPending = SetUpPending{xid, [this, done = std::move(done)](Reply& reply) mutable {
                                      m_loop.cancel(*m_setUpTimer);
                                      m_setUpTimer.reset();
                                      if (reply.status != Status::Delay)
                                          return done(reply);
                                      m_setUpTimer = m_loop.after(delayPause, [this] {
                                          m_setUpTimer.reset();
                                          setUp(m_clientIsKnown);
                                      });
                                  }};
    m_transport.send(encode(xid, m_config.credentials, operations));
}

void Session::setUpFailed(const std::string& what, Status status) {
    m_phase = Phase::Down;
    m_clientIsKnown = false;
    m_setUpTimer = m_loop.after(setUpPause, [this] {
        m_setUpTimer.reset();
        if (m_transport.isUp() && m_phase == Phase::Down)
            setUp(false);
    });
    if (m_failed)
        m_failed(what, status);
}

void Session::exchangeId() {
    m_clientIsKnown = false;
    setUpCall([this](CompoundWriter& out) { out.exchangeId(m_bootVerifier, m_clientName); },
              [this](Reply& reply) {
                  const bool mayFallBack = !m_config.minorVersion && m_clientId == 0;
                  if (reply.status == Status::MinorVersMismatch && mayFallBack) {
                      m_minorVersion = 0;
                      return setClientId();
                  }
                  if (!reply.results.next(Op::ExchangeId))
                      return setUpFailed("EXCHANGE_ID", reply.status);
                  const ExchangeIdResult result = reply.results.exchangeId();
                  if (reply.results.malformed())
                      return setUpFailed("EXCHANGE_ID", Status::LocalMalformed);
                  m_clientId = result.clientId;
                  m_createSequence = result.sequence;
                  createSession();
              });
}

void Session::createSession() {
    setUpCall(
        [this](CompoundWriter& out) {
            out.createSession(m_clientId, m_createSequence, largestMessage, slotsWanted);
        },
        [this](Reply& reply) {
            if (!reply.results.next(Op::CreateSession)) {
                // The server was started anew, or waited for this client longer than its lease.
                if (m_clientIsKnown)
                    return exchangeId();
                return setUpFailed("CREATE_SESSION", reply.status);
            }
            const CreateSessionResult result = reply.results.createSession();
            if (reply.results.malformed() || result.slots == 0 ||
                result.maximumRequest < smallestMessage || result.maximumResponse < smallestMessage)
                return setUpFailed("CREATE_SESSION", Status::LocalMalformed);
            ++m_createSequence;
            m_sessionId = result.session;
            m_slots.reset(std::min(result.slots, slotsWanted));
            m_maximumRequest = std::min(result.maximumRequest, largestMessage);
            m_maximumResponse = std::min(result.maximumResponse, largestMessage);
            m_renewedAt = Clock::now();
            if (std::exchange(m_clientIsKnown, true))
                return ready();
            m_phase = Phase::Reclaiming;
            reclaim();
        });
}

void Session::setClientId() {
    setUpCall([this](CompoundWriter& out) { out.setClientId(m_bootVerifier, m_clientName); },
              [this](Reply& reply) {
                  if (!reply.results.next(Op::SetClientId))
                      return setUpFailed("SETCLIENTID", reply.status);
                  m_clientId = reply.results.clientId();
                  const Verifier confirm = reply.results.verifier();
                  if (reply.results.malformed())
                      return setUpFailed("SETCLIENTID", Status::LocalMalformed);
                  setUpCall(
                      [this, confirm](CompoundWriter& out) {
                          out.setClientIdConfirm(m_clientId, confirm);
                      },
                      [this](Reply& answer) {
                          if (answer.status != Status::Ok)
                              return setUpFailed("SETCLIENTID_CONFIRM", answer.status);
                          m_maximumRequest = m_maximumResponse = largestMessage;
                          ready();
                      });
              });
}

void Session::track(const std::shared_ptr<OpenState>& state) {
    std::erase_if(m_states, [](const auto& entry) { return entry.second.expired(); });
    m_states[state.get()] = state;
}

std::vector<std::shared_ptr<OpenState>> Session::trackedStates() {
    std::vector<std::shared_ptr<OpenState>> found;
    for (const auto& [address, weak] : m_states)
        if (auto state = weak.lock(); state && !state->anonymous && !state->lost)
            found.push_back(std::move(state));
    return found;
}

void Session::reclaim() {
    const auto states = trackedStates();
    m_reclaimsLeft = states.size() + 1;
    for (const auto& state : states) {
        state->owner = newOwner();
        for (auto& [owner, lock] : state->locks)
            lock.known = false;
        Call call;
        call.kind = CallKind::Recovery;
        call.ofSetUp = true;
        call.credentials = state->credentials;
        call.cacheReply = true;
        call.encode = [this, state](CompoundWriter& out) {
            out.putFh(state->handle);
            out.openReclaim({m_clientId, state->owner}, state->access);
        };
        call.done = [this, state](Reply& reply) { reclaimed(state, reply); };
        submit(std::move(call));
    }
    reclaimStepDone();
}

void Session::reclaimed(const std::shared_ptr<OpenState>& state, Reply& reply) {
    if (reply.results.next(Op::PutFh) && reply.results.next(Op::Open)) {
        const OpenResult result = reply.results.open();
        if (!reply.results.malformed()) {
            state->stateid = result.stateid;
            return recoverLocks(state, true, [this] { reclaimStepDone(); });
        }
    }
    // Where the server has no grace period the old stateid stays for now: the first use of it will
    // open the file the ordinary way.
    reclaimStepDone();
}

void Session::reclaimStepDone() {
    if (--m_reclaimsLeft > 0)
        return;
    Call call;
    call.kind = CallKind::Recovery;
    call.ofSetUp = true;
    call.credentials = m_config.credentials;
    call.cacheReply = true;
    call.encode = [](CompoundWriter& out) { out.reclaimComplete(); };
    call.done = [this](Reply& reply) {
        if (reply.status == Status::Ok || reply.status == Status::CompleteAlready)
            return ready();
        setUpFailed("RECLAIM_COMPLETE", reply.status);
    };
    submit(std::move(call));
}

void Session::ready() {
    m_phase = Phase::Ready;
    armRenewal();
    if (m_established) {
        m_failed = nullptr;
        std::exchange(m_established, nullptr)();
    }
    // Locks that could not be reclaimed are asked for at once, before somebody else is.
    for (const auto& state : trackedStates())
        for (const auto& [owner, lock] : state->locks)
            if (!lock.known && !lock.held.empty()) {
                reopen(state);
                break;
            }
    dispatch();
}

void Session::sessionLost() {
    if (m_phase != Phase::Ready && m_phase != Phase::Reclaiming)
        return;
    // All that was on its way is asked again in the next session, in its old order.
    std::vector<CallId> again;
    for (auto& [id, pending] : m_calls)
        if (pending.place == Place::Sent)
            again.push_back(id);
    m_sent.clear();
    m_inFlight = 0;
    std::erase_if(m_calls, [](const auto& entry) {
        return entry.second.call.ofSetUp && entry.second.place != Place::Sent;
    });
    for (auto each = again.rbegin(); each != again.rend(); ++each) {
        Pending& pending = m_calls.at(*each);
        if (pending.abandoned || pending.call.ofSetUp) {
            m_calls.erase(*each);
            continue;
        }
        pending.place = Place::Queued;
        pending.message.reset();
        (pending.call.kind == CallKind::Recovery ? m_recoveryQueue : m_queue).push_front(*each);
    }
    setUp(m_clientIsKnown);
}

void Session::recoverState(CallId id, const std::shared_ptr<OpenState>& state) {
    Pending& waiting = m_calls.at(id);
    waiting.place = Place::Waiting;
    ++waiting.stateRetries;
    m_recovering[state.get()].push_back(id);
    reopen(state);
}

void Session::reopen(const std::shared_ptr<OpenState>& state) {
    if (!m_reopening.insert(state.get()).second)
        return;
    state->owner = newOwner();
    for (auto& [owner, lock] : state->locks)
        lock.known = false;
    Call call;
    call.kind = CallKind::Recovery;
    call.credentials = state->credentials;
    call.cacheReply = true;
    call.encode = [this, state](CompoundWriter& out) {
        out.putFh(state->handle);
        out.openByHandle({m_clientId, state->owner}, state->access | shareAccessWantNoDelegation);
    };
    call.done = [this, state](Reply& reply) {
        state->lost = true;
        if (reply.results.next(Op::PutFh) && reply.results.next(Op::Open)) {
            const OpenResult result = reply.results.open();
            state->lost = reply.results.malformed();
            state->stateid = result.stateid;
        }
        if (state->lost)
            return recoveredState(state);
        recoverLocks(state, false, [this, state] { recoveredState(state); });
    };
    submit(std::move(call));
}

void Session::recoverLocks(const std::shared_ptr<OpenState>& state, bool reclaim,
                           std::function<void()> done) {
    // One after the other: each needs the lock stateid that the one before it returned.
    for (auto& [owner, lock] : state->locks) {
        for (std::size_t index = 0; index < lock.held.size(); ++index) {
            const OpenState::HeldLock held = lock.held[index];
            if (held.recovered == state->owner)
                continue;
            lock.held[index].recovered = state->owner;
            Call call;
            call.kind = CallKind::Recovery;
            call.ofSetUp = reclaim;
            call.credentials = state->credentials;
            call.cacheReply = true;
            call.encode = [this, state, owner = owner, held, reclaim](CompoundWriter& out) {
                const auto& of = state->locks[owner];
                out.putFh(state->handle);
                if (of.known)
                    out.lockMore(held.type, reclaim, held.range, of.stateid.latest());
                else
                    out.lockFirst(held.type, reclaim, held.range, state->stateid,
                                  {m_clientId, owner});
            };
            call.done = [this, state, owner = owner, reclaim, done](Reply& reply) {
                if (reply.results.next(Op::PutFh) && reply.results.next(Op::Lock)) {
                    state->locks[owner].stateid = reply.results.stateid();
                    state->locks[owner].known = true;
                } else if (!reclaim) {
                    // Somebody else may have held it meanwhile: what its owner does now is unsafe.
                    state->lost = true;
                    return done();
                }
                recoverLocks(state, reclaim, done);
            };
            submit(std::move(call));
            return;
        }
    }
    done();
}

void Session::recoveredState(const std::shared_ptr<OpenState>& state) {
    m_reopening.erase(state.get());
    const auto waiters = m_recovering.extract(state.get());
    if (waiters.empty())
        return;
    for (const CallId id : waiters.mapped()) {
        const auto found = m_calls.find(id);
        if (found == m_calls.end() || found->second.place != Place::Waiting)
            continue;
        if (state->lost)
            fail(id, Status::BadStateid);
        else
            enqueue(id, found->second);
    }
    dispatch();
}

void Session::shutDown(Duration limit, std::function<void()> done) {
    const bool established = m_phase == Phase::Ready && m_transport.isUp() && !m_stalled;
    m_phase = Phase::ShuttingDown;
    if (m_renewal)
        m_loop.cancel(*m_renewal);
    if (!established || m_minorVersion == 0) {
        m_loop.after(0s, std::move(done));
        return;
    }
    const auto once = std::make_shared<std::function<void()>>(std::move(done));
    const auto finish = [once] {
        if (const auto action = std::exchange(*once, nullptr))
            action();
    };
    m_loop.after(limit, finish);
    setUpCall([this](CompoundWriter& out) { out.destroySession(m_sessionId); },
              [this, finish](Reply&) {
                  setUpCall([this](CompoundWriter& out) { out.destroyClientId(m_clientId); },
                            [finish](Reply&) { finish(); });
              });
}

} // namespace harbrix::nfs
