#pragma once

#include "base/Scheduler.h"
#include "base/Task.h"

#include <QSet>
#include <QString>

#include <memory>
#include <vector>

namespace harbrix {

class FileSystem;
struct MountEntry;

/// Tells whether a path lies on a network file system without ever waiting for a server that is
/// gone. Main thread.
class VolumeProbe {
public:
    /// How long a look at the file system may take before the mount table decides instead; a little
    /// more than FileSystem allows the server.
    static constexpr Seconds limit{3.0};

    VolumeProbe(FileSystem& fileSystem, Scheduler& scheduler);

    Task<bool> isMounted(QString path);

private:
    FileSystem& m_fileSystem;
    Scheduler& m_scheduler;
    /// Paths whose look-up is past its limit and has not come back. They are not asked again until
    /// it does: each look at a hung mount costs a worker, and a periodic check would use them up.
    std::shared_ptr<QSet<QString>> m_hanging = std::make_shared<QSet<QString>>();
};

/// Whether a file system of this type name is a mounted share.
[[nodiscard]] bool isNetworkTypeName(const QString& typeName);
/// The mount that a path lies on by the text of the paths; symbolic links are not followed.
[[nodiscard]] const MountEntry* mountOf(const QString& path,
                                        const std::vector<MountEntry>& mountTable);
/// The same verdict as by statfs(2), from the mount table alone.
[[nodiscard]] bool isOnNetworkMount(const QString& path, const std::vector<MountEntry>& mountTable);

} // namespace harbrix
