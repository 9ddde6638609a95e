#include "mount_smbfs/SmbFileSystem.h"

#include <fcntl.h>
#include <fuse_lowlevel.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace harbrix {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr mode_t permissions = S_IRWXU;
constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t anyExecute = S_IXUSR | S_IXGRP | S_IXOTH;
constexpr auto capacityFreshFor = 5s;
constexpr auto closingLimit = 2500ms;

// The library counts in sectors of a unit and leaves out what the kernel wants to know.
struct statvfs normalised(const struct statvfs& info) {
    struct statvfs result = info;
    const unsigned long unit = info.f_bsize * std::max(1UL, info.f_frsize);
    result.f_bsize = unit;
    result.f_frsize = unit;
    result.f_namemax = 255;
    result.f_flag = 0;
    return result;
}

// What libsmbclient makes of a server's refusal to delete or replace a read-only file.
bool mayMeanReadOnly(int error) {
    return error == EACCES || error == EPERM || error == EEXIST || error == EINVAL;
}

timespec chosenTime(const timespec& wanted, const timespec& current, bool isSet, bool isNow) {
    timespec time = isSet ? wanted : current;
    if (isNow)
        ::clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

} // namespace

SmbFileSystem::SmbFileSystem(FileServices services, MountAccess access)
    : m_services(services), m_access(access), m_owner(::getuid()), m_group(::getgid()) {}

template <typename Operation>
auto SmbFileSystem::metadata(Repeat repeat, Operation&& operation) {
    return m_services.link.call({.kind = CallKind::metadata, .repeat = repeat},
                                std::forward<Operation>(operation));
}

Outcome<void> SmbFileSystem::prepare() {
    return metadata(Repeat::once, [&](Lane& lane) -> Outcome<void> {
        const auto root = lane.connection.attributes("");
        if (!root)
            return std::unexpected(root.error());
        m_rootAttributes = *root;
        if (const auto info = lane.connection.capacity())
            m_capacity = normalised(*info);
        m_capacityReadAt = steady_clock::now();
        return {};
    });
}

Outcome<std::string> SmbFileSystem::path(Number number) const {
    if (auto found = m_nodes.path(number))
        return *found;
    return std::unexpected(ESTALE);
}

Outcome<std::string> SmbFileSystem::childPath(Number parent, const std::string& name) const {
    if (auto found = m_nodes.childPath(parent, name))
        return *found;
    return std::unexpected(ENOENT);
}

struct stat SmbFileSystem::presented(Number number, const struct stat& attributes) const {
    struct stat info = attributes;
    const bool isFolder = S_ISDIR(attributes.st_mode);
    const bool isReadOnly = !isFolder && (attributes.st_mode & anyWrite) == 0;
    info.st_mode = (isFolder ? S_IFDIR : S_IFREG) | permissions;
    if (isReadOnly)
        info.st_mode &= ~anyWrite;
    info.st_uid = m_owner;
    info.st_gid = m_group;
    info.st_nlink = isFolder ? 2 : 1;
    info.st_blksize = static_cast<blksize_t>(BufferPool::blockSize);
    info.st_blocks = (info.st_size + 511) / 512;
    // Servers without file numbers give 0; ours must then not meet one of another file's.
    if (info.st_ino == 0)
        info.st_ino = number | (ino_t{1} << 63);
    return info;
}

SmbFileSystem::File SmbFileSystem::openFile(Number number) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_open.find(number);
    return found == m_open.end() ? nullptr : found->second.file;
}

off_t SmbFileSystem::knownSize(Number number) const {
    const auto attributes = m_nodes.remembered(number);
    return attributes ? attributes->st_size : 0;
}

// An open file knows what it has not sent yet; the path alone would give the size of before.
Outcome<struct stat> SmbFileSystem::fetchAttributes(Number number, const std::string& path) {
    const File file = openFile(number);
    auto info =
        file ? file->attributes()
             : metadata(Repeat::once, [&](Lane& lane) { return lane.connection.attributes(path); });
    if (info)
        m_nodes.remember(number, *info);
    return info;
}

Outcome<SmbFileSystem::Entry> SmbFileSystem::lookUp(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    const auto known = m_nodes.find(parent, name);
    const File file = known ? openFile(*known) : nullptr;
    const auto info = file ? file->attributes() : metadata(Repeat::once, [&](Lane& lane) {
        return lane.connection.attributes(*target);
    });
    if (!info)
        return std::unexpected(info.error());
    const Number number = m_nodes.lookUp(parent, name);
    m_nodes.remember(number, *info);
    return Entry{number, presented(number, *info)};
}

