#include "mount_smbfs/SmbFileSystem.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace harbrix {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr mode_t permissions = S_IRWXU;
constexpr auto capacityFreshFor = 5s;

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
    const bool isAnswer = asked || asked.error() == ENOENT;
    if (isAnswer && m_folders.noteMiss(parent, steady_clock::now() - begin))
        listForLookUps(parent);
    return asked;
}

// In the background, one at a time and with the limit of a transfer: neither who asks for one name
// nor the other users of the connections shall feel that a folder is huge.
void SmbFileSystem::listForLookUps(Number folder) {
    if (m_services.link.laneCount() == 1 || m_isListing.exchange(true)) {
        m_folders.noteNoListing(folder);
        return;
    }
    m_services.jobs.post([this, folder] {
        const CallPlan plan{.kind = CallKind::transfer, .allowed = m_services.link.transferLanes()};
        const auto target = path(folder);
        auto listing = target ? m_server.list(*target, plan) : std::unexpected(target.error());
        if (listing)
            m_folders.store(folder, std::move(*listing));
        else
            m_folders.noteNoListing(folder);
        m_isListing = false;
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

void SmbFileSystem::noteContentChange(Number number) {
    if (const auto place = m_nodes.place(number))
        m_folders.noteChange(place->first, place->second);
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
    auto listing = m_server.list(*target, {.kind = CallKind::metadata});
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
