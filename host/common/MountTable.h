#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harbrix {

/// One line of /proc/self/mountinfo, proc_pid_mountinfo(5).
struct MountEntry {
    unsigned deviceMajor = 0;
    /// Also the number of the connection's folder in fusectl when the type is FUSE.
    unsigned deviceMinor = 0;
    std::string mountPoint;
    std::string options;
    std::string fileSystemType;
    std::string source;
    std::string superOptions;

    [[nodiscard]] bool isFuse() const;
    /// "smbfs" of "fuse.smbfs"; empty where the type has none.
    [[nodiscard]] std::string_view subtype() const;
    /// The user who made a FUSE mount (`user_id=`); absent for other types.
    [[nodiscard]] std::optional<uid_t> fuseOwner() const;
};

/// The mounts of this process's mount namespace. Reading it never asks a file system, so it cannot
/// hang on a dead server.
class MountTable {
public:
    [[nodiscard]] static MountTable read();
    [[nodiscard]] static MountTable parse(std::string_view text);

    [[nodiscard]] const std::vector<MountEntry>& entries() const { return m_entries; }
    /// The uppermost mount exactly at this absolute path, or null.
    [[nodiscard]] const MountEntry* at(std::string_view path) const;

private:
    std::vector<MountEntry> m_entries;
};

/// The absolute path of a mount point or folder as the mount table writes it. Symbolic links are
/// resolved in the parent only if something is mounted at the result, so that a dead mount itself
/// is not touched. Absent if the path does not exist.
[[nodiscard]] std::optional<std::string> canonicalMountPath(const std::string& path,
                                                            const MountTable& table);

} // namespace harbrix
