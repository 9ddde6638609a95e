#include "mount_nfs/fuse/FileSystem.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

// Byte-range locks of fcntl(2). The kernel has resolved whence and the process already.
namespace harbrix::nfs {

namespace {

using namespace std::chrono_literals;
constexpr Duration firstPause = 100ms;
constexpr Duration longestPause = 1s;

ByteRange rangeOf(const struct flock& lock) {
    const auto start = static_cast<std::uint64_t>(lock.l_start);
    return {start, lock.l_len == 0 ? ~std::uint64_t{0} : static_cast<std::uint64_t>(lock.l_len)};
}

LockType typeOf(const struct flock& lock) {
    return lock.l_type == F_RDLCK ? LockType::Read : LockType::Write;
}

} // namespace

void FileSystem::testLock(fuse_req_t request, std::uint64_t handle, std::uint64_t owner,
                          struct flock lock) {
    const auto found = m_files.find(handle);
    if (found == m_files.end() || found->second->state->anonymous) {
        fuse_reply_err(request, found == m_files.end() ? EBADF : ENOLCK);
        return;
    }
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    const auto known = found->second->lockOwners.find(owner);
    const std::uint64_t number = known != found->second->lockOwners.end()
                                     ? known->second
                                     : m_operations.session().newOwner();
    pending->waitsFor(m_operations.testLock(
        found->second->state, number, typeOf(lock), rangeOf(lock),
        [pending, lock](Outcome<std::optional<CompoundReader::Denied>> holder) mutable {
            if (!holder)
                return pending->fail(holder.error());
            lock.l_whence = SEEK_SET;
            lock.l_pid = 0;
            if (!*holder) {
                lock.l_type = F_UNLCK;
            } else {
                lock.l_type = (*holder)->type == LockType::Read ? F_RDLCK : F_WRLCK;
                lock.l_start = static_cast<off_t>((*holder)->range.offset);
                const std::uint64_t length = (*holder)->range.length;
                lock.l_len = length > INT64_MAX ? 0 : static_cast<off_t>(length);
            }
            if (fuse_req_t waiting = pending->claim())
                fuse_reply_lock(waiting, &lock);
        }));
}

void FileSystem::setLock(fuse_req_t request, std::uint64_t handle, std::uint64_t owner,
                         struct flock lock, bool wait) {
    const auto found = m_files.find(handle);
    if (found == m_files.end()) {
        fuse_reply_err(request, EBADF);
        return;
    }
    const auto file = found->second;
    if (file->state->anonymous) {
        // Saying "not implemented" would make the kernel keep locks to itself without a word.
        fuse_reply_err(request, ENOLCK);
        return;
    }
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    auto& number = file->lockOwners[owner];
    if (number == 0)
        number = m_operations.session().newOwner();
    if (lock.l_type != F_UNLCK)
        return tryLock(pending, file, number, lock, wait, firstPause);
    if (!file->state->locks.contains(number))
        return pending->succeed();
    // What was written under the lock must be at the server before somebody else gets it.
    const auto unlock = [this, pending, file, number, lock](Status) {
        m_operations.unlock(file->state, number, rangeOf(lock), [pending](Outcome<void> outcome) {
            pending->fail(outcome ? Status::Ok : outcome.error());
        });
    };
    if (file->inode->writes)
        file->inode->writes->drain(unlock);
    else
        unlock(Status::Ok);
}

void FileSystem::tryLock(const Pending& pending, const std::shared_ptr<OpenFile>& file,
                         std::uint64_t owner, struct flock lock, bool wait, Duration pause) {
    if (pending->isAnswered())
        return;
    pending->waitsFor(m_operations.lock(
        file->state, owner, typeOf(lock), rangeOf(lock),
        [this, pending, file, owner, lock, wait, pause](Outcome<void> outcome) {
            if (outcome) {
                // Others may have written until now: what is cached here is not the truth any more.
                ++file->inode->contentVersion;
                file->inode->cachedChange = 0;
                return pending->succeed();
            }
            if (outcome.error() != Status::Denied || !wait)
                return pending->fail(outcome.error());
            m_loop.after(pause, [this, pending, file, owner, lock, wait, pause] {
                tryLock(pending, file, owner, lock, wait, std::min(2 * pause, longestPause));
            });
        }));
}

void FileSystem::dropLocks(const std::shared_ptr<OpenFile>& file, std::uint64_t owner,
                           std::function<void()> then) {
    const auto known = file->lockOwners.find(owner);
    const std::uint64_t number = known == file->lockOwners.end() ? 0 : known->second;
    const auto held = file->state->locks.find(number);
    if (held == file->state->locks.end() || held->second.held.empty() || file->state->lost)
        return then();
    m_operations.unlock(file->state, number, {0, ~std::uint64_t{0}},
                        [then = std::move(then)](const Outcome<void>&) { then(); });
}

} // namespace harbrix::nfs
