#include "mount_nfs/fuse/FileSystem.h"

#include <fcntl.h>
#include <sys/uio.h>

#include <cerrno>
#include <utility>
#include <vector>

// Open files: create, read, write, flush, close.
namespace harbrix::nfs {

namespace {

/// Files up to this size are fetched together with OPEN: for a small file that saves a round trip.
constexpr std::uint64_t smallFile = 128 * 1024;
constexpr std::uint64_t largeFile = 16 << 20;

/// The kernel's mark of execve(2), __FMODE_EXEC in its include/linux/fs.h.
constexpr int openToExecute = 0x20;

std::uint32_t shareAccess(int flags) {
    switch (flags & O_ACCMODE) {
    case O_WRONLY:
        return shareAccessWrite;
    case O_RDWR:
        return shareAccessRead | shareAccessWrite;
    default:
        return shareAccessRead;
    }
}

} // namespace

void FileSystem::open(fuse_req_t request, fuse_ino_t number, const fuse_file_info& info) {
    const auto inode = inodeOf(request, number);
    if (!inode)
        return;
    const Credentials who = m_callers.of(request);
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    drained(inode, [this, pending, inode, who, info] {
        if (!pending->isAnswered())
            openDrained(pending, inode, who, info);
    });
}

void FileSystem::openDrained(const Pending& pending, const std::shared_ptr<Inode>& inode,
                             const Credentials& who, const fuse_file_info& info) {
    const bool truncate = info.flags & O_TRUNC;
    const bool readOnly = (info.flags & O_ACCMODE) == O_RDONLY;
    const std::uint64_t size = inode->attributes.size;
    const bool small = size <= smallFile && size <= m_settings.readSize;
    const auto start = small && readOnly && !truncate ? static_cast<std::uint32_t>(size) : 0;
    const auto purpose =
        info.flags & openToExecute ? Operations::Purpose::Execute : Operations::Purpose::Use;
    const auto cut = truncate ? Operations::Truncate::Yes : Operations::Truncate::No;
    auto then = [this, pending, inode, info, truncate](Outcome<OpenedFile> file) {
        if (!file)
            return pending->fail(file.error());
        if (truncate)
            resized(*inode);
        inode->learn(file->node.attributes, file->node.asked);
        opened(pending, inode, std::move(*file), info, nullptr);
    };
    pending->waitsFor(m_operations.open(who, inode->handle, shareAccess(info.flags), purpose, cut,
                                        start, std::move(then)));
}

void FileSystem::createFile(fuse_req_t request, fuse_ino_t parent, std::string name, mode_t mode,
                            const fuse_file_info& info) {
    const auto directory = inodeOf(request, parent);
    if (!directory)
        return;
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (!nameFits(pending, name))
        return;
    AttributeChange attributes;
    attributes.mode = mode & 07777;
    if (info.flags & O_TRUNC)
        attributes.size = 0;
    pending->waitsFor(m_operations.createFile(
        m_callers.of(request), directory->handle, std::move(name), shareAccess(info.flags),
        info.flags & O_EXCL ? CreateMode::Guarded : CreateMode::Unchecked, std::move(attributes),
        [this, pending, directory, info](Outcome<std::pair<OpenedFile, Attributes>> created) {
            if (!created)
                return pending->fail(created.error());
            auto& [file, after] = *created;
            directory->learn(after, file.node.asked);
            std::shared_ptr<Inode> inode;
            const fuse_entry_param entry = entryOf(file.node, inode);
            if (!pending->isAnswered())
                ++inode->lookups;
            opened(pending, inode, std::move(file), info, &entry);
        }));
}

void FileSystem::makeFile(fuse_req_t request, fuse_ino_t parent, std::string name, mode_t mode) {
    const auto directory = inodeOf(request, parent);
    if (!directory)
        return;
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (!nameFits(pending, name))
        return;
    AttributeChange attributes;
    attributes.mode = mode & 07777;
    pending->waitsFor(m_operations.createFile(
        m_callers.of(request), directory->handle, std::move(name), shareAccessWrite,
        CreateMode::Guarded, std::move(attributes),
        [this, pending, directory](Outcome<std::pair<OpenedFile, Attributes>> created) {
            if (!created)
                return pending->fail(created.error());
            directory->learn(created->second, created->first.node.asked);
            m_operations.close(created->first.state);
            replyEntry(pending, created->first.node);
        }));
}

void FileSystem::opened(const Pending& pending, const std::shared_ptr<Inode>& inode,
                        OpenedFile file, fuse_file_info info, const fuse_entry_param* entry) {
    fuse_req_t request = pending->claim();
    if (!request) {
        m_operations.close(file.state);
        return;
    }
    auto open = std::make_shared<OpenFile>();
    open->inode = inode;
    open->state = file.state;
    open->reads =
        std::make_shared<ReadAhead>(m_operations, m_pool, inode, file.state, m_settings.readSize);
    open->synchronous = info.flags & (O_SYNC | O_DSYNC);
    if (file.start)
        open->reads->seed(std::move(*file.start));
    // The kernel's pages are good while the file is as it was when they were read.
    const std::uint64_t change = file.node.attributes.change;
    const bool unwritten = !inode->writes || inode->writes->isIdle();
    info.keep_cache = inode->cachedChange != 0 && inode->cachedChange == change;
    if (unwritten)
        inode->cachedChange = change;
    // Through a handle for writing only nothing is read or mapped: pages would be a copy for
    // nobody.
    const int access = info.flags & O_ACCMODE;
    const bool large = file.node.attributes.size >= largeFile;
    info.direct_io =
        m_largeFiles == LargeFiles::Direct && (access == O_WRONLY || (large && access == O_RDONLY));
    info.fh = m_nextHandle++;
    ++inode->opens;
    m_files[info.fh] = open;
    const int failure =
        entry ? fuse_reply_create(request, entry, &info) : fuse_reply_open(request, &info);
    if (failure != 0) { // the caller was interrupted: the kernel will not release what it never got
        if (entry)
            m_inodes.forget(inode->number, 1);
        m_files.erase(info.fh);
        closeFile(open);
    }
}

void FileSystem::read(fuse_req_t request, std::uint64_t handle, std::size_t size, off_t offset) {
    const auto found = m_files.find(handle);
    if (found == m_files.end()) {
        fuse_reply_err(request, EBADF);
        return;
    }
    const auto file = found->second;
    const Pending pending = m_requests.add(request, CallKind::Data);
    drained(file->inode, [pending, file, size, offset] {
        if (pending->isAnswered())
            return;
        file->reads->read(
            static_cast<std::uint64_t>(offset), static_cast<std::uint32_t>(size),
            [pending](Outcome<std::vector<Slice>> slices) {
                if (!slices)
                    return pending->fail(
                        slices.error() == Status::LocalTimedOut ? EIO : errnoOf(slices.error()));
                std::vector<iovec> parts;
                for (const Slice& slice : *slices)
                    parts.push_back(
                        {const_cast<std::uint8_t*>(slice.bytes.data()), slice.bytes.size()});
                if (fuse_req_t waiting = pending->claim())
                    fuse_reply_iov(waiting, parts.data(), static_cast<int>(parts.size()));
            });
    });
}

void FileSystem::write(fuse_req_t request, std::uint64_t handle, Bytes data, off_t offset) {
    const auto found = m_files.find(handle);
    if (found == m_files.end()) {
        fuse_reply_err(request, EBADF);
        return;
    }
    const auto file = found->second;
    auto& writes = file->inode->writes;
    if (!writes)
        writes = std::make_shared<WriteBehind>(m_operations, m_pool, m_settings.writeSize);
    const bool through =
        m_settings.writes == WriteMode::Through || file->synchronous || writes->hasFailed();
    const bool room = m_roomWaiters.empty() && m_pool.room(data.size());
    if (!through && room) {
        ++file->inode->contentVersion;
        file->inode->cachedChange = 0;
        writes->write(file->state, static_cast<std::uint64_t>(offset), data);
        fuse_reply_write(request, data.size());
        return;
    }
    const Pending pending = m_requests.add(request, CallKind::Data);
    // The kernel's buffer is used again at once, so what waits needs a copy.
    std::vector<std::uint8_t> copy(data.begin(), data.end());
    waitForRoom([this, pending, file, through, offset, copy = std::move(copy)] {
        if (pending->isAnswered())
            return true;
        auto& queue = file->inode->writes;
        if (!m_pool.room(copy.size()) && m_pool.used() > copy.size())
            return false;
        ++file->inode->contentVersion;
        file->inode->cachedChange = 0;
        queue->write(file->state, static_cast<std::uint64_t>(offset), copy);
        const auto answer = [pending, size = copy.size()](Status status) {
            if (status != Status::Ok)
                return pending->fail(status);
            if (fuse_req_t waiting = pending->claim())
                fuse_reply_write(waiting, size);
        };
        if (through)
            queue->flush(answer);
        else
            answer(Status::Ok);
        return true;
    });
}

void FileSystem::synchronise(fuse_req_t request, std::uint64_t handle) {
    const auto found = m_files.find(handle);
    const auto writes = found == m_files.end() ? nullptr : found->second->inode->writes;
    if (!writes || (writes->isIdle() && !writes->hasFailed())) {
        fuse_reply_err(request, 0);
        return;
    }
    const Pending pending = m_requests.add(request, CallKind::Data);
    writes->flush([pending](Status status) {
        pending->fail(status == Status::LocalTimedOut ? EIO : errnoOf(status));
    });
}

void FileSystem::flush(fuse_req_t request, std::uint64_t handle, std::uint64_t lockOwner) {
    const auto found = m_files.find(handle);
    if (found == m_files.end() || !found->second->lockOwners.contains(lockOwner))
        return synchronise(request, handle);
    // close(2) drops the caller's locks, but not before its data is where the next holder looks for
    // it.
    const auto file = found->second;
    const Pending pending = m_requests.add(request, CallKind::Data);
    const auto unlock = [this, pending, file, lockOwner](Status status) {
        dropLocks(file, lockOwner, [pending, status] { pending->fail(status); });
    };
    if (file->inode->writes)
        file->inode->writes->flush(unlock);
    else
        unlock(Status::Ok);
}

void FileSystem::release(fuse_req_t request, std::uint64_t handle) {
    const auto node = m_files.extract(handle);
    if (!node.empty())
        closeFile(node.mapped());
    fuse_reply_err(request, 0);
}

void FileSystem::closeFile(const std::shared_ptr<OpenFile>& file) {
    const auto inode = file->inode;
    if (--inode->opens == 0 && inode->hidden) {
        if (inode->writes)
            inode->writes->discard();
        removeHidden(inode);
    }
    ++m_closing;
    const auto closed = [this, file, inode](Status) {
        m_operations.close(file->state);
        m_inodes.release(inode);
        if (--m_closing == 0 && m_finished)
            std::exchange(m_finished, nullptr)();
    };
    if (inode->writes && !inode->writes->isIdle())
        inode->writes->flush(closed);
    else
        closed(Status::Ok);
}

} // namespace harbrix::nfs
