#include "mount_nfs/session/Operations.h"

#include <algorithm>
#include <utility>

// The operations on open files: OPEN, CLOSE, READ, WRITE, COMMIT and locks.
namespace harbrix::nfs {

namespace {

Status statusOf(const Reply& reply) {
    return reply.status == Status::Ok && reply.results.malformed() ? Status::LocalMalformed
                                                                   : reply.status;
}

/// The results up to and with `op`, where nothing stands before it but PUTFH.
bool reach(Reply& reply, Op op) {
    const bool reached = reply.results.next(Op::PutFh) && reply.results.next(op);
    if (!reached && reply.status == Status::Ok)
        reply.status = Status::LocalMalformed;
    return reached;
}

std::shared_ptr<OpenState> newState(Session& session, const Credentials& who,
                                    std::uint32_t access) {
    auto state = std::make_shared<OpenState>();
    state->credentials = who;
    state->access = access;
    state->owner = session.newOwner();
    state->anonymous = session.minorVersion() == 0;
    return state;
}

std::uint32_t accessWanted(std::uint32_t share) {
    return (share & shareAccessRead ? accessRead : 0) |
           (share & shareAccessWrite ? accessModify | accessExtend : 0);
}

/// Whether a file that grants the bits `allowed` may be opened in POSIX's terms.
bool isAllowed(std::uint32_t share, std::uint32_t allowed, Operations::Purpose purpose) {
    const bool mayRead = (allowed & accessRead) ||
                         (purpose == Operations::Purpose::Execute && (allowed & accessExecute));
    const bool mayWrite = allowed & (accessModify | accessExtend);
    return (!(share & shareAccessRead) || mayRead) && (!(share & shareAccessWrite) || mayWrite);
}

} // namespace

void Operations::giveBack(const Credentials& who, const FileHandle& file, const Stateid& stateid) {
    Call call;
    call.kind = CallKind::Persistent;
    call.credentials = who;
    call.cacheReply = true;
    call.encode = [file, stateid](CompoundWriter& out) {
        out.putFh(file);
        out.close(stateid, 0);
    };
    m_session.submit(std::move(call));
}

void Operations::returnDelegation(const Credentials& who, const FileHandle& file,
                                  const OpenResult& result) {
    if (!result.delegation)
        return;
    Call call;
    call.kind = CallKind::Persistent;
    call.credentials = who;
    call.encode = [file, stateid = *result.delegation](CompoundWriter& out) {
        out.putFh(file);
        out.delegReturn(stateid);
    };
    m_session.submit(std::move(call));
}

CallId Operations::open(const Credentials& who, const FileHandle& file, std::uint32_t access,
                        Purpose purpose, Truncate truncate, std::uint32_t startBytes,
                        Then<OpenedFile> then) {
    auto state = newState(m_session, who, access);
    state->handle = file;
    const bool minorZero = state->anonymous;
    Call call;
    call.credentials = who;
    call.cacheReply = startBytes == 0;
    call.encode = [this, state, truncate, startBytes](CompoundWriter& out) {
        const Stateid forIo = state->anonymous ? Stateid::anonymous() : Stateid::current();
        out.putFh(state->handle);
        if (!state->anonymous)
            out.openByHandle({m_session.clientId(), state->owner},
                             state->access | shareAccessWantNoDelegation);
        out.access(accessWanted(state->access) | accessExecute);
        if (truncate == Truncate::Yes && !state->anonymous) {
            AttributeChange empty;
            empty.size = 0;
            out.setAttr(forIo, empty);
        }
        out.getAttr(statAttributes);
        if (startBytes > 0)
            out.read(forIo, 0, startBytes);
    };
    const auto takeOpen = [this, state](Reply& reply) {
        if (state->anonymous || !reach(reply, Op::Open))
            return;
        const OpenResult result = reply.results.open();
        state->stateid = result.stateid;
        returnDelegation(state->credentials, state->handle, result);
    };
    call.late = [this, state, takeOpen](Reply& reply) {
        takeOpen(reply);
        if (state->stateid.sequence != 0)
            giveBack(state->credentials, state->handle, state->stateid);
    };
    call.done = [this, state, takeOpen, purpose, truncate, startBytes, minorZero,
                 then = std::move(then)](Reply& reply) mutable {
        OpenedFile opened{state, {state->handle, {}, reply.asked}, std::nullopt};
        CompoundReader& results = reply.results;
        if (minorZero)
            (void) reply.results.next(Op::PutFh);
        else
            takeOpen(reply);
        if (results.next(Op::Access) && !isAllowed(state->access, results.access(), purpose))
            reply.status = Status::Access;
        const bool isOpen = state->stateid.sequence != 0;
        if (truncate == Truncate::Yes && !minorZero && results.next(Op::SetAttr))
            results.setAttr();
        if (results.next(Op::GetAttr))
            opened.node.attributes = results.getAttr();
        else if (reply.status == Status::Ok)
            reply.status = Status::LocalMalformed;
        if (startBytes > 0 && results.next(Op::Read)) {
            const ReadResult read = results.read();
            opened.start = ReadPiece{{reply.buffer, read.data}, read.endOfFile};
        } else if (startBytes > 0 && isOpen && results.lastStatus() != Status::Ok &&
                   opened.node.attributes.present.has(Attr::Type)) {
            reply.status = Status::Ok; // open all the same: the read will tell its error itself
        }
        const Status status = statusOf(reply);
        if (status != Status::Ok) {
            if (isOpen)
                giveBack(state->credentials, state->handle, state->stateid);
            return then(std::unexpected(status));
        }
        if (!minorZero)
            m_session.track(state);
        if (truncate == Truncate::No || !minorZero)
            return then(std::move(opened));
        // Only now is it known that the file may be written.
        AttributeChange empty;
        empty.size = 0;
        setAttributes(
            state->credentials, state->handle, nullptr, empty,
            [opened = std::move(opened), then = std::move(then)](Outcome<Node> node) mutable {
                if (!node)
                    return then(std::unexpected(node.error()));
                opened.node = std::move(*node);
                then(std::move(opened));
            });
    };
    return m_session.submit(std::move(call));
}

CallId Operations::createFile(const Credentials& who, const FileHandle& directory, std::string name,
                              std::uint32_t access, CreateMode mode, AttributeChange attributes,
                              Then<std::pair<OpenedFile, Attributes>> then) {
    auto state = newState(m_session, who, access);
    Call call;
    call.credentials = who;
    call.cacheReply = true;
    call.encode = [this, state, directory, name = std::move(name), mode,
                   attributes = std::move(attributes)](CompoundWriter& out) {
        out.putFh(directory);
        out.saveFh();
        out.openByName({m_session.clientId(), state->owner}, 0,
                       state->access | (state->anonymous ? 0 : shareAccessWantNoDelegation), name,
                       mode, attributes);
        out.getFh();
        out.getAttr(statAttributes);
        out.restoreFh();
        out.getAttr(statAttributes);
    };
    const auto take = [this, state](Reply& reply, OpenedFile& opened, Attributes& after) {
        CompoundReader& results = reply.results;
        if (!results.next(Op::PutFh) || !results.next(Op::SaveFh) || !results.next(Op::Open))
            return;
        const OpenResult result = results.open();
        if (results.next(Op::GetFh))
            state->handle = opened.node.handle = results.getFh();
        if (results.next(Op::GetAttr))
            opened.node.attributes = results.getAttr();
        if (results.next(Op::RestoreFh) && results.next(Op::GetAttr))
            after = results.getAttr();
        if (state->handle.empty())
            return;
        returnDelegation(state->credentials, state->handle, result);
        if (state->anonymous)
            settleMinorZeroOpen(state->credentials, state->handle, result);
        else
            state->stateid = result.stateid;
    };
    call.late = [this, state, take](Reply& reply) {
        OpenedFile opened;
        Attributes after;
        take(reply, opened, after);
        if (state->stateid.sequence != 0)
            giveBack(state->credentials, state->handle, state->stateid);
    };
    call.done = [this, state, take, then = std::move(then)](Reply& reply) mutable {
        OpenedFile opened{state, {{}, {}, reply.asked}, std::nullopt};
        Attributes after;
        take(reply, opened, after);
        Status status = statusOf(reply);
        if (status == Status::Ok && opened.node.handle.empty())
            status = Status::LocalMalformed;
        if (status != Status::Ok) {
            if (state->stateid.sequence != 0)
                giveBack(state->credentials, state->handle, state->stateid);
            return then(std::unexpected(status));
        }
        if (!state->anonymous)
            m_session.track(state);
        then(std::pair{std::move(opened), std::move(after)});
    };
    return m_session.submit(std::move(call));
}

void Operations::settleMinorZeroOpen(const Credentials& who, const FileHandle& file,
                                     const OpenResult& result) {
    // The open state was only the way to create the file. Each has an owner of its own, so that no
    // sequence of an owner's operations can fall out of step.
    const auto close = [this, who, file](const Stateid& stateid, std::uint32_t sequence) {
        Call call;
        call.kind = CallKind::Persistent;
        call.credentials = who;
        call.encode = [file, stateid, sequence](CompoundWriter& out) {
            out.putFh(file);
            out.close(stateid, sequence);
        };
        m_session.submit(std::move(call));
    };
    if (!(result.flags & openResultConfirm))
        return close(result.stateid, 1);
    Call call;
    call.kind = CallKind::Persistent;
    call.credentials = who;
    call.encode = [file, stateid = result.stateid](CompoundWriter& out) {
        out.putFh(file);
        out.openConfirm(stateid, 1);
    };
    call.done = [close](Reply& reply) {
        if (reach(reply, Op::OpenConfirm))
            close(reply.results.stateid(), 2);
    };
    m_session.submit(std::move(call));
}

void Operations::close(const std::shared_ptr<OpenState>& state) {
    if (state->anonymous || state->lost)
        return;
    Call call;
    call.kind = CallKind::Persistent;
    call.credentials = state->credentials;
    call.cacheReply = true;
    call.encode = [state](CompoundWriter& out) {
        out.putFh(state->handle);
        out.close(state->stateid.latest(), 0);
    };
    call.done = [state](Reply&) {}; // kept for recovery until it is closed
    m_session.submit(std::move(call));
}

CallId Operations::read(const std::shared_ptr<OpenState>& state, std::uint64_t offset,
                        std::uint32_t count, Then<ReadPiece> then) {
    Call call;
    call.kind = CallKind::Data;
    call.credentials = state->credentials;
    call.state = state;
    call.encode = [state, offset, count](CompoundWriter& out) {
        out.putFh(state->handle);
        out.read(state->forIo(), offset, count);
    };
    call.done = [then = std::move(then), count](Reply& reply) mutable {
        ReadPiece piece;
        if (reach(reply, Op::Read)) {
            const ReadResult read = reply.results.read();
            piece = {
                {reply.buffer, read.data.first(std::min<std::size_t>(read.data.size(), count))},
                read.endOfFile};
        }
        const Status status = statusOf(reply);
        if (status != Status::Ok)
            return then(std::unexpected(status));
        then(std::move(piece));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::write(const std::shared_ptr<OpenState>& state, std::uint64_t offset,
                         Stability stability, Slice data, Then<WriteResult> then) {
    Call call;
    call.kind = CallKind::Persistent;
    call.credentials = state->credentials;
    call.state = state;
    call.encode = [state, offset, stability, data](CompoundWriter& out) {
        out.putFh(state->handle);
        out.write(state->forIo(), offset, stability, data);
    };
    call.done = [then = std::move(then), length = data.bytes.size()](Reply& reply) mutable {
        WriteResult result;
        if (reach(reply, Op::Write))
            result = reply.results.write();
        Status status = statusOf(reply);
        if (status == Status::Ok && (result.count == 0 || result.count > length))
            status = Status::Io;
        if (status != Status::Ok)
            return then(std::unexpected(status));
        then(result);
    };
    return m_session.submit(std::move(call));
}

CallId Operations::commit(const std::shared_ptr<OpenState>& state, Then<Verifier> then) {
    Call call;
    call.kind = CallKind::Persistent;
    call.credentials = state->credentials;
    call.encode = [state](CompoundWriter& out) {
        out.putFh(state->handle);
        out.commit(0, 0);
    };
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Verifier verifier{};
        if (reach(reply, Op::Commit))
            verifier = reply.results.verifier();
        const Status status = statusOf(reply);
        if (status != Status::Ok)
            return then(std::unexpected(status));
        then(verifier);
    };
    return m_session.submit(std::move(call));
}

} // namespace harbrix::nfs
