#pragma once

#include "mount_nfs/protocol/Compound.h"
#include "mount_nfs/protocol/Rpc.h"
#include "mount_nfs/session/OpenState.h"
#include "mount_nfs/session/SlotTable.h"
#include "mount_nfs/transport/RpcTransport.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace harbrix::nfs {

/// How long a call is waited for.
enum class CallKind {
    Metadata,   ///< Fails once the server has been silent for `Limits::metadata`.
    Data,       ///< Fails once the server has been silent for `Limits::data`.
    Persistent, ///< Waits as long as the mount lives: data that must not get lost.
    Recovery,   ///< Like Persistent, and goes out before the session is open for the rest.
};

struct Limits {
    Duration probeAfter = std::chrono::milliseconds(1000); ///< Silence before a NULL call asks.
    Duration metadata = std::chrono::milliseconds(2500);
    Duration data = std::chrono::seconds(20);
    Duration reconnectAfter =
        std::chrono::seconds(12);               ///< Silence before another connection is tried.
    Duration live = std::chrono::seconds(30);   ///< For one call while the server answers others.
    Duration grace = std::chrono::seconds(120); ///< While the server says that it recovers.
};

struct Reply {
    Status status = Status::LocalMalformed;
    TimePoint asked{}; ///< When the call was submitted: its results are at least as new.
    CompoundReader results{Bytes{}};
    std::shared_ptr<const Buffer> buffer; ///< Keeps alive what `results` points into.
};

struct Call {
    CallKind kind = CallKind::Metadata;
    Credentials credentials;
    /// The operation must not run twice: the server keeps its reply for a request that is sent
    /// again.
    bool cacheReply = false;
    /// Writes the operations behind SEQUENCE; runs anew for each session, with the stateids of that
    /// time.
    std::function<void(CompoundWriter&)> encode;
    /// Takes the outcome, once; not called for an abandoned call.
    std::move_only_function<void(Reply&)> done;
    /// Takes the reply that comes after the caller has gone: state that it brought must be given
    /// back.
    std::move_only_function<void(Reply&)> late;
    bool ofSetUp = false; ///< Part of making a session: worthless in the next one.
    /// The open file whose stateid is used; it is opened again if the server has lost it.
    std::shared_ptr<OpenState> state;
};

using CallId = std::uint64_t;

/// The client at the server: its identity, session and lease. It sends compounds in free slots,
/// sends them again over a new connection, waits GRACE and DELAY out, recovers open files after the
/// server's restart, and knows whether the server is alive.
class Session final : private TransportListener {
public:
    struct Config {
        std::vector<Address> addresses;
        SourcePort sourcePort = SourcePort::Any;
        std::optional<std::uint32_t>
            minorVersion;        ///< Absent: 1, and 0 where the server has no more.
        Credentials credentials; ///< For the session's own calls.
        Limits limits;
    };

    Session(EventLoop& loop, BufferPool& pool, Config config);
    ~Session() override;

    /// Connects. `established` comes once calls are served; before that `failed` may come many
    /// times.
    void start(std::function<void()> established,
               std::function<void(const std::string&, Status)> failed);

    CallId submit(Call call);
    /// The caller goes away: `done` is not called any more. A request on its way cannot be taken
    /// back.
    void abandon(CallId id);

    [[nodiscard]] std::uint32_t minorVersion() const { return m_minorVersion; }
    [[nodiscard]] std::uint64_t clientId() const { return m_clientId; }
    /// A number for an open or lock owner that was never used before.
    [[nodiscard]] std::uint64_t newOwner() { return m_nextOwner++; }
    /// The largest message either way, headers included.
    [[nodiscard]] std::uint32_t maximumRequest() const { return m_maximumRequest; }
    [[nodiscard]] std::uint32_t maximumResponse() const { return m_maximumResponse; }
    [[nodiscard]] bool isStalled() const { return m_stalled; }
    [[nodiscard]] RpcTransport& transport() { return m_transport; }
    [[nodiscard]] const Limits& limits() const { return m_config.limits; }
    void setLease(Duration lease);

    /// Registers an open file for recovery, for as long as it lives.
    void track(const std::shared_ptr<OpenState>& state);

    /// Gives session and client id back; `done` is called when that is answered or after `limit`.
    void shutDown(Duration limit, std::function<void()> done);

private:
    enum class Phase { Down, SettingUp, Reclaiming, Ready, ShuttingDown };
    enum class Place { Queued, Sent, Waiting };

