#pragma once

#include "mount_nfs/protocol/Rpc.h"
#include "mount_nfs/transport/EventLoop.h"

#include <fuse_lowlevel.h>
#include <sys/types.h>

#include <map>
#include <string>
#include <unordered_map>

namespace harbrix::nfs {

/// Who a FUSE request is made by. A user's own mount always speaks for that user; a mount of
/// root's, which others may enter, for whoever calls.
class Callers {
public:
    Callers();
    [[nodiscard]] Credentials of(fuse_req_t request);
    [[nodiscard]] const Credentials& own() const { return m_own; }
    [[nodiscard]] bool servesOthers() const { return m_servesOthers; }

private:
    struct Known {
        Credentials credentials;
        TimePoint until;
    };
    Credentials m_own;
    bool m_servesOthers;
    std::map<pid_t, Known> m_known; ///< Asking /proc for the groups of a process takes long.
};

enum class Ownership { AsTold, Own };

/// Turns the owners that a server tells into numbers: digits as they are, "name@domain" through the
/// system's user database, anything else into nobody.
class OwnerMap {
public:
    explicit OwnerMap(Ownership ownership);
    [[nodiscard]] uid_t user(const std::string& owner);
    [[nodiscard]] gid_t group(const std::string& owner);

private:
    Ownership m_ownership;
    std::unordered_map<std::string, uid_t> m_users;
    std::unordered_map<std::string, gid_t> m_groups;
};

} // namespace harbrix::nfs
