#include "diskutil/Unmounter.h"

#include "base/UniqueDescriptor.h"
#include "common/MountClaim.h"
#include "common/Unmount.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <future>
#include <memory>
#include <thread>

extern "C" {
#include <sys/pidfd.h>
}

namespace harbrix {

namespace {

using namespace std::chrono_literals;

constexpr auto detachLimit = 1200ms;
// Time for a daemon to send what was written to files that are still open, before it is killed.
constexpr auto daemonGoesBy = 1600ms;
constexpr auto daemonGoesAfterKill = 200ms;

using TimePoint = std::chrono::steady_clock::time_point;

// A handle on the daemon that serves this mount, if it is one of ours.
UniqueDescriptor daemonOf(const MountEntry& entry) {
    const auto holder = MountClaim::holder(entry);
    if (!holder)
        return UniqueDescriptor();
    UniqueDescriptor daemon(::pidfd_open(*holder, 0));
    // Asked twice, so that the handle cannot be one on a later process of the same number.
    return MountClaim::holder(entry) == holder ? std::move(daemon) : UniqueDescriptor();
}

bool hasEnded(const UniqueDescriptor& process, TimePoint by) {
    const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(
        by - std::chrono::steady_clock::now());
    pollfd state{process.get(), POLLIN, 0};
    return ::poll(&state, 1, static_cast<int>(std::max(wait, 0ms).count())) > 0;
}

void endDaemon(const UniqueDescriptor& daemon, TimePoint by) {
    if (!daemon)
        return;
    // A stopped process takes only these two.
    (void) ::pidfd_send_signal(daemon.get(), SIGTERM, nullptr, 0);
    (void) ::pidfd_send_signal(daemon.get(), SIGCONT, nullptr, 0);
    if (hasEnded(daemon, by))
        return;
    (void) ::pidfd_send_signal(daemon.get(), SIGKILL, nullptr, 0);
    (void) hasEnded(daemon, std::chrono::steady_clock::now() + daemonGoesAfterKill);
}

// Wakes whoever waits for a daemon that is not ours, by the number of this very mount's connection.
void abortConnection(const MountEntry& entry) {
    if (!entry.isFuse())
        return;
    const std::string path =
        "/sys/fs/fuse/connections/" + std::to_string(entry.deviceMinor) + "/abort";
    const UniqueDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (file)
        (void) !::write(file.get(), "1", 1);
}

// For kernel mounts that fstab lets users end: umount(8) may do what umount2(2) may not.
bool runUmount(const std::string& mountPoint, DetachMode mode) {
    std::string path = mountPoint;
    char program[] = "umount";
    char lazy[] = "-l";
    char end[] = "--";
    char* const plainArguments[] = {program, end, path.data(), nullptr};
    char* const lazyArguments[] = {program, lazy, end, path.data(), nullptr};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
    pid_t child = 0;
    const int error =
        ::posix_spawnp(&child, program, &actions, nullptr,
                       mode == DetachMode::lazily ? lazyArguments : plainArguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    return error == 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

std::expected<void, int> detach(const MountEntry& entry, DetachMode mode) {
    auto detached = detachMount(entry, mode);
    if (!detached && detached.error() == EPERM && !entry.isFuse() &&
        runUmount(entry.mountPoint, mode))
        return {};
    return detached;
}

// The kernel may wait for a daemon or server that does not answer while it writes out data: bound
// it.
std::expected<void, int> detachInTime(const MountEntry& entry, DetachMode mode) {
    auto outcome = std::make_shared<std::promise<std::expected<void, int>>>();
    auto future = outcome->get_future();
    std::thread([outcome, entry, mode] { outcome->set_value(detach(entry, mode)); }).detach();
    if (future.wait_for(detachLimit) != std::future_status::ready)
        return std::unexpected(ETIMEDOUT);
    return future.get();
}

std::string explain(const MountEntry& entry, int error) {
    switch (error) {
    case EBUSY:
        return entry.mountPoint + " is busy: something on it is still in use";
    case EPERM:
        return entry.mountPoint + " is not yours to unmount";
    case ENOTSUP:
        return entry.mountPoint + ": fusermount3 needs /etc/mtab, which is missing here " +
               "(as root: ln -s ../proc/self/mounts /etc/mtab)";
    case ETIMEDOUT:
        return entry.mountPoint + " does not answer; try 'unmount force'";
    default:
        return entry.mountPoint + ": " + std::strerror(error);
    }
}

} // namespace

std::expected<void, std::string> unmount(const std::string& path, UnmountMode mode) {
    const TimePoint by = std::chrono::steady_clock::now() + daemonGoesBy;
    const MountTable table = MountTable::read();
    const auto canonical = canonicalMountPath(path, table);
    if (!canonical)
        return std::unexpected(path + ": " + std::strerror(errno));
    const MountEntry* entry = table.at(*canonical);
    if (!entry)
        return std::unexpected(*canonical + " is not a mount point");
    const UniqueDescriptor daemon = daemonOf(*entry);
    // Nobody can be using a mount whose daemon has died, but its table entry may be held.
    const bool isForced = mode == UnmountMode::force || (!daemon && isDeadMount(*entry));
    if (!isForced) {
        if (auto detached = detachInTime(*entry, DetachMode::whenIdle); !detached)
            return std::unexpected(explain(*entry, detached.error()));
        // It sees the end of its mount by itself.
        if (daemon && !hasEnded(daemon, by))
            endDaemon(daemon, by);
        return {};
    }
    const auto detached = detachInTime(*entry, DetachMode::lazily);
    if (!detached && detached.error() != EINVAL && detached.error() != ETIMEDOUT)
        return std::unexpected(explain(*entry, detached.error()));
    endDaemon(daemon, by);
    if (!daemon)
        abortConnection(*entry);
    return {};
}

} // namespace harbrix
