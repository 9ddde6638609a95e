#pragma once

#include "common/MountTable.h"

#include <expected>
#include <string>

namespace harbrix {

enum class DetachMode {
    whenIdle, ///< refused with EBUSY while something uses the mount
    lazily,   ///< gone from the tree at once, freed when its last user ends: umount2(2), MNT_DETACH
};

/// Takes the mount at exactly this path off, by umount2(2) where that is allowed and by
/// fusermount3(1) for a FUSE mount of the caller's own. Never waits for a server. The error is an
/// errno value: EBUSY, EPERM, EINVAL (nothing mounted there), else.
[[nodiscard]] std::expected<void, int> detachMount(const MountEntry& entry, DetachMode mode);

/// Whether the daemon behind this mount is gone ("Transport endpoint is not connected").
[[nodiscard]] bool isDeadMount(const MountEntry& entry);

/// Readies a folder for a mount: takes away dead FUSE mounts at exactly this path and checks that
/// it is a folder with nothing mounted on it. Returns the path as the mount table will show it; the
/// error is a text for the user.
[[nodiscard]] std::expected<std::string, std::string> prepareMountPoint(const std::string& path);

} // namespace harbrix
