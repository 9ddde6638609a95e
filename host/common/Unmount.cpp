#include "common/Unmount.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace harbrix {

namespace {

// Runs fusermount3 quietly; its messages are worded for its own options. Returns whether it exited
// with 0.
bool runFusermount(const MountEntry& entry, DetachMode mode) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
    std::string path = entry.mountPoint;
    char program[] = "fusermount3";
    char unmount[] = "-u";
    char lazy[] = "-z";
    char end[] = "--";
    char* const busyArguments[] = {program, unmount, end, path.data(), nullptr};
    char* const lazyArguments[] = {program, unmount, lazy, end, path.data(), nullptr};
    pid_t child = 0;
    const int error =
        ::posix_spawnp(&child, program, &actions, nullptr,
                       mode == DetachMode::lazily ? lazyArguments : busyArguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return false;
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR)
        ;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::size_t mountsAt(const std::string& path) {
    std::size_t count = 0;
    const MountTable table = MountTable::read();
    for (const MountEntry& entry : table.entries())
        count += entry.mountPoint == path ? 1 : 0;
    return count;
}

} // namespace

std::expected<void, int> detachMount(const MountEntry& entry, DetachMode mode) {
    const int flags = UMOUNT_NOFOLLOW | (mode == DetachMode::lazily ? MNT_DETACH : 0);
    if (::umount2(entry.mountPoint.c_str(), flags) == 0)
        return {};
    const int error = errno;
    if (error != EPERM || !entry.isFuse())
        return std::unexpected(error);
    const std::size_t before = mountsAt(entry.mountPoint);
    if (runFusermount(entry, mode) || mountsAt(entry.mountPoint) < before)
        return {};
    // fusermount3 tells only by text why it refused. Without this file it refuses everything; else
    // ownership is the one reason other than a busy mount.
    if (::access("/etc/mtab", F_OK) != 0)
        return std::unexpected(ENOTSUP);
    const auto owner = entry.fuseOwner();
    return std::unexpected(owner && *owner != ::getuid() ? EPERM : EBUSY);
}

bool isDeadMount(const MountEntry& entry) {
    struct statx info {};
    return entry.isFuse() &&
           ::statx(AT_FDCWD, entry.mountPoint.c_str(), AT_NO_AUTOMOUNT | AT_STATX_FORCE_SYNC,
                   STATX_MODE, &info) != 0 &&
           errno == ENOTCONN;
}

std::expected<std::string, std::string> prepareMountPoint(const std::string& path) {
    for (;;) {
        const MountTable table = MountTable::read();
        const auto canonical = canonicalMountPath(path, table);
        if (!canonical)
            return std::unexpected(path + ": " + std::strerror(errno));
        const MountEntry* entry = table.at(*canonical);
        if (!entry) {
            struct stat info {};
            if (::stat(canonical->c_str(), &info) != 0)
                return std::unexpected(path + ": " + std::strerror(errno));
            if (!S_ISDIR(info.st_mode))
                return std::unexpected(path + ": " + std::strerror(ENOTDIR));
            return *canonical;
        }
        if (!isDeadMount(*entry))
            return std::unexpected(path + ": " + entry->source + " is already mounted here");
        if (const auto detached = detachMount(*entry, DetachMode::lazily); !detached)
            return std::unexpected(path + ": a dead mount of " + entry->source +
                                   " cannot be cleared: " + std::strerror(detached.error()));
    }
}

} // namespace harbrix