Outcome<struct stat> SmbFileSystem::attributes(Number number) {
    if (number == NodeTable::root) {
        const std::lock_guard lock(m_mutex);
        return presented(number, m_rootAttributes);
    }
    const auto target = path(number);
    if (!target)
        return std::unexpected(target.error());
    const auto info = fetchAttributes(number, *target);
    if (!info)
        return info;
    return presented(number, *info);
}

Outcome<void> SmbFileSystem::setWritable(const std::string& path, mode_t serverMode,
                                         bool isWritable) {
    // The library sees the archive, system and hidden attributes in the execute bits: keep those.
    const mode_t mode = (serverMode & anyExecute) | (isWritable ? 0666 : 0444);
    return metadata(Repeat::once, [&](Lane& lane) { return lane.connection.setMode(path, mode); });
}

Outcome<void> SmbFileSystem::setTimes(Number number, const std::string& path,
                                      const struct stat& wanted, int which) {
    const auto current = fetchAttributes(number, path);
    if (!current)
        return std::unexpected(current.error());
    const timespec access =
        chosenTime(wanted.st_atim, current->st_atim, (which & FUSE_SET_ATTR_ATIME) != 0,
                   (which & FUSE_SET_ATTR_ATIME_NOW) != 0);
    const timespec modification =
        chosenTime(wanted.st_mtim, current->st_mtim, (which & FUSE_SET_ATTR_MTIME) != 0,
                   (which & FUSE_SET_ATTR_MTIME_NOW) != 0);
    // A server may set the time of the last write once more when the handle is closed.
    if (const File file = openFile(number))
        file->releaseHandles();
    return metadata(Repeat::once, [&](Lane& lane) {
        return lane.connection.setTimes(path, access, modification);
    });
}

Outcome<void> SmbFileSystem::truncate(Number number, off_t size) {
    const File file = registerOpen(number);
    auto done = file->truncate(size);
    release(number);
    return done;
}

Outcome<struct stat> SmbFileSystem::setAttributes(Number number, const struct stat& wanted,
                                                  int which) {
    if (m_access == MountAccess::readOnly)
        return std::unexpected(EROFS);
    const bool changesOwner = ((which & FUSE_SET_ATTR_UID) != 0 && wanted.st_uid != m_owner) ||
                              ((which & FUSE_SET_ATTR_GID) != 0 && wanted.st_gid != m_group);
    if (changesOwner)
        return std::unexpected(EPERM);
    const auto target = path(number);
    if (!target)
        return std::unexpected(target.error());
    m_nodes.noteChange(number);
    if ((which & FUSE_SET_ATTR_SIZE) != 0) {
        if (auto done = truncate(number, wanted.st_size); !done)
            return std::unexpected(done.error());
    }
    if ((which & FUSE_SET_ATTR_MODE) != 0) {
        const auto current = fetchAttributes(number, *target);
        if (!current)
            return current;
        const bool wasWritable = (current->st_mode & anyWrite) != 0;
        const bool isWritable = (wanted.st_mode & anyWrite) != 0;
        if (S_ISREG(current->st_mode) && wasWritable != isWritable) {
            if (auto done = setWritable(*target, current->st_mode, isWritable); !done)
                return std::unexpected(done.error());
        }
    }
    constexpr int times = FUSE_SET_ATTR_ATIME | FUSE_SET_ATTR_MTIME | FUSE_SET_ATTR_ATIME_NOW |
                          FUSE_SET_ATTR_MTIME_NOW;
    if ((which & times) != 0) {
        if (auto done = setTimes(number, *target, wanted, which); !done)
            return std::unexpected(done.error());
    }
    return attributes(number);
}

Outcome<SmbFileSystem::Entry> SmbFileSystem::makeFolder(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    const auto info = metadata(
        Repeat::never, [&](Lane & lane) -> Outcome<struct stat> {
            if (auto made = lane.connection.makeFolder(*target); !made)
                return std::unexpected(made.error());
            return lane.connection.attributes(*target);
        });
    if (!info)
        return std::unexpected(info.error());
    const Number number = m_nodes.lookUp(parent, name);
    m_nodes.remember(number, *info);
    return Entry{number, presented(number, *info)};
}

