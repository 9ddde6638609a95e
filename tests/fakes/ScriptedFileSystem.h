#pragma once

#include "platform/FileSystem.h"

#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <map>
#include <mutex>

namespace harbrix {

/// A file system of names only, on which a test mounts and kills shares. It starts with the root
/// directory alone. Thread-safe, as callers use workers.
class ScriptedFileSystem final : public FileSystem {
public:
    void addDirectory(const QString& path) {
        const std::scoped_lock lock(m_mutex);
        makeWithParents(path);
    }
    void addFile(const QString& path) {
        const std::scoped_lock lock(m_mutex);
        makeWithParents(parentOf(path));
        m_kinds[path] = Kind::Other;
    }
    /// Mounts something over the path, which is made if it is missing.
    void mount(const QString& path, const QString& typeName, const QString& source = {}) {
        const std::scoped_lock lock(m_mutex);
        makeWithParents(path);
        m_mounts.push_back({{path, typeName, source, false}, true});
    }
    void unmount(const QString& path) {
        const std::scoped_lock lock(m_mutex);
        std::erase_if(m_mounts, [&](const Mount& mount) { return mount.entry.mountPoint == path; });
    }
    /// The mount stays in the table, and every look at it fails from now on.
    void killMount(const QString& path) {
        const std::scoped_lock lock(m_mutex);
        for (Mount& mount : m_mounts) {
            if (mount.entry.mountPoint == path)
                mount.alive = false;
        }
    }
    /// createDirectories() and removeEmptyDirectory() of this path fail with that errno.
    void failOn(const QString& path, int errorNumber) {
        const std::scoped_lock lock(m_mutex);
        m_failures[path] = errorNumber;
    }

    [[nodiscard]] Kind kindOf(const QString& path) const override {
        const std::scoped_lock lock(m_mutex);
        const Mount* mount = mountOf(path);
        return mount && !mount->alive ? Kind::Missing : kindWithoutMounts(path);
    }
    [[nodiscard]] std::optional<QString> typeName(const QString& path) const override {
        const std::scoped_lock lock(m_mutex);
        const Mount* mount = mountOf(path);
        if (mount)
            return mount->alive ? std::optional(mount->entry.fileSystemType) : std::nullopt;
        if (kindWithoutMounts(path) == Kind::Missing)
            return std::nullopt;
        return QStringLiteral("ext4");
    }
    [[nodiscard]] Result<void, SystemError> createDirectories(const QString& path) override {
        const std::scoped_lock lock(m_mutex);
        if (const auto failure = m_failures.find(path); failure != m_failures.end())
            return std::unexpected(systemError(failure->second));
        for (QString step = path; !step.isEmpty(); step = parentOf(step)) {
            if (kindWithoutMounts(step) == Kind::Other)
                return std::unexpected(systemError(step == path ? EEXIST : ENOTDIR));
        }
        makeWithParents(path);
        return {};
    }
    Result<void, SystemError> removeEmptyDirectory(const QString& path) override {
        const std::scoped_lock lock(m_mutex);
        if (const auto failure = m_failures.find(path); failure != m_failures.end())
            return std::unexpected(systemError(failure->second));
        if (const int errorNumber = whyNotRemovable(path))
            return std::unexpected(systemError(errorNumber));
        m_kinds.erase(path);
        return {};
    }
    [[nodiscard]] std::vector<MountEntry> mountTable() const override {
        const std::scoped_lock lock(m_mutex);
        std::vector<MountEntry> entries;
        for (const Mount& mount : m_mounts)
            entries.push_back(mount.entry);
        return entries;
    }

private:
    struct Mount {
        MountEntry entry;
        bool alive = true;
    };

    /// Empty above the root.
    static QString parentOf(const QString& path) {
        return path.left(path.lastIndexOf(QLatin1Char('/')));
    }
    static bool isAtOrBelow(const QString& path, const QString& directory) {
        return path == directory || path.startsWith(directory + QLatin1Char('/'));
    }
    void makeWithParents(const QString& path) {
        for (QString step = path; !step.isEmpty(); step = parentOf(step))
            m_kinds.try_emplace(step, Kind::Directory);
    }
    Kind kindWithoutMounts(const QString& path) const {
        if (path == QLatin1String("/"))
            return Kind::Directory;
        const auto found = m_kinds.find(path);
        return found == m_kinds.end() ? Kind::Missing : found->second;
    }
    /// The mount that the path lies on, the topmost where several are stacked.
    const Mount* mountOf(const QString& path) const {
        const Mount* best = nullptr;
        for (const Mount& mount : m_mounts) {
            const qsizetype length = mount.entry.mountPoint.size();
            if (isAtOrBelow(path, mount.entry.mountPoint) &&
                (!best || length >= best->entry.mountPoint.size()))
                best = &mount;
        }
        return best;
    }
    int whyNotRemovable(const QString& path) const {
        if (kindWithoutMounts(path) == Kind::Missing)
            return ENOENT;
        if (kindWithoutMounts(path) == Kind::Other)
            return ENOTDIR;
        const Mount* mount = mountOf(path);
        if (mount && mount->entry.mountPoint == path)
            return EBUSY;
        const auto isChild = [&](const auto& entry) {
            return entry.first != path && isAtOrBelow(entry.first, path);
        };
        return std::ranges::any_of(m_kinds, isChild) ? ENOTEMPTY : 0;
    }

    mutable std::mutex m_mutex;
    std::map<QString, Kind> m_kinds;
    std::vector<Mount> m_mounts;
    std::map<QString, int> m_failures;
};

} // namespace harbrix
