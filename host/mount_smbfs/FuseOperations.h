#pragma once

#include "mount_smbfs/SmbFileSystem.h"

#include <fuse_lowlevel.h>

namespace harbrix {

/// Whether large files may bypass the page cache; settled when the kernel has said what it can do.
struct KernelAbilities {
    /// Shared maps of a file that is read directly; without it such a file is never read directly.
    bool canMapDirect = false;
};

/// What the FUSE operations get as their user data.
struct FuseContext {
    SmbFileSystem& fileSystem;
    KernelAbilities abilities;
};

/// The operations of a mount, for fuse_session_new(); the user data is a FuseContext.
[[nodiscard]] fuse_lowlevel_ops smbFuseOperations();

} // namespace harbrix
