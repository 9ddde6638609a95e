// The part of SmbFileSystem that changes names and attributes.
#include "mount_smbfs/SmbFileSystem.h"

#include <fcntl.h>
#include <fuse_lowlevel.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace harbrix {

namespace {

timespec chosenTime(const timespec& wanted, const timespec& current, bool isSet, bool isNow) {
    timespec time = isSet ? wanted : current;
    if (isNow)
        ::clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

} // namespace

Outcome<void> SmbFileSystem::setTimes(Number number, const std::string& path,
                                      const struct stat& wanted, int which) {
    const auto answer = fetchAttributes(number);
    if (!answer)
        return std::unexpected(answer.error());
    const struct stat& current = answer->attributes;
    const timespec access =
        chosenTime(wanted.st_atim, current.st_atim, (which & FUSE_SET_ATTR_ATIME) != 0,
                   (which & FUSE_SET_ATTR_ATIME_NOW) != 0);
    const timespec modification =
        chosenTime(wanted.st_mtim, current.st_mtim, (which & FUSE_SET_ATTR_MTIME) != 0,
                   (which & FUSE_SET_ATTR_MTIME_NOW) != 0);
    // A server may set the time of the last write once more when the handle is closed.
    if (const File file = m_files.find(number))
        file->releaseHandles();
    return m_server.setTimes(path, access, modification);
}

Outcome<void> SmbFileSystem::truncate(Number number, off_t size) {
    const File file = m_files.acquire(number);
    auto done = file->truncate(size);
    release(number);
    return done;
}

Outcome<Answer> SmbFileSystem::setAttributes(Number number, const struct stat& wanted, int which) {
    if (m_access == MountAccess::readOnly)
        return std::unexpected(EROFS);
    const bool changesOwner = ((which & FUSE_SET_ATTR_UID) != 0 && wanted.st_uid != m_owner) ||
                              ((which & FUSE_SET_ATTR_GID) != 0 && wanted.st_gid != m_group);
    if (changesOwner)
        return std::unexpected(EPERM);
    const auto target = path(number);
    if (!target)
        return std::unexpected(target.error());
    auto changed = changeAttributes(number, *target, wanted, which);
    noteContentChange(number);
    if (!changed)
        return std::unexpected(changed.error());
    return attributes(number);
}

Outcome<void> SmbFileSystem::changeAttributes(Number number, const std::string& path,
                                              const struct stat& wanted, int which) {
    if ((which & FUSE_SET_ATTR_SIZE) != 0) {
        if (auto done = truncate(number, wanted.st_size); !done)
            return done;
    }
    if ((which & FUSE_SET_ATTR_MODE) != 0) {
        const auto current = fetchAttributes(number);
        if (!current)
            return std::unexpected(current.error());
        const mode_t mode = current->attributes.st_mode;
        const bool wasWritable = (mode & anyWrite) != 0;
        const bool isWritable = (wanted.st_mode & anyWrite) != 0;
        if (S_ISREG(mode) && wasWritable != isWritable) {
            if (auto done = m_server.setWritable(path, mode, isWritable); !done)
                return done;
        }
    }
    constexpr int times = FUSE_SET_ATTR_ATIME | FUSE_SET_ATTR_MTIME | FUSE_SET_ATTR_ATIME_NOW |
                          FUSE_SET_ATTR_MTIME_NOW;
    if ((which & times) != 0)
        return setTimes(number, path, wanted, which);
    return {};
}

Outcome<SmbFileSystem::Entry> SmbFileSystem::makeFolder(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    const auto answer = m_server.makeFolder(*target);
    m_folders.noteChange(parent, name);
    if (!answer)
        return std::unexpected(answer.error());
    const Number number = m_nodes.lookUp(parent, name, *answer);
    return Entry{number, presented(number, *answer)};
}

// A failure leaves open whether the server did it; the next look-up asks.
void SmbFileSystem::noteRemoval(Number parent, const std::string& name,
                                const Outcome<void>& removed) {
    if (!removed) {
        m_folders.noteChange(parent, name);
        return;
    }
    m_folders.noteRemoval(parent, name);
    m_nodes.remove(parent, name);
}

Outcome<void> SmbFileSystem::removeFolder(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    auto removed = m_server.removeFolder(*target);
    noteRemoval(parent, name, removed);
    return removed;
}

Outcome<void> SmbFileSystem::hideOpenFile(Number parent, const std::string& name, Number number) {
    char hidden[64];
    std::snprintf(hidden, sizeof hidden, ".fuse_hidden%08x%08x", static_cast<unsigned>(::getpid()),
                  m_hiddenCount++);
    if (auto renamed = rename(parent, name, parent, hidden, 0); !renamed)
        return renamed;
    m_files.doom(number);
    return {};
}

Outcome<void> SmbFileSystem::removeFile(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    if (const auto number = m_nodes.find(parent, name)) {
        m_files.waitUntilClosed(*number);
        if (m_files.find(*number))
            return hideOpenFile(parent, name, *number);
    }
    auto removed = m_server.removeFile(*target);
    noteRemoval(parent, name, removed);
    return removed;
}

Outcome<void> SmbFileSystem::rename(Number oldParent, const std::string& oldName, Number newParent,
                                    const std::string& newName, unsigned flags) {
    if ((flags & ~static_cast<unsigned>(RENAME_NOREPLACE)) != 0)
        return std::unexpected(EINVAL);
    const auto from = childPath(oldParent, oldName);
    const auto to = childPath(newParent, newName);
    if (!from || !to)
        return std::unexpected(ENOENT);
    if ((flags & RENAME_NOREPLACE) != 0) {
        const auto there = m_server.attributes(*to);
        if (there || there.error() != ENOENT)
            return std::unexpected(there ? EEXIST : there.error());
    }
    if (const auto moved = m_nodes.find(oldParent, oldName))
        m_files.releaseHandlesWithin(*moved);
    if (const auto replaced = m_nodes.find(newParent, newName)) {
        m_files.waitUntilClosed(*replaced);
        if (m_files.find(*replaced)) {
            const auto hidden = hideOpenFile(newParent, newName, *replaced);
            if (!hidden && hidden.error() != ENOENT)
                return hidden;
        }
    }
    auto renamed = m_server.rename(*from, *to);
    if (renamed)
        m_folders.noteRemoval(oldParent, oldName);
    else
        m_folders.noteChange(oldParent, oldName);
    m_folders.noteChange(newParent, newName);
    if (renamed)
        m_nodes.rename(oldParent, oldName, newParent, newName);
    return renamed;
}

} // namespace harbrix
