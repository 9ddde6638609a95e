#include "mount/VolumeProbe.h"

#include "base/Worker.h"
#include "platform/FileSystem.h"

#include <QDir>

namespace harbrix {

namespace {

bool isAtOrBelow(const QString& path, const QString& directory) {
    if (!path.startsWith(directory))
        return false;
    return path.size() == directory.size() || directory.endsWith(u'/') ||
           path.at(directory.size()) == u'/';
}

/// The kernel's names for what statfs(2) reports as "smbfs" and "nfs".
bool isNetworkMountType(const QString& fileSystemType) {
    static const QSet<QString> types{"smbfs", "cifs", "smb3",    "fuse.smbfs",
                                     "nfs",   "nfs4", "fuse.nfs"};
    return types.contains(fileSystemType);
}

} // namespace

bool isNetworkTypeName(const QString& typeName) {
    return typeName == u"smbfs" || typeName == u"nfs";
}

const MountEntry* mountOf(const QString& path, const std::vector<MountEntry>& mountTable) {
    const QString cleaned = QDir::cleanPath(path);
    const MountEntry* best = nullptr;
    // Of several mounts on one directory the last covers the others.
    for (const MountEntry& entry : mountTable)
        if (isAtOrBelow(cleaned, entry.mountPoint) &&
            (!best || entry.mountPoint.size() >= best->mountPoint.size()))
            best = &entry;
    return best;
}

bool isOnNetworkMount(const QString& path, const std::vector<MountEntry>& mountTable) {
    const MountEntry* mount = mountOf(path, mountTable);
    return mount && isNetworkMountType(mount->fileSystemType);
}

VolumeProbe::VolumeProbe(FileSystem& fileSystem, Scheduler& scheduler)
    : m_fileSystem(fileSystem), m_scheduler(scheduler) {}

Task<bool> VolumeProbe::isMounted(QString path) {
    if (m_hanging->contains(path))
        co_return isOnNetworkMount(path, m_fileSystem.mountTable());

    Completion<std::optional<bool>> verdict;
    const auto hanging = m_hanging;
    const Timer deadline = m_scheduler.after(limit, [hanging, path, tell = verdict.resolver()] {
        hanging->insert(path);
        tell(std::nullopt);
    });
    FileSystem& fileSystem = m_fileSystem;
    auto look = [&fileSystem, path] { return fileSystem.typeName(path); };
    auto conclude = [hanging, path, tell = verdict.resolver()](std::optional<QString> typeName) {
        hanging->remove(path);
        tell(typeName && isNetworkTypeName(*typeName));
    };
    detail::startOnWorker(std::move(look), std::move(conclude));

    const auto answer = co_await verdict;
    co_return answer ? *answer : isOnNetworkMount(path, m_fileSystem.mountTable());
}

} // namespace harbrix
