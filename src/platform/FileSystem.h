#pragma once

#include "base/Result.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace harbrix {

/// A row of the kernel's mount table (proc_pid_mountinfo(5)).
struct MountEntry {
    QString mountPoint;
    QString fileSystemType; ///< with the subtype of a FUSE mount, e.g. "fuse.smbfs"
    QString source;
    bool readOnly = false;

    bool operator==(const MountEntry&) const = default;
};

/// Queries on paths. Every call but mountTable() may block on a share whose server is gone: from
/// the main thread they are made through onWorker(). Thread-safe.
class FileSystem {
public:
    enum class Kind { Missing, Directory, Other };

    FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;
    virtual ~FileSystem() = default;

    /// What stands at the path, symbolic links followed.
    [[nodiscard]] virtual Kind kindOf(const QString& path) const = 0;
    [[nodiscard]] bool exists(const QString& path) const { return kindOf(path) != Kind::Missing; }
    /// The type name of the file system that the path lies on: "smbfs" for SMB, "nfs" for NFS, else
    /// the kernel's name, cut to 15 bytes. Nothing where statfs(2) fails, a dead mount included; a
    /// share whose server has not answered after two seconds still has its type.
    [[nodiscard]] virtual std::optional<QString> typeName(const QString& path) const = 0;
    /// Creates the directory with its parents; mode 0777 less the umask.
    [[nodiscard]] virtual Result<void, SystemError> createDirectories(const QString& path) = 0;
    /// rmdir(2): removes an empty directory and nothing else.
    virtual Result<void, SystemError> removeEmptyDirectory(const QString& path) = 0;
    /// The mounts of this process's namespace, read without asking any server.
    [[nodiscard]] virtual std::vector<MountEntry> mountTable() const = 0;

    [[nodiscard]] static std::unique_ptr<FileSystem> create();
};

} // namespace harbrix
