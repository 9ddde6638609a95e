#pragma once

#include "mount_smbfs/SmbConnection.h"
#include "mount_smbfs/SmbLogin.h"
#include "mount_smbfs/Watchdog.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace harbrix {

class CallScope;

/// A connection of the pool.
struct Lane {
    Lane(unsigned number, const SmbLogin& login) : index(number), connection(login) {}

    const unsigned index;
    SmbConnection connection;

    // Guarded by the link.
    bool isBusy = false;
    std::vector<std::function<void(Lane&)>> chores;
};

enum class CallKind {
    metadata, ///< limited to 2.5 s without a sign of the server
    transfer, ///< reads and writes: limited to 30 s likewise
};

enum class Repeat {
    never, ///< a second try could meet the result of the first
    once,  ///< on a fresh connection, if the old one broke
};

/// Which connections a call may use.
struct CallPlan {
    CallKind kind = CallKind::metadata;
    Repeat repeat = Repeat::once;
    unsigned allowed = ~0U;  ///< a bit for each lane
    unsigned preferred = 0U; ///< taken first, if free
};

/// The way to the server: a pool of connections, each made when first needed, and the knowledge
/// whether the server answers. When a call exceeds its limit the server counts as down: calls then
/// fail at once with EHOSTDOWN, and a background thread asks once a second until it answers again.
///
/// All functions from any thread.
class ServerLink {
public:
    static constexpr unsigned maximumLanes = 8;

    /// `host` is asked anew while the server cannot be reached.
    ServerLink(const SmbLogin& login, std::string host, unsigned lanes, Watchdog& watchdog);
    ~ServerLink();
    ServerLink(const ServerLink&) = delete;
    ServerLink& operator=(const ServerLink&) = delete;

    /// The first connection; tells what is wrong by errno. `numericAddress` is used until another
    /// one answers.
    [[nodiscard]] Outcome<void> connectFirst(const std::string& numericAddress, Deadline deadline);

    /// Runs the operation, `Outcome<T>(Lane&)`, on a connection of its own. The errors of this
    /// class: EHOSTDOWN, ETIMEDOUT, EINTR, EIO for a connection that broke inside, and those of
    /// connecting.
    template <typename Operation>
    auto call(const CallPlan& plan, Operation&& operation)
        -> std::invoke_result_t<Operation, Lane&> {
        const Deadline deadline = std::chrono::steady_clock::now() + limitOf(plan.kind);
        for (int attempt = 0;; ++attempt) {
            Lease lease(*this, plan, deadline);
            if (lease.error() != 0)
                return std::unexpected(lease.error());
            auto result = operation(lease.lane());
            if (result || result.error() != ECONNABORTED)
                return result;
            const int verdict = lease.verdict();
            if (verdict != 0 || plan.repeat == Repeat::never || attempt > 0)
                return std::unexpected(verdict != 0 ? verdict : EIO);
        }
    }

    [[nodiscard]] bool isDown() const { return m_isDown; }
    [[nodiscard]] unsigned laneCount() const { return static_cast<unsigned>(m_lanes.size()); }
    /// The lanes for transfers in the background; one is kept free of them, for quick answers.
    [[nodiscard]] unsigned transferLanes() const;

    /// Runs the chore on that lane with its current or next use, e.g. a close that could not be
    /// sent now.
    void addChore(unsigned lane, std::function<void(Lane&)> chore);

private:
    // A lane in use by this thread, with an alarm that cuts it at the deadline.
    class Lease {
    public:
        Lease(ServerLink& link, const CallPlan& plan, Deadline deadline);
        ~Lease();
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;

        [[nodiscard]] int error() const { return m_error; }
        [[nodiscard]] Lane& lane() const { return *m_lane; }
        // Why the connection broke: ETIMEDOUT or EINTR if it was cut, 0 if the server or network
        // did it.
        [[nodiscard]] int verdict();

    private:
        [[nodiscard]] int connectIfNeeded();
        [[nodiscard]] std::optional<Watchdog::TimePoint> look(const CallScope* scope);

        ServerLink& m_link;
        Lane* m_lane = nullptr;
        int m_error = 0;
        Deadline m_deadline;
        std::chrono::milliseconds m_limit;
        std::uint64_t m_progress = 0;
        std::atomic<int> m_cutReason = 0;
        Watchdog::Alarm m_alarm;
    };

    [[nodiscard]] static std::chrono::milliseconds limitOf(CallKind kind);
    [[nodiscard]] Outcome<Lane*> takeLane(const CallPlan& plan, Deadline deadline);
    [[nodiscard]] Lane* freeLane(unsigned mask) const;
    void giveBack(Lane& lane);
    void runChores(Lane& lane);
    void noteDown();
    void noteConnectFailure();
    [[nodiscard]] std::string address();
    void watchServer();
    [[nodiscard]] bool serverAnswers();
    void resolveAgain();

    const SmbLogin& m_login;
    const std::string m_host;
    Watchdog& m_watchdog;
    std::vector<std::unique_ptr<Lane>> m_lanes;
    std::atomic<bool> m_isDown = false;

    std::mutex m_mutex;
    std::condition_variable m_laneChanged;
    std::condition_variable m_stateChanged;
    std::string m_address;
    bool m_mustResolve = false;
    bool m_isEnding = false;
    std::thread m_watcher;
};

/// The numeric addresses of a host, in the system's order of preference. Blocks as the resolver
/// does. The error is a text for the user.
[[nodiscard]] std::expected<std::vector<std::string>, std::string>
numericAddresses(const std::string& host);

} // namespace harbrix
