#pragma once

#include "base/UniqueDescriptor.h"
#include "common/MountTable.h"

#include <sys/types.h>

#include <optional>

namespace harbrix {

/// A daemon's word that it serves one mount: a record lock (fcntl(2), F_SETLK) on a file named
/// after the mount's device number in the owner's runtime folder. The kernel names the holder of a
/// lock, and drops the lock with the process, so that neither an old file nor a reused process id
/// can mislead.
class MountClaim {
public:
    MountClaim() = default;
    MountClaim(MountClaim&&) noexcept = default;
    /// Gives the claim back first: an assigned-over claim leaves no file.
    MountClaim& operator=(MountClaim&& other) noexcept;
    /// Removes the file.
    ~MountClaim();

    /// Claims the mount for this process. Holds nothing if the runtime folder cannot be written;
    /// the mount works all the same, diskutil then ends it by other means.
    [[nodiscard]] static MountClaim take(const MountEntry& entry);

    /// The process that holds the claim of this mount, if a live one does.
    [[nodiscard]] static std::optional<pid_t> holder(const MountEntry& entry);

private:
    void giveBack();

    UniqueDescriptor m_file;
    std::string m_path;
};

} // namespace harbrix
