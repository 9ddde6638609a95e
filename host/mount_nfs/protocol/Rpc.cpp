#include "mount_nfs/protocol/Rpc.h"

#include <algorithm>
#include <utility>

namespace harbrix::nfs {

namespace {
constexpr std::uint32_t rpcVersion = 2;
constexpr std::uint32_t nfsProgram = 100003;
constexpr std::uint32_t nfsVersion = 4;
constexpr std::uint32_t authNone = 0;
constexpr std::uint32_t authSys = 1;
constexpr std::size_t maximumAuth = 400;
constexpr std::size_t maximumGroups = 16;
constexpr std::size_t maximumMachine = 255;
constexpr std::uint32_t lastFragment = 0x80000000;
} // namespace

void beginCall(XdrWriter& out, std::uint32_t xid, Procedure procedure,
               const Credentials& credentials, const std::string& machine) {
    (void) out.placeholder(); // the record mark
    out.u32(xid);
    out.u32(0); // CALL
    out.u32(rpcVersion);
    out.u32(nfsProgram);
    out.u32(nfsVersion);
    out.u32(static_cast<std::uint32_t>(procedure));
    if (procedure == Procedure::Null) {
        out.u32(authNone);
        out.u32(0);
    } else {
        XdrWriter body;
        body.u32(0); // stamp
        body.text(std::string_view(machine).substr(0, maximumMachine));
        body.u32(credentials.uid);
        body.u32(credentials.gid);
        const std::size_t groups = std::min(credentials.groups.size(), maximumGroups);
        body.u32(static_cast<std::uint32_t>(groups));
        for (std::size_t index = 0; index < groups; ++index)
            body.u32(credentials.groups[index]);
        out.u32(authSys);
        out.opaque(body.take().bytes);
    }
    out.u32(authNone); // verifier
    out.u32(0);
}

Message finishCall(XdrWriter&& out) {
    Message message = out.take();
    const auto length = static_cast<std::uint32_t>(message.size() - 4) | lastFragment;
    for (std::size_t index = 0; index < 4; ++index)
        message.bytes[index] = static_cast<std::uint8_t>(length >> (24 - 8 * index));
    return message;
}

RpcReply parseReply(Bytes record) {
    RpcReply reply;
    XdrReader in(record);
    reply.xid = in.u32();
    const std::uint32_t type = in.u32();
    const std::uint32_t denied = in.u32();
    if (in.failed() || type != 1)
        return reply;
    if (denied == 1) {
        const bool authError = in.u32() == 1;
        reply.authStatus = authError ? in.u32() : 0;
        reply.outcome = authError ? RpcOutcome::AuthError : RpcOutcome::Rejected;
    } else if (denied == 0) {
        (void) in.u32(); // the verifier's flavour
        (void) in.opaque(maximumAuth);
        reply.outcome = in.u32() == 0 ? RpcOutcome::Success : RpcOutcome::Rejected;
        if (!in.failed())
            reply.results = record.last(in.remaining());
    }
    if (in.failed())
        reply.outcome = RpcOutcome::Malformed;
    return reply;
}

} // namespace harbrix::nfs
