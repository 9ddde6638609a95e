#pragma once

#include "mount_nfs/protocol/Xdr.h"

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

/// ONC RPC version 2 (RFC 5531), as far as an NFSv4 client over TCP needs it.
namespace harbrix::nfs {

/// On whose behalf a call is made (AUTH_SYS).
struct Credentials {
    uid_t uid = 0;
    gid_t gid = 0;
    std::vector<gid_t> groups; ///< Supplementary ones; AUTH_SYS carries at most 16.
    friend bool operator==(const Credentials&, const Credentials&) = default;
};

enum class Procedure : std::uint32_t { Null = 0, Compound = 1 };

/// Leaves room for the record mark and writes the call header. `finishCall` closes the record.
void beginCall(XdrWriter& out, std::uint32_t xid, Procedure procedure,
               const Credentials& credentials, const std::string& machine);
/// Fills in the record mark and returns the message for the wire.
[[nodiscard]] Message finishCall(XdrWriter&& out);

enum class RpcOutcome {
    Success,   ///< The procedure ran; its results follow.
    Malformed, ///< No RPC reply at all.
    AuthError, ///< The server rejects the credentials or the source port.
    Rejected,  ///< Wrong program or version, garbage arguments, system error.
};

struct RpcReply {
    std::uint32_t xid = 0;
    RpcOutcome outcome = RpcOutcome::Malformed;
    std::uint32_t authStatus = 0; ///< auth_stat, where `outcome` is `AuthError`.
    Bytes results;
};

/// Takes one record apart. A record that is a call (a callback of the server's) is malformed here.
[[nodiscard]] RpcReply parseReply(Bytes record);

} // namespace harbrix::nfs
