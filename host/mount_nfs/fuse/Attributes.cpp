#include "mount_nfs/fuse/FileSystem.h"

#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

// stat, chmod, utimes, access, statfs.
namespace harbrix::nfs {

namespace {

using namespace std::chrono_literals;
constexpr auto rootFreshness = 1s;

AttributeChange::TimeChange timeChange(const timespec& time, bool now) {
    if (now)
        return {};
    return {AttributeChange::TimeSource::Client,
            {time.tv_sec, static_cast<std::uint32_t>(time.tv_nsec)}};
}

AttributeChange changeOf(const struct stat& values, int which) {
    AttributeChange change;
    if (which & FUSE_SET_ATTR_SIZE)
        change.size = static_cast<std::uint64_t>(values.st_size);
    if (which & FUSE_SET_ATTR_MODE)
        change.mode = values.st_mode & 07777;
    if (which & FUSE_SET_ATTR_UID)
        change.owner = std::to_string(values.st_uid);
    if (which & FUSE_SET_ATTR_GID)
        change.ownerGroup = std::to_string(values.st_gid);
    if (which & (FUSE_SET_ATTR_ATIME | FUSE_SET_ATTR_ATIME_NOW))
        change.accessed = timeChange(values.st_atim, which & FUSE_SET_ATTR_ATIME_NOW);
    if (which & (FUSE_SET_ATTR_MTIME | FUSE_SET_ATTR_MTIME_NOW))
        change.modified = timeChange(values.st_mtim, which & FUSE_SET_ATTR_MTIME_NOW);
    return change;
}

} // namespace

void FileSystem::getAttributes(fuse_req_t request, fuse_ino_t number) {
    const auto inode = inodeOf(request, number);
    if (!inode)
        return;
    if (inode == m_root) {
        // Whoever looks at the mount point must never wait for the server.
        const struct stat values = statOf(*m_root, m_root->attributes, m_root->attributesAsked);
        refreshRoot();
        fuse_reply_attr(request, &values, 0.0);
        return;
    }
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    drained(inode, [this, pending, inode] {
        if (pending->isAnswered())
            return;
        pending->waitsFor(m_operations.getAttributes(m_callers.own(), inode->handle,
                                                     [this, pending, inode](Outcome<Node> node) {
                                                         if (!node)
                                                             return pending->fail(node.error());
                                                         replyAttributes(pending, inode, *node);
                                                     }));
    });
}

void FileSystem::refreshRoot() {
    if (m_rootRefreshing || Clock::now() - m_root->attributesAsked < rootFreshness)
        return;
    m_rootRefreshing = true;
    m_operations.getAttributes(m_callers.own(), m_root->handle, [this](Outcome<Node> node) {
        m_rootRefreshing = false;
        if (node)
            m_root->learn(node->attributes, node->asked);
    });
}

void FileSystem::setAttributes(fuse_req_t request, fuse_ino_t number, const struct stat& values,
                               int which, const fuse_file_info* info) {
    const auto inode = inodeOf(request, number);
    if (!inode)
        return;
    const Credentials who = m_callers.of(request);
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    std::shared_ptr<OpenState> state;
    if (info && (which & FUSE_SET_ATTR_SIZE)) {
        const auto file = m_files.find(info->fh);
        if (file != m_files.end() && (file->second->state->access & shareAccessWrite))
            state = file->second->state;
    }
    drained(inode, [this, pending, inode, who, state, change = changeOf(values, which)] {
        if (pending->isAnswered())
            return;
        pending->waitsFor(m_operations.setAttributes(
            who, inode->handle, state, change,
            [this, pending, inode, sizeIsSet = change.size.has_value()](Outcome<Node> node) {
                if (!node)
                    return pending->fail(node.error());
                if (sizeIsSet)
                    resized(*inode);
                replyAttributes(pending, inode, *node);
            }));
    });
}

void FileSystem::access(fuse_req_t request, fuse_ino_t number, int mask) {
    const auto inode = inodeOf(request, number);
    if (!inode)
        return;
    const bool isDirectory = inode->attributes.type == FileType::Directory;
    const std::uint32_t write = accessModify | accessExtend | (isDirectory ? accessDelete : 0);
    const std::uint32_t execute = isDirectory ? accessLookup : accessExecute;
    const std::uint32_t wanted =
        (mask & R_OK ? accessRead : 0) | (mask & W_OK ? write : 0) | (mask & X_OK ? execute : 0);
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    pending->waitsFor(m_operations.access(
        m_callers.of(request), inode->handle, wanted,
        [pending, mask, write, execute](Outcome<AccessRights> rights) {
            if (!rights)
                return pending->fail(rights.error());
            // Servers differ in which of the writing bits they grant for a file, so one is enough.
            const bool allowed = (!(mask & R_OK) || (rights->allowed & accessRead)) &&
                                 (!(mask & W_OK) || (rights->allowed & write)) &&
                                 (!(mask & X_OK) || (rights->allowed & execute));
            pending->fail(allowed ? 0 : EACCES);
        }));
}

void FileSystem::statistics(fuse_req_t request) {
    struct statvfs values {};
    values.f_bsize = 4096;
    values.f_frsize = 4096;
    values.f_blocks = m_statistics.spaceTotal / values.f_frsize;
    values.f_bfree = m_statistics.spaceFree / values.f_frsize;
    values.f_bavail = m_statistics.spaceAvail / values.f_frsize;
    values.f_files = m_statistics.filesTotal;
    values.f_ffree = m_statistics.filesFree;
    values.f_favail = m_statistics.filesAvail;
    values.f_namemax = m_statistics.maxName > 0 ? std::min(m_statistics.maxName, 255u) : 255;
    fuse_reply_statfs(request, &values);
    if (m_statisticsRefreshing || Clock::now() - m_statisticsAt < rootFreshness)
        return;
    m_statisticsRefreshing = true;
    m_operations.fileSystem(m_callers.own(), m_root->handle, [this](Outcome<Attributes> found) {
        m_statisticsRefreshing = false;
        if (!found)
            return;
        m_statistics = std::move(*found);
        m_statisticsAt = Clock::now();
    });
}

void FileSystem::readLink(fuse_req_t request, fuse_ino_t number) {
    const auto inode = inodeOf(request, number);
    if (!inode)
        return;
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    pending->waitsFor(m_operations.readLink(m_callers.of(request), inode->handle,
                                            [pending](Outcome<std::string> target) {
                                                if (!target)
                                                    return pending->fail(target.error());
                                                if (target->find('\0') != std::string::npos)
                                                    return pending->fail(EIO);
                                                if (fuse_req_t waiting = pending->claim())
                                                    fuse_reply_readlink(waiting, target->c_str());
                                            }));
}

} // namespace harbrix::nfs
