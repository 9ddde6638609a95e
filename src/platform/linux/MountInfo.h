#pragma once

#include "platform/FileSystem.h"

#include <QByteArray>

namespace harbrix {

/// A row of /proc/self/mountinfo with the number that the kernel knows the mount by.
struct MountInfoRow {
    int id = 0;
    MountEntry entry;

    bool operator==(const MountInfoRow&) const = default;
};

/// Reads proc_pid_mountinfo(5); rows that do not have its form are left out.
[[nodiscard]] std::vector<MountInfoRow> parseMountInfo(const QByteArray& text);

/// The type name that the program goes by, from the magic number of statfs(2) and the kernel's name
/// of the type. Both SMB clients of the kernel and a FUSE mount of subtype "smbfs" are "smbfs".
[[nodiscard]] QString fileSystemTypeName(quint32 magic, const QString& kernelType);

} // namespace harbrix
