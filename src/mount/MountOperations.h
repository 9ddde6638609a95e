#pragma once

#include "base/Scheduler.h"
#include "base/Task.h"
#include "config/NASConfig.h"
#include "core/HarbrixError.h"

#include <QUrl>

namespace harbrix {

enum class UnmountMode { Plain, Force };

/// What the conductor asks of the machinery that mounts. Main thread; each call waits without
/// blocking it.
class MountOperations {
public:
    MountOperations() = default;
    MountOperations(const MountOperations&) = delete;
    MountOperations& operator=(const MountOperations&) = delete;
    virtual ~MountOperations() = default;

    /// The mount point of the mounted share, marked as a directory.
    virtual Task<Result<QUrl>> mountSMB(NASConfig config) = 0;
    virtual Task<Result<QUrl>> mountNFS(NASConfig config) = 0;
    virtual Task<Result<void>> unmount(QUrl mountPoint, UnmountMode mode) = 0;
    /// How long the server took to answer.
    virtual Task<Result<Seconds>> ping(NASConfig config) = 0;
    [[nodiscard]] virtual QString resolveMountPoint(const NASConfig& config) const = 0;
    /// Whether the path lies on a network file system; a path inside a share counts too. Looked up
    /// on a worker.
    virtual Task<bool> volumeIsMounted(QString path) = 0;
};

} // namespace harbrix
