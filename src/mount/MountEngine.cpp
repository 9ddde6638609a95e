#include "mount/MountEngine.h"

#include "base/Worker.h"
#include "platform/FileSystem.h"

#include <QDir>

#include <cerrno>

namespace harbrix {

namespace {

/// How long a look at the mount point's directory may take.
constexpr Seconds directoryLimit{5.0};

HarbrixError cannotCreate(const QString& path, const SystemError& error) {
    return HarbrixError::mountFailed("Failed to create mount point directory '" + path +
                                     "': " + error.description);
}

} // namespace

MountEngine::MountEngine(KeychainManager& keychain, NASConfigStore& store,
                         AppStateManager& appState, FileSystem& fileSystem,
                         ProcessLauncher& launcher, Scheduler& scheduler, QString homeDirectory)
    : m_keychain(keychain), m_store(store), m_appState(appState), m_fileSystem(fileSystem),
      m_launcher(launcher), m_scheduler(scheduler), m_homeDirectory(std::move(homeDirectory)),
      m_probe(fileSystem, scheduler) {}

QString MountEngine::resolveMountPoint(const NASConfig& config) const {
    return mountPointPath(config, m_homeDirectory);
}

QString MountEngine::defaultVolumesDirectory() const {
    return m_homeDirectory + "/HarbrixVolumes";
}

Result<void> MountEngine::ensureMountPointDirectory(const QString& path) {
    switch (m_fileSystem.kindOf(path)) {
    case FileSystem::Kind::Directory:
        return {};
    case FileSystem::Kind::Other:
        return std::unexpected(
            HarbrixError::mountFailed("Mount point path exists but is not a directory: " + path));
    case FileSystem::Kind::Missing:
        break;
    }
    // What a killed mount tool leaves behind answers no query, yet its directory is there; the next
    // tool clears it before it mounts.
    const auto mounts = m_fileSystem.mountTable();
    const MountEntry* mount = mountOf(path, mounts);
    if (mount && mount->mountPoint == QDir::cleanPath(path))
        return {};
    if (path.startsWith(u"/Volumes/"))
        return std::unexpected(
            HarbrixError::mountFailed("无法自动创建 /Volumes/ 下的挂载点（需要 root 权限）。"
                                      "请使用默认路径，或手动在终端执行：sudo mkdir -p '" +
                                      path + "'"));
    if (const auto made = m_fileSystem.createDirectories(path); !made)
        return std::unexpected(cannotCreate(path, made.error()));
    return {};
}

Task<Result<void>> MountEngine::prepareMountPoint(QString path) {
    auto ensure = onWorkerWithin(m_scheduler, directoryLimit,
                                 [this, path] { return ensureMountPointDirectory(path); });
    const auto ensured = co_await ensure;
    if (!ensured)
        co_return std::unexpected(cannotCreate(path, systemError(ETIMEDOUT)));
    co_return *ensured;
}

Task<bool> MountEngine::fileExists(QString path) {
    FileSystem& fileSystem = m_fileSystem;
    auto look = onWorker([&fileSystem, path] { return fileSystem.exists(path); });
    co_return co_await look;
}

QString toolMessage(const MountEngine::ProcessResult& result) {
    const QString error = result.stderr_.trimmed();
    return error.isEmpty() ? result.stdout_.trimmed() : error;
}

} // namespace harbrix
