#pragma once

#include "mount_nfs/program/Options.h"

#include <optional>
#include <string>

namespace harbrix::nfs {

/// Whether this process may and can use the kernel's own NFS client.
[[nodiscard]] bool kernelClientIsAvailable();

/// Mounts through mount.nfs4(8). An error is a text for the user; nothing means that it is mounted.
[[nodiscard]] std::optional<std::string> mountWithKernel(const Options& options);

} // namespace harbrix::nfs
