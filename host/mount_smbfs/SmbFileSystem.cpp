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
constexpr auto capacityFreshFor = 5s;

timespec chosenTime(const timespec& wanted, const timespec& current, bool isSet, bool isNow) {
    timespec time = isSet ? wanted : current;
    if (isNow)
        ::clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

} // namespace

SmbFileSystem::SmbFileSystem(FileServices services, MountAccess access)
    : m_services(services), m_access(access), m_owner(::getuid()), m_group(::getgid()),
      m_server(services.link), m_files(services, m_nodes), m_folders(services.watchdog) {}

Outcome<void> SmbFileSystem::prepare() {
    const auto root = m_server.attributes("");
    if (!root)
        return std::unexpected(root.error());
    m_rootAttributes = root->attributes;
    if (const auto info = m_server.capacity())
        m_capacity = *info;
    m_capacityReadAt = steady_clock::now();
    return {};
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

Answer SmbFileSystem::presented(Number number, const Answer& answer) const {
    Answer result = answer;
    struct stat& info = result.attributes;
    const bool isFolder = S_ISDIR(info.st_mode);
    const bool isReadOnly = !isFolder && (info.st_mode & anyWrite) == 0;
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
    return result;
}

off_t SmbFileSystem::knownSize(Number number) const {
    const auto answer = m_nodes.remembered(number);
    return answer ? answer->attributes.st_size : 0;
}

// What a name stands for: from a listing of the last second, or else from the server.
Outcome<Answer> SmbFileSystem::fetchNamed(Number parent, const std::string& name) {
    Answer answer{};
    switch (m_folders.find(parent, name, answer)) {
    case FolderCache::Knowledge::present:
        return answer;
    case FolderCache::Knowledge::absent:
        return std::unexpected(ENOENT);
    case FolderCache::Knowledge::unknown:
        break;
    }
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    const auto begin = steady_clock::now();
    auto asked = m_server.attributes(*target);
    if (m_folders.noteMiss(parent, steady_clock::now() - begin))
        listForLookUps(parent);
    return asked;
}

// In the background: nobody who asks for one name waits for the listing of a huge folder.
void SmbFileSystem::listForLookUps(Number folder) {
    m_services.jobs.post([this, folder] {
        const auto target = path(folder);
        auto listing = target ? m_server.list(*target, m_services.link.transferLanes())
                              : std::unexpected(target.error());
        if (listing)
            m_folders.store(folder, std::move(*listing));
        else
            m_folders.noteNoListing(folder);
    });
}

// An open file knows what it has not sent yet; its name alone would give the size of before.
Outcome<Answer> SmbFileSystem::fetchAttributes(Number number) {
    const File file = m_files.find(number);
    const auto place = m_nodes.place(number);
    if (!file && !place)
        return std::unexpected(ESTALE);
    auto answer = file ? file->attributes() : fetchNamed(place->first, place->second);
    if (answer)
        m_nodes.remember(number, *answer);
    return answer;
}

Outcome<SmbFileSystem::Entry> SmbFileSystem::lookUp(Number parent, const std::string& name) {
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    const auto known = m_nodes.find(parent, name);
    const File file = known ? m_files.find(*known) : nullptr;
    // The name of an open file may mean another one by now, so it is the server that is asked; what
    // was written so far must be there for that.
    if (file)
        (void) file->flush();
    const auto answer = file ? m_server.attributes(*target) : fetchNamed(parent, name);
    if (!answer)
        return std::unexpected(answer.error());
    const Number number = m_nodes.lookUp(parent, name, *answer);
    return Entry{number, presented(number, *answer)};
}

Outcome<Answer> SmbFileSystem::attributes(Number number) {
    if (number == NodeTable::root) {
        const std::lock_guard lock(m_mutex);
        return presented(number, {m_rootAttributes, steady_clock::now()});
    }
    const auto answer = fetchAttributes(number);
    if (!answer)
        return answer;
    return presented(number, *answer);
}

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

void SmbFileSystem::noteContentChange(Number number) {
    if (const auto place = m_nodes.place(number))
        m_folders.noteChange(place->first, place->second);
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

Outcome<SmbFileSystem::File> SmbFileSystem::open(Number number, int flags) {
    const int mode = flags & O_ACCMODE;
    const auto access = mode == O_RDONLY   ? OpenFile::Access::read
                        : mode == O_WRONLY ? OpenFile::Access::write
                                           : OpenFile::Access::readWrite;
    if (m_access == MountAccess::readOnly && mode != O_RDONLY)
        return std::unexpected(EROFS);
    const File file = m_files.acquire(number);
    // The kernel has usually looked it up a moment ago; then there is nothing more to ask.
    auto known = m_nodes.remembered(number);
    if (known && known->remaining().count() == 0)
        known.reset();
    const auto answer = file->open(access, flags & O_TRUNC, known);
    if ((flags & O_TRUNC) != 0)
        noteContentChange(number);
    if (!answer) {
        release(number);
        return std::unexpected(answer.error());
    }
    m_nodes.remember(number, *answer);
    return file;
}

Outcome<std::pair<SmbFileSystem::Entry, SmbFileSystem::File>>
SmbFileSystem::create(Number parent, const std::string& name, int flags) {
    if (m_access == MountAccess::readOnly)
        return std::unexpected(EROFS);
    const auto target = childPath(parent, name);
    if (!target)
        return std::unexpected(target.error());
    // The kernel knows of no such file: if we do, it was another one, gone from the server since.
    m_nodes.remove(parent, name);
    const Number number = m_nodes.lookUp(parent, name);
    const File file = m_files.acquire(number);
    const auto access =
        (flags & O_ACCMODE) == O_WRONLY ? OpenFile::Access::write : OpenFile::Access::readWrite;
    const auto answer = file->open(access, O_CREAT | (flags & (O_EXCL | O_TRUNC)), std::nullopt);
    m_folders.noteChange(parent, name);
    if (!answer) {
        release(number);
        m_nodes.forget(number, 1);
        return std::unexpected(answer.error());
    }
    m_nodes.remember(number, *answer);
    return std::pair{Entry{number, presented(number, *answer)}, file};
}

void SmbFileSystem::release(Number number) {
    const File file = m_files.find(number);
    // While it counts as open nobody takes its size from a listing; from then on none of before
    // will do, and none from before the close, which can set the time of the last write.
    const bool isWritable = file && file->isWritable();
    if (isWritable)
        noteContentChange(number);
    const auto released = m_files.release(number);
    if (!released)
        return;
    released->file->close();
    if (isWritable)
        noteContentChange(number);
    const auto place = m_nodes.place(number);
    if (const auto hidden = m_nodes.path(number); released->isDoomed && place && hidden)
        noteRemoval(place->first, place->second, m_server.removeFile(*hidden));
    m_files.noteClosed(number);
}

Outcome<ListingPointer> SmbFileSystem::list(Number number) {
    const auto target = path(number);
    if (!target)
        return std::unexpected(target.error());
    auto listing = m_server.list(*target, ~0U);
    if (listing)
        m_folders.store(number, *listing);
    return listing;
}

bool SmbFileSystem::isStillThere(Number parent, const FolderListing& listing,
                                 const ListedEntry& entry) const {
    return !m_folders.wasRemovedSince(parent, entry.name, listing.askedAt);
}

std::optional<SmbFileSystem::Entry>
SmbFileSystem::listedEntry(Number parent, const FolderListing& listing, const ListedEntry& entry) {
    if (entry.isLink || !listing.isFresh() ||
        m_folders.wasChangedSince(parent, entry.name, listing.askedAt))
        return std::nullopt;
    if (const auto known = m_nodes.find(parent, entry.name); known && m_files.find(*known))
        return std::nullopt;
    const Answer answer{entry.attributes, listing.answeredAt};
    const Number number = m_nodes.lookUp(parent, entry.name, answer);
    return Entry{number, presented(number, answer)};
}

struct statvfs SmbFileSystem::capacity() {
    const std::lock_guard lock(m_mutex);
    const bool isStale = steady_clock::now() - m_capacityReadAt > capacityFreshFor;
    if (isStale && !m_isCapacityAsked && !m_services.link.isDown()) {
        m_isCapacityAsked = true;
        m_services.jobs.post([this] {
            const auto info = m_server.capacity();
            const std::lock_guard guard(m_mutex);
            if (info)
                m_capacity = *info;
            m_capacityReadAt = steady_clock::now();
            m_isCapacityAsked = false;
        });
    }
    return m_capacity;
}

void SmbFileSystem::flushAll() {
    for (const File& file : m_files.all())
        (void) file->flush();
}

} // namespace harbrix
