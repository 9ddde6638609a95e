#include "mount_nfs/session/Operations.h"

#include <utility>

// Byte-range locks. Only 4.1 has them: 4.0 would tie them to open state that is not kept there.
namespace harbrix::nfs {

namespace {

constexpr std::uint64_t toTheEnd = ~std::uint64_t{0};

std::uint64_t endOf(const ByteRange& range) {
    return range.length == toTheEnd ? toTheEnd : range.offset + range.length;
}

/// Takes `range` out of what is held, as the server does for LOCKU and before a LOCK of another
/// type.
void subtract(std::vector<OpenState::HeldLock>& held, const ByteRange& range) {
    std::vector<OpenState::HeldLock> left;
    for (const auto& lock : held) {
        const std::uint64_t start = lock.range.offset;
        const std::uint64_t end = endOf(lock.range);
        if (end <= range.offset || start >= endOf(range)) {
            left.push_back(lock);
            continue;
        }
        if (start < range.offset)
            left.push_back({{start, range.offset - start}, lock.type, lock.recovered});
        if (end > endOf(range))
            left.push_back({{endOf(range), end == toTheEnd ? toTheEnd : end - endOf(range)},
                            lock.type,
                            lock.recovered});
    }
    held = std::move(left);
}

Status lockStatus(Reply& reply, Op op) {
    const bool reached = reply.results.next(Op::PutFh) && reply.results.next(op);
    return reached || reply.status != Status::Ok ? reply.status : Status::LocalMalformed;
}

} // namespace

CallId Operations::lock(const std::shared_ptr<OpenState>& state, std::uint64_t owner, LockType type,
                        const ByteRange& range, Then<void> then) {
    Call call;
    call.credentials = state->credentials;
    call.cacheReply = true;
    call.state = state;
    call.encode = [this, state, owner, type, range](CompoundWriter& out) {
        const auto& of = state->locks[owner];
        out.putFh(state->handle);
        if (of.known)
            out.lockMore(type, false, range, of.stateid.latest());
        else
            out.lockFirst(type, false, range, state->stateid, {m_session.clientId(), owner});
    };
    const auto take = [state, owner, type, range](Reply& reply) {
        const Status status = lockStatus(reply, Op::Lock);
        if (status == Status::Ok) {
            auto& of = state->locks[owner];
            of.stateid = reply.results.stateid();
            of.known = true;
            subtract(of.held, range);
            of.held.push_back({range, type, state->owner});
        }
        return status;
    };
    call.late = [this, state, owner, range, take](Reply& reply) {
        if (take(reply) == Status::Ok) // nobody knows that it was granted
            unlock(state, owner, range, [](Outcome<void>) {});
    };
    call.done = [take, then = std::move(then)](Reply& reply) mutable {
        const Status status = take(reply);
        if (status != Status::Ok)
            return then(std::unexpected(status));
        then({});
    };
    return m_session.submit(std::move(call));
}

CallId Operations::unlock(const std::shared_ptr<OpenState>& state, std::uint64_t owner,
                          const ByteRange& range, Then<void> then) {
    Call call;
    call.credentials = state->credentials;
    call.cacheReply = true;
    call.state = state;
    call.kind = CallKind::Persistent; // a lock that stays behind would lock others out
    subtract(state->locks[owner].held, range);
    call.encode = [state, owner, range](CompoundWriter& out) {
        out.putFh(state->handle);
        out.unlock(LockType::Write, range, state->locks[owner].stateid.latest());
    };
    call.done = [state, owner, then = std::move(then)](Reply& reply) mutable {
        const Status status = lockStatus(reply, Op::LockU);
        if (status != Status::Ok)
            return then(std::unexpected(status));
        state->locks[owner].stateid = reply.results.stateid();
        then({});
    };
    return m_session.submit(std::move(call));
}

CallId Operations::testLock(const std::shared_ptr<OpenState>& state, std::uint64_t owner,
                            LockType type, const ByteRange& range,
                            Then<std::optional<CompoundReader::Denied>> then) {
    Call call;
    call.credentials = state->credentials;
    call.encode = [this, state, owner, type, range](CompoundWriter& out) {
        out.putFh(state->handle);
        out.lockTest(type, range, {m_session.clientId(), owner});
    };
    call.done = [then = std::move(then)](Reply& reply) mutable {
        const Status status = lockStatus(reply, Op::LockT);
        if (status == Status::Denied)
            return then(reply.results.denied());
        if (status != Status::Ok)
            return then(std::unexpected(status));
        then(std::nullopt);
    };
    return m_session.submit(std::move(call));
}

} // namespace harbrix::nfs
