#pragma once

#include "mount_nfs/program/Options.h"

#include <sys/types.h>

#include <optional>
#include <string>

namespace harbrix::nfs {

/// Where this machine keeps what the kernel's NFS client needs.
struct KernelClient {
    std::string mountTool = "/sbin/mount.nfs4";
    std::string loadTool = "/sbin/modprobe";
    std::string fileSystems = "/proc/filesystems";

    /// Whether a process of this effective user id may and can use the kernel's client. Loads its
    /// module where it is missing.
    [[nodiscard]] bool isAvailable(uid_t user) const;
    /// Mounts through mount.nfs4(8). An error is a text for the user; nothing means that it is
    /// mounted.
    [[nodiscard]] std::optional<std::string> mount(const Options& options) const;

private:
    [[nodiscard]] bool kernelKnowsNfs() const;
};

} // namespace harbrix::nfs
