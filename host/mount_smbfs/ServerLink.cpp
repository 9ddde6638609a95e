#include "mount_smbfs/ServerLink.h"

#include "mount_smbfs/CallScope.h"

#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace harbrix {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr auto probeInterval = 1s;
constexpr auto probeLimit = 2s;

} // namespace

ServerLink::ServerLink(const SmbLogin& login, std::string host, unsigned lanes, Watchdog& watchdog)
    : m_login(login), m_host(std::move(host)), m_watchdog(watchdog) {
    for (unsigned i = 0; i < std::min(lanes, maximumLanes); ++i)
        m_lanes.push_back(std::make_unique<Lane>(i, login));
    m_watcher = std::thread([this] { watchServer(); });
}

ServerLink::~ServerLink() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_stateChanged.notify_all();
    m_watcher.join();
}

Outcome<void> ServerLink::connectFirst(const std::string& numericAddress, Deadline deadline) {
    Lane& lane = *m_lanes.front();
    const Watchdog::Alarm alarm(m_watchdog, deadline, [&]() -> std::optional<Watchdog::TimePoint> {
        lane.connection.cut();
        return std::nullopt;
    });
    auto connected = lane.connection.connect(numericAddress, deadline);
    if (!connected)
        return steady_clock::now() >= deadline ? std::unexpected(ETIMEDOUT) : connected;
    const std::lock_guard lock(m_mutex);
    m_address = numericAddress;
    return connected;
}

unsigned ServerLink::transferLanes() const {
    const unsigned all = (1U << m_lanes.size()) - 1;
    return m_lanes.size() > 1 ? all & ~1U : all;
}

std::chrono::milliseconds ServerLink::limitOf(CallKind kind) {
    return kind == CallKind::metadata ? 2500ms : 30s;
}

Lane* ServerLink::freeLane(unsigned mask) const {
    for (const auto& lane : m_lanes) {
        if (!lane->isBusy && (mask & (1U << lane->index)) != 0)
            return lane.get();
    }
    return nullptr;
}

Outcome<Lane*> ServerLink::takeLane(const CallPlan& plan, Deadline deadline) {
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (m_isDown)
            return std::unexpected(EHOSTDOWN);
        Lane* lane = freeLane(plan.allowed & plan.preferred);
        if (!lane)
            lane = freeLane(plan.allowed);
        if (lane) {
            lane->isBusy = true;
            return lane;
        }
        const CallScope* scope = CallScope::current();
        if (scope && scope->shouldGiveUp())
            return std::unexpected(EINTR);
        if (steady_clock::now() >= deadline)
            break;
        m_laneChanged.wait_until(
            lock, std::min(deadline, steady_clock::now() + CallScope::impatienceCheck));
    }
    lock.unlock();
    // No lane at all for so long: all are stuck. One certain lane may just be in a long transfer.
    if (plan.allowed == ~0U)
        noteDown();
    return std::unexpected(ETIMEDOUT);
}

void ServerLink::giveBack(Lane& lane) {
    {
        const std::lock_guard lock(m_mutex);
        lane.isBusy = false;
    }
    m_laneChanged.notify_one();
}

void ServerLink::addChore(unsigned lane, std::function<void(Lane&)> chore) {
    const std::lock_guard lock(m_mutex);
    m_lanes[lane]->chores.push_back(std::move(chore));
}

void ServerLink::runChores(Lane& lane) {
    std::vector<std::function<void(Lane&)>> chores;
    {
        const std::lock_guard lock(m_mutex);
        chores.swap(lane.chores);
    }
    for (const auto& chore : chores)
        chore(lane);
}

void ServerLink::noteDown() {
    {
        const std::lock_guard lock(m_mutex);
        m_isDown = true;
    }
    m_laneChanged.notify_all();
    m_stateChanged.notify_all();
}

// The server may have a new address: ask for it, off the caller's way.
void ServerLink::noteConnectFailure() {
    {
        const std::lock_guard lock(m_mutex);
        m_mustResolve = true;
    }
    m_stateChanged.notify_all();
}

std::string ServerLink::address() {
    const std::lock_guard lock(m_mutex);
    return m_address;
}

void ServerLink::watchServer() {
    std::unique_lock lock(m_mutex);
    while (!m_isEnding) {
        if (m_mustResolve || m_isDown) {
            m_mustResolve = false;
            lock.unlock();
            resolveAgain();
            lock.lock();
        }
        if (!m_isDown) {
            m_stateChanged.wait(lock, [&] { return m_isEnding || m_isDown || m_mustResolve; });
            continue;
        }
        lock.unlock();
        const bool answers = serverAnswers();
        lock.lock();
        if (answers)
            m_isDown = false;
        else
            m_stateChanged.wait_for(lock, probeInterval, [&] { return m_isEnding; });
    }
}