Outcome<void> SmbFileSystem::removeFolder(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    auto done =
        metadata(Repeat::never, [&](Lane& lane) { return lane.connection.removeFolder(*target); });
    if (done)
        m_nodes.remove(parent, name);
    return done;
}

// Here the folder's permissions decide what may be removed; a server refuses read-only files.
Outcome<void> SmbFileSystem::removeOnServer(const std::string& path) {
    auto removed =
        metadata(Repeat::never, [&](Lane& lane) { return lane.connection.removeFile(path); });
    if (removed || !mayMeanReadOnly(removed.error()))
        return removed;
    const auto info =
        metadata(Repeat::once, [&](Lane& lane) { return lane.connection.attributes(path); });
    if (!info || (info->st_mode & anyWrite) != 0 || !setWritable(path, info->st_mode, true))
        return removed;
    auto again =
        metadata(Repeat::never, [&](Lane& lane) { return lane.connection.removeFile(path); });
    if (!again)
        (void) setWritable(path, info->st_mode, false);
    return again;
}

Outcome<void> SmbFileSystem::hideOpenFile(Number parent, const std::string& name, Number number) {
    char hidden[64];
    std::snprintf(hidden, sizeof hidden, ".fuse_hidden%08x%08x", static_cast<unsigned>(::getpid()),
                  m_hiddenCount++);
    if (auto renamed = rename(parent, name, parent, hidden, 0); !renamed)
        return renamed;
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_open.find(number); found != m_open.end())
        found->second.isDoomed = true;
    return {};
}

Outcome<void> SmbFileSystem::removeFile(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    if (const auto number = m_nodes.find(parent, name)) {
        waitUntilClosed(*number);
        if (openFile(*number))
            return hideOpenFile(parent, name, *number);
    }
    auto removed = removeOnServer(*target);
    if (removed)
        m_nodes.remove(parent, name);
    return removed;
}

void SmbFileSystem::waitUntilClosed(Number number) {
    std::unique_lock lock(m_mutex);
    m_closed.wait_for(lock, closingLimit, [&] { return !m_closing.contains(number); });
}

void SmbFileSystem::releaseHandlesWithin(Number top) {
    std::vector<Number> numbers;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [number, opened] : m_open)
            numbers.push_back(number);
        numbers.insert(numbers.end(), m_closing.begin(), m_closing.end());
    }
    for (Number number : m_nodes.within(top, numbers)) {
        waitUntilClosed(number);
        if (const File file = openFile(number)) {
            (void) file->flush();
            file->releaseHandles();
        }
    }
}

// As with removal: what a read-only file keeps safe here is its content, not its name.
Outcome<void> SmbFileSystem::renameOnServer(const std::string& from, const std::string& to) {
    const auto rename = [&] {
        return metadata(Repeat::never,
                        [&](Lane& lane) { return lane.connection.rename(from, to); });
    };
    auto renamed = rename();
    if (renamed || !mayMeanReadOnly(renamed.error()))
        return renamed;
    const auto there =
        metadata(Repeat::once, [&](Lane& lane) { return lane.connection.attributes(to); });
    if (!there || !S_ISREG(there->st_mode) || (there->st_mode & anyWrite) != 0 ||
        !setWritable(to, there->st_mode, true))
        return renamed;
    renamed = rename();
    if (!renamed)
        (void) setWritable(to, there->st_mode, false);
    return renamed;
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
        const auto there =
            metadata(Repeat::once, [&](Lane& lane) { return lane.connection.attributes(*to); });
        if (there || there.error() != ENOENT)
            return std::unexpected(there ? EEXIST : there.error());
    }
    if (const auto moved = m_nodes.find(oldParent, oldName))
        releaseHandlesWithin(*moved);
    if (const auto replaced = m_nodes.find(newParent, newName)) {
        waitUntilClosed(*replaced);
        if (openFile(*replaced)) {
            const auto hidden = hideOpenFile(newParent, newName, *replaced);
            if (!hidden && hidden.error() != ENOENT)
                return hidden;
        }
    }
    auto renamed = renameOnServer(*from, *to);
    if (renamed)
        m_nodes.rename(oldParent, oldName, newParent, newName);
    return renamed;
}

SmbFileSystem::File SmbFileSystem::registerOpen(Number number) {
    const std::lock_guard lock(m_mutex);
    Opened& opened = m_open[number];
    if (!opened.file)
        opened.file =
            std::make_shared<OpenFile>(m_services, [this, number] { return m_nodes.path(number); });
    ++opened.count;
    return opened.file;
}

