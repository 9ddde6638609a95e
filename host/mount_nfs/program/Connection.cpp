#include "mount_nfs/program/Connection.h"

#include <netdb.h>

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>
#include <utility>

namespace harbrix::nfs {

namespace {

using namespace std::chrono_literals;
constexpr auto resolveLimit = 8s;
constexpr auto connectLimit = 12s;

struct Resolution {
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
    int error = 0;
    std::vector<Address> addresses;
};

void resolveNow(const std::string& host, std::uint16_t port, Resolution& result) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    const std::lock_guard lock(result.mutex);
    result.error = error;
    for (const addrinfo* each = found; each; each = each->ai_next) {
        Address address;
        std::memcpy(&address.storage, each->ai_addr, each->ai_addrlen);
        address.length = each->ai_addrlen;
        result.addresses.push_back(address);
    }
    if (found)
        freeaddrinfo(found);
    result.done = true;
    result.changed.notify_all();
}

/// getaddrinfo(3) knows no limit, so it runs beside and is left behind when it takes too long.
std::expected<std::vector<Address>, std::string> resolve(const std::string& host,
                                                         std::uint16_t port) {
    const auto result = std::make_shared<Resolution>();
    std::thread([host, port, result] { resolveNow(host, port, *result); }).detach();
    std::unique_lock lock(result->mutex);
    if (!result->changed.wait_for(lock, resolveLimit, [&] { return result->done; }))
        return std::unexpected(host + ": the name could not be resolved in time");
    if (result->error != 0 || result->addresses.empty())
        return std::unexpected(host + ": " + gai_strerror(result->error));
    return result->addresses;
}

/// Where rights are not the cause, the words for them must not appear.
std::string plainReason(const std::string& reason) {
    if (reason == std::strerror(EPERM) || reason == std::strerror(EACCES))
        return "a filter on this machine or on the way rejects the connection";
    return reason;
}

/// Some servers refuse a port above 1023, others show less to it.
bool mayWantReservedPort(Status status) {
    return status == Status::NoEnt || status == Status::Perm || status == Status::Access ||
           status == Status::LocalRefused;
}

std::string explain(const Options& options, Status status, const Session& session) {
    const std::string& source = options.remote.source;
    switch (status) {
    case Status::Perm:
    case Status::Access:
    case Status::LocalRefused:
        return source + ": permission denied by the server (" + nameOf(status) +
               "). If it serves only clients on ports below 1024, give its export the option "
               "\"insecure\", or mount as root";
    case Status::NoEnt:
        return source + ": the server has no such export (or shows it only to ports below 1024: "
                        "export option \"insecure\")";
    case Status::NotDir:
        return source + ": not a folder";
    case Status::WrongSec:
        return source + ": the export demands Kerberos, which is not supported";
    case Status::MinorVersMismatch:
        return options.remote.host + ": the server does not speak NFSv4" +
               (session.minorVersion() > 0 ? ".1" : "");
    case Status::LocalTimedOut:
        return options.remote.host + ": the server does not answer";
    case Status::LocalMalformed:
        return options.remote.host + ": the server does not answer as an NFSv4 server does";
    default:
        return source + ": the server answers " + nameOf(status);
    }
}

struct Failure {
    std::string text;
    Status status = Status::LocalTimedOut;
};

/// Runs the loop until `done` or the limit.
bool wait(EventLoop& loop, TimePoint deadline, const std::function<bool()>& done) {
    bool late = false;
    const auto timer = loop.after(deadline - Clock::now(), [&] { late = true; });
    loop.runUntil([&] { return late || done(); });
    loop.cancel(timer);
    return done();
}

/// Runs one operation to its end.
template <typename T>
Outcome<T> await(EventLoop& loop, TimePoint deadline, const std::function<void(Then<T>)>& begin) {
    const auto result = std::make_shared<std::optional<Outcome<T>>>();
    begin([result](Outcome<T> outcome) { *result = std::move(outcome); });
    if (!wait(loop, deadline, [&] { return result->has_value(); }))
        return std::unexpected(Status::LocalTimedOut);
    return std::move(**result);
}

std::expected<Connection, Failure> attempt(EventLoop& loop, BufferPool& pool,
                                           const Options& options, const Credentials& who,
                                           const std::vector<Address>& addresses, SourcePort port) {
    const TimePoint deadline = Clock::now() + connectLimit;
    Connection made;
    made.session = std::make_unique<Session>(
        loop, pool, Session::Config{addresses, port, options.minorVersion, who, {}});
    bool established = false;
    std::optional<Failure> failure;
    std::size_t lost = 0;
    made.session->start([&] { established = true; },
                        [&](const std::string& reason, Status status) {
                            if (status == Status::LocalTimedOut && ++lost < addresses.size())
                                return;
                            failure = Failure{reason, status};
                        });
    if (!wait(loop, deadline, [&] { return established || failure; }))
        failure = Failure{"the server does not answer", Status::LocalTimedOut};
    if (failure) {
        failure->text = failure->status == Status::LocalTimedOut
                            ? options.remote.host + ": " + plainReason(failure->text)
                            : explain(options, failure->status, *made.session);
        return std::unexpected(*failure);
    }
    made.operations = std::make_unique<Operations>(*made.session);
    const auto refused = [&](Status status) {
        return std::unexpected(Failure{explain(options, status, *made.session), status});
    };
    auto root = await<Node>(loop, deadline, [&](Then<Node> then) {
        made.operations->root(who, options.remote.path, std::move(then));
    });
    if (!root)
        return refused(root.error());
    if (root->attributes.type != FileType::Directory)
        return refused(Status::NotDir);
    auto statistics = await<Attributes>(loop, deadline, [&](Then<Attributes> then) {
        made.operations->fileSystem(who, root->handle, std::move(then));
    });
    if (!statistics)
        return refused(statistics.error());
    made.root = std::move(*root);
    made.statistics = std::move(*statistics);
    return made;
}

} // namespace

std::expected<Connection, std::string> connectTo(EventLoop& loop, BufferPool& pool,
                                                 const Options& options, const Credentials& who) {
    const auto addresses = resolve(options.remote.host, options.port);
    if (!addresses)
        return std::unexpected(addresses.error());
    const SourcePort first = options.reservedPort ? SourcePort::Reserved : SourcePort::Any;
    auto made = attempt(loop, pool, options, who, *addresses, first);
    // With the capability for it a reserved port may be what the server wants to see.
    if (!made && mayWantReservedPort(made.error().status) && first == SourcePort::Any) {
        auto second = attempt(loop, pool, options, who, *addresses, SourcePort::Reserved);
        if (second)
            made = std::move(second);
    }
    if (!made)
        return std::unexpected(made.error().text);
    if (made->statistics.leaseSeconds > 0)
        made->session->setLease(std::chrono::seconds(made->statistics.leaseSeconds));
    return std::move(*made);
}

} // namespace harbrix::nfs