bool ServerLink::serverAnswers() {
    SmbConnection probe(m_login);
    const Deadline deadline = steady_clock::now() + probeLimit;
    const Watchdog::Alarm alarm(m_watchdog, deadline, [&]() -> std::optional<Watchdog::TimePoint> {
        probe.cut();
        return std::nullopt;
    });
    return probe.connect(address(), deadline).has_value();
}

void ServerLink::resolveAgain() {
    const auto addresses = numericAddresses(m_host);
    if (!addresses)
        return;
    const std::lock_guard lock(m_mutex);
    if (std::find(addresses->begin(), addresses->end(), m_address) == addresses->end())
        m_address = addresses->front();
}

ServerLink::Lease::Lease(ServerLink& link, const CallPlan& plan, Deadline deadline)
    : m_link(link), m_deadline(deadline), m_limit(limitOf(plan.kind)) {
    auto lane = link.takeLane(plan, deadline);
    if (!lane) {
        m_error = lane.error();
        return;
    }
    m_lane = *lane;
    const CallScope* scope = CallScope::current();
    const auto firstLook = scope ? std::min(deadline, steady_clock::now() + 1s) : deadline;
    m_alarm = Watchdog::Alarm(link.m_watchdog, firstLook, [this, scope] { return look(scope); });
    m_error = connectIfNeeded();
}

// Called by the watchdog once the call takes long: cuts it when its time is up or its caller has
// gone. A long answer, the listing of a huge folder for one, gets more time as long as it keeps
// coming.
std::optional<Watchdog::TimePoint> ServerLink::Lease::look(const CallScope* scope) {
    const auto now = steady_clock::now();
    const bool isInterrupted = scope && scope->shouldGiveUp();
    if (!isInterrupted && now >= m_deadline) {
        const auto progress = m_lane->connection.progress();
        if (m_progress != 0 && progress > m_progress)
            m_deadline = now + m_limit;
    }
    if (isInterrupted || now >= m_deadline) {
        m_cutReason = isInterrupted ? EINTR : ETIMEDOUT;
        m_lane->connection.cut();
        return std::nullopt;
    }
    m_progress = m_lane->connection.progress();
    return scope ? std::min(m_deadline, now + CallScope::impatienceCheck) : m_deadline;
}

ServerLink::Lease::~Lease() {
    // What came up meanwhile, while the alarm still bounds it.
    if (m_lane && m_error == 0 && m_cutReason == 0)
        m_link.runChores(*m_lane);
    m_alarm.cancel();
    if (m_lane)
        m_link.giveBack(*m_lane);
}

int ServerLink::Lease::verdict() {
    m_alarm.cancel();
    if (m_cutReason == ETIMEDOUT)
        m_link.noteDown();
    return m_cutReason;
}

int ServerLink::Lease::connectIfNeeded() {
    if (m_lane->connection.isUsable()) {
        m_link.runChores(*m_lane);
        return 0;
    }
    const auto connected = m_lane->connection.connect(m_link.address(), m_deadline);
    if (connected)
        return 0;
    if (const int reason = verdict(); reason != 0)
        return reason;
    m_link.noteConnectFailure();
    return connected.error() == ECONNABORTED ? EIO : connected.error();
}

std::expected<std::vector<std::string>, std::string> numericAddresses(const std::string& host) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_ADDRCONFIG;
    addrinfo* found = nullptr;
    int error = ::getaddrinfo(host.c_str(), nullptr, &hints, &found);
    // A machine with nothing but loopback has no "configured" address family.
    if (error == EAI_NONAME || error == EAI_ADDRFAMILY) {
        hints.ai_flags = 0;
        error = ::getaddrinfo(host.c_str(), nullptr, &hints, &found);
    }
    if (error != 0)
        return std::unexpected("the host " + host + " is unknown (" + ::gai_strerror(error) + ")");
    std::vector<std::string> addresses;
    for (const addrinfo* info = found; info; info = info->ai_next) {
        char text[NI_MAXHOST];
        if (::getnameinfo(info->ai_addr, info->ai_addrlen, text, sizeof text, nullptr, 0,
                          NI_NUMERICHOST) == 0)
            addresses.emplace_back(text);
    }
    ::freeaddrinfo(found);
    if (addresses.empty())
        return std::unexpected("the host " + host + " has no address");
    return addresses;
}

} // namespace harbrix
