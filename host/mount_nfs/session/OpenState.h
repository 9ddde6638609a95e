#pragma once

#include "mount_nfs/protocol/Compound.h"
#include "mount_nfs/protocol/Rpc.h"

#include <cstdint>
#include <map>
#include <vector>

namespace harbrix::nfs {

/// One OPEN at the server, kept so that it can be made again when the server has forgotten it.
struct OpenState {
    struct HeldLock {
        ByteRange range;
        LockType type = LockType::Write;
        std::uint64_t recovered = 0; ///< The open owner under which it was asked for again last.
    };
    struct LockOwner {
        Stateid stateid;
        bool known = false; ///< `stateid` belongs to the open state as it is now.
        std::vector<HeldLock> held;
    };

    FileHandle handle;
    Credentials credentials;
    std::uint32_t access = 0; ///< shareAccessRead, shareAccessWrite or both.
    Stateid stateid;
    std::uint64_t owner =
        0; ///< The number of its open owner; a new one each time it is opened again.
    bool anonymous = false; ///< NFSv4.0: no state at the server, the zero stateid is used.
    bool lost = false;      ///< It could not be made again; all I/O fails.
    std::map<std::uint64_t, LockOwner> locks; ///< By the number of the lock owner.

    [[nodiscard]] Stateid forIo() const {
        return anonymous ? Stateid::anonymous() : stateid.latest();
    }
};

} // namespace harbrix::nfs