    struct Pending {
        Call call;
        Place place = Place::Queued;
        bool abandoned = false;
        TimePoint submitted;
        unsigned delays = 0;
        unsigned stateRetries = 0;
        unsigned replays = 0;
        std::uint32_t xid = 0;
        std::uint32_t slot = 0;
        std::shared_ptr<const Message> message;
    };

    // Session.cpp: the way of a call.
    void dispatch();
    void dispatchFrom(std::deque<CallId>& queue);
    [[nodiscard]] bool send(CallId id, Pending& pending);
    [[nodiscard]] std::shared_ptr<const Message>
    encode(std::uint32_t xid, const Credentials& credentials,
           const std::function<void(CompoundWriter&)>& operations) const;
    void enqueue(CallId id, Pending& pending);
    void answered(CallId id, const RpcReply& rpc, const Record& record);
    [[nodiscard]] bool sequenceAccepted(CallId id, Pending& pending, Reply& reply);
    void judge(CallId id, Reply& reply);
    void retryLater(CallId id, Duration limit, Status status);
    void complete(CallId id, Reply& reply);
    void fail(CallId id, Status status);

    // SessionHealth.cpp: connection, time limits, lease.
    void transportUp() override;
    void transportDown(const std::string& reason) override;
    void transportReply(const RpcReply& reply, const Record& record) override;
    void resendAll();
    void heard();
    void armTick();
    void tick();
    void probe();
    void expire(TimePoint now, Duration silence);
    void armRenewal();

    // SessionSetup.cpp: identity, session, recovery of open files.
    void setUp(bool clientIsKnown);
    void setUpCall(std::function<void(CompoundWriter&)> operations,
                   std::move_only_function<void(Reply&)> done);
    void setUpFailed(const std::string& what, Status status);
    void exchangeId();
    void createSession();
    void setClientId();
    void reclaim();
    void reclaimed(const std::shared_ptr<OpenState>& state, Reply& reply);
    void reclaimComplete();
    void ready();
    void sessionLost();
    [[nodiscard]] std::vector<std::shared_ptr<OpenState>> trackedStates();
    void recoverState(CallId id, const std::shared_ptr<OpenState>& state);
    void recoverLocks(const std::shared_ptr<OpenState>& state, bool reclaim,
                      std::function<void()> done);
    void reclaimStepDone();
    void reopen(const std::shared_ptr<OpenState>& state);
    void recoveredState(const std::shared_ptr<OpenState>& state);

    EventLoop& m_loop;
    Config m_config;
    std::string m_machine;
    std::string m_clientName;
    Verifier m_bootVerifier{};

    Phase m_phase = Phase::Down;
    std::uint32_t m_minorVersion = 1;
    std::uint64_t m_clientId = 0;
    bool m_clientIsKnown = false;
    std::uint32_t m_createSequence = 0;
    SessionId m_sessionId{};
    SlotTable m_slots;
    std::uint32_t m_maximumRequest = 0;
    std::uint32_t m_maximumResponse = 0;
    std::uint64_t m_nextOwner = 1;
    std::size_t m_reclaimsLeft = 0;
    std::function<void()> m_established;
    std::function<void(const std::string&, Status)> m_failed;

    // A call of the setup itself: outside slots, forgotten when the connection goes.
    struct SetUpPending {
        std::uint32_t xid = 0;
        std::move_only_function<void(Reply&)> done;
    };
    std::optional<SetUpPending> m_setUpPending;
    std::optional<EventLoop::TimerId> m_setUpTimer;

    std::map<CallId, Pending> m_calls; ///< In the order of their submission.
    std::deque<CallId> m_queue;
    std::deque<CallId> m_recoveryQueue;
    std::unordered_map<std::uint32_t, CallId> m_sent; ///< By xid.
    CallId m_nextCall = 1;
    std::uint32_t m_nextXid;
    std::uint32_t m_inFlight = 0;

    std::unordered_map<OpenState*, std::weak_ptr<OpenState>> m_states;
    std::set<OpenState*> m_reopening;
    std::unordered_map<OpenState*, std::vector<CallId>> m_recovering; ///< Calls that wait for it.

    std::optional<TimePoint> m_waitingSince; ///< Since when the server owes an answer.
    bool m_stalled = false;
    std::uint32_t m_probeXid = 0;
    TimePoint m_probedAt{};
    TimePoint m_connectedAt{};
    std::optional<EventLoop::TimerId> m_tick;
    Duration m_lease = std::chrono::seconds(60);
    TimePoint m_renewedAt{};
    std::optional<EventLoop::TimerId> m_renewal;

    RpcTransport m_transport; ///< Last: it calls back into the members above.
};

} // namespace harbrix::nfs
