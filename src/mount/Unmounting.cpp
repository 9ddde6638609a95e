#include "base/Worker.h"
#include "mount/MountEngine.h"
#include "mount/MountPoint.h"
#include "platform/FileSystem.h"

namespace harbrix {

namespace {
constexpr Seconds pingTimeout{5.0};
constexpr Seconds removalLimit{5.0};
} // namespace

Task<Result<void>> MountEngine::unmount(QUrl mountPoint, UnmountMode mode) {
    const QString path = directoryPath(mountPoint);
    QStringList arguments{"unmount"};
    if (mode == UnmountMode::Force)
        arguments << "force";
    arguments << path;
    auto run = executeProcess(unmountCommand, arguments, mountTimeout, std::nullopt);
    const auto result = co_await run;
    if (!result)
        co_return std::unexpected(result.error());
    if (result->exitCode != 0)
        co_return std::unexpected(HarbrixError::unmountFailed("diskutil unmount exited with code " +
                                                              QString::number(result->exitCode) +
                                                              ": " + result->stderr_.trimmed()));

    // A plain text prefix, so that "HarbrixVolumes-old" counts too. Only an empty directory goes:
    // should the share be mounted still, nothing on it may be lost.
    if (path.startsWith(defaultVolumesDirectory())) {
        FileSystem& fileSystem = m_fileSystem;
        auto remove = onWorkerWithin(m_scheduler, removalLimit, [&fileSystem, path] {
            return fileSystem.removeEmptyDirectory(path).has_value();
        });
        co_await remove;
    }
    co_return Result<void>();
}

Task<Result<Seconds>> MountEngine::ping(NASConfig config) {
    const Duration begun = m_scheduler.now();
    // This ping takes whole seconds.
    auto run = executeProcess(pingCommand, {"-c", "1", "-W", "3", config.address}, pingTimeout,
                              std::nullopt);
    const auto result = co_await run;
    if (!result)
        co_return std::unexpected(result.error());
    if (result->exitCode != 0)
        co_return std::unexpected(
            HarbrixError::connectionFailed("Ping to " + config.address + " failed (exit code " +
                                           QString::number(result->exitCode) + ")"));
    co_return Seconds(m_scheduler.now() - begun);
}

bool MountEngine::isVolumeMounted(const QString& path) const {
    const auto typeName = m_fileSystem.typeName(path);
    return typeName && isNetworkTypeName(*typeName);
}

Task<bool> MountEngine::volumeIsMounted(QString path) {
    return m_probe.isMounted(std::move(path));
}

} // namespace harbrix