Outcome<SmbFileSystem::File> SmbFileSystem::open(Number number, int flags) {
    const int mode = flags & O_ACCMODE;
    const auto access = mode == O_RDONLY   ? OpenFile::Access::read
                        : mode == O_WRONLY ? OpenFile::Access::write
                                           : OpenFile::Access::readWrite;
    if (m_access == MountAccess::readOnly && mode != O_RDONLY)
        return std::unexpected(EROFS);
    const File file = registerOpen(number);
    if ((flags & O_TRUNC) != 0)
        m_nodes.noteChange(number);
    const auto info = file->open(access, flags & O_TRUNC);
    if (!info) {
        release(number);
        return std::unexpected(info.error());
    }
    m_nodes.remember(number, *info);
    return file;
}

Outcome<std::pair<SmbFileSystem::Entry, SmbFileSystem::File>>
SmbFileSystem::create(Number parent, const std::string& name, int flags) {
    if (m_access == MountAccess::readOnly)
        return std::unexpected(EROFS);
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    const Number number = m_nodes.lookUp(parent, name);
    const File file = registerOpen(number);
    const auto access =
        (flags & O_ACCMODE) == O_WRONLY ? OpenFile::Access::write : OpenFile::Access::readWrite;
    m_nodes.noteChange(number);
    const auto info = file->open(access, O_CREAT | (flags & (O_EXCL | O_TRUNC)));
    if (!info) {
        release(number);
        m_nodes.forget(number, 1);
        return std::unexpected(info.error());
    }
    m_nodes.remember(number, *info);
    return std::pair{Entry{number, presented(number, *info)}, file};
}

void SmbFileSystem::release(Number number) {
    File file;
    bool isDoomed = false;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_open.find(number);
        if (found == m_open.end() || --found->second.count > 0)
            return;
        file = found->second.file;
        isDoomed = found->second.isDoomed;
        m_open.erase(found);
        m_closing.insert(number);
    }
    file->close();
    if (isDoomed) {
        if (const auto hidden = path(number))
            (void) removeOnServer(*hidden);
    }
    {
        const std::lock_guard lock(m_mutex);
        m_closing.erase(m_closing.find(number));
    }
    m_closed.notify_all();
}

Outcome<FolderListing> SmbFileSystem::list(Number number) {
    const auto target = path(number);
    if (!target)
        return std::unexpected(target.error());
    FolderListing listing;
    // Before the question: what changes while it is answered must count as newer.
    listing.readAt = steady_clock::now();
    auto entries = m_services.link.call({.kind = CallKind::metadata},
                                        [&](Lane& lane) { return lane.connection.list(*target); });
    if (!entries)
        return std::unexpected(entries.error());
    listing.entries = std::move(*entries);
    return listing;
}

bool SmbFileSystem::isStillThere(Number parent, const FolderListing& listing,
                                 const ListedEntry& entry) const {
    return !m_nodes.wasRemovedSince(parent, entry.name, listing.readAt);
}

std::optional<SmbFileSystem::Entry>
SmbFileSystem::listedEntry(Number parent, const FolderListing& listing, const ListedEntry& entry) {
    if (const auto known = m_nodes.find(parent, entry.name)) {
        if (m_nodes.wasChangedSince(*known, listing.readAt) || openFile(*known))
            return std::nullopt;
    }
    const Number number = m_nodes.lookUp(parent, entry.name);
    m_nodes.remember(number, entry.attributes);
    return Entry{number, presented(number, entry.attributes)};
}

struct statvfs SmbFileSystem::capacity() {
    const std::lock_guard lock(m_mutex);
    const bool isStale = steady_clock::now() - m_capacityReadAt > capacityFreshFor;
    if (isStale && !m_isCapacityAsked && !m_services.link.isDown()) {
        m_isCapacityAsked = true;
        m_services.jobs.post([this] {
            const auto info =
                metadata(Repeat::once, [](Lane& lane) { return lane.connection.capacity(); });
            const std::lock_guard guard(m_mutex);
            if (info)
                m_capacity = normalised(*info);
            m_capacityReadAt = steady_clock::now();
            m_isCapacityAsked = false;
        });
    }
    return m_capacity;
}

void SmbFileSystem::flushAll() {
    std::vector<File> files;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [number, opened] : m_open)
            files.push_back(opened.file);
    }
    for (const File& file : files)
        (void) file->flush();
}

} // namespace harbrix
