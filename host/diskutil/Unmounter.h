#pragma once

#include "common/MountTable.h"

#include <expected>
#include <string>

namespace harbrix {

enum class UnmountMode {
    ifIdle, ///< refused while something uses the mount
    force,  ///< in any case, the daemon behind it included
};

/// Ends the mount at this path within two seconds, whatever state its server or its daemon is in,
/// and waits for a daemon of ours to go. The error is a text for the user.
[[nodiscard]] std::expected<void, std::string> unmount(const std::string& path, UnmountMode mode);

} // namespace harbrix
