#include "common/CommandLine.h"
#include "common/Daemon.h"
#include "common/FuseSession.h"
#include "common/InitAnswer.h"
#include "common/MountTable.h"
#include "common/Unmount.h"
#include "mount_nfs/fuse/FileSystem.h"
#include "mount_nfs/program/Connection.h"
#include "mount_nfs/program/KernelClient.h"
#include "mount_nfs/program/Options.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>

using namespace harbrix;
using namespace harbrix::nfs;

namespace {

using namespace std::chrono_literals;

constexpr ProgramText program{
    "mount_nfs", "Usage: mount_nfs [-o OPTION[,OPTION]...] HOST:/PATH FOLDER\n"
                 "Mount an NFSv4 export at FOLDER, without root through FUSE.\n"
                 "\n"
                 "  -o vers=4|4.0|4.1   the version of NFS (4: the best that the server has)\n"
                 "  -o ro               read only\n"
                 "  -o port=N           the server's port, 2049 by default\n"
                 "  -o [no]resvport     whether to connect from a port below 1024\n"
                 "  -o rsize=N, wsize=N bytes in one READ or WRITE, at most 1048576\n"
                 "  -o memory=N         MiB of data on its way at most, 64 by default\n"
                 "  -o sync             each write waits until the server has it on its disk\n"
                 "  -o own              show all files as owned by the mounting user\n"
                 "  -o allow_other      let other users in, too\n"
                 "  -o client=own       not the kernel's NFS client, even as root\n"
                 "      --help          show this text\n"
                 "      --version       show the version\n"
                 "\n"
                 "tcp, noexec, noatime and the like are accepted as mount(8) knows them.\n"
                 "diskutil unmount FOLDER, or fusermount3 -u FOLDER, ends the mount.\n"
                 "Exit status: 0 mounted, 1 failed, 64 wrong usage.\n"};

constexpr Duration spin = 200us;
constexpr Duration farewellLimit = 5s;
constexpr Duration silentFarewellLimit = 1s;

/// The largest block of data that fits a message together with its headers.
std::uint32_t blockSize(std::uint32_t wanted, std::uint64_t offered, std::uint32_t message) {
    constexpr std::uint32_t headers = 1024;
    std::uint64_t size = std::min<std::uint64_t>(wanted, message - headers);
    if (offered > 0)
        size = std::min(size, offered);
    return std::max<std::uint32_t>(static_cast<std::uint32_t>(size) & ~4095u, 4096);
}

/// Who called this tool through sudo(8). Nothing for anybody else.
std::optional<uid_t> sudoCaller() {
    const char* text = getuid() == 0 ? std::getenv("SUDO_UID") : nullptr;
    if (!text)
        return std::nullopt;
    uid_t caller = 0;
    const char* end = text + std::strlen(text);
    const bool isNumber = std::from_chars(text, end, caller).ptr == end && *text != '\0';
    return isNumber ? std::optional(caller) : std::nullopt;
}

/// A mount that root makes for the caller of sudo is entered under that user's number, so that the
/// user may end it with fusermount3(1): libfuse takes the number from the real user id.
std::expected<std::unique_ptr<FuseSession>, std::string> mountForCaller(const FuseMount& mount,
                                                                        FileSystem& files) {
    const auto caller = sudoCaller();
    if (caller && setresuid(*caller, 0, 0) != 0)
        return std::unexpected(std::string("setresuid: ") + std::strerror(errno));
    auto fuse = FuseSession::mount(mount, FileSystem::operations(), &files);
    if (caller && setresuid(0, 0, 0) != 0)
        return std::unexpected(std::string("setresuid: ") + std::strerror(errno));
    return fuse;
}

/// Gives everything back to the server, within a limit.
void sayFarewell(EventLoop& loop, FileSystem& files, Session& session) {
    bool done = false;
    loop.after(session.isStalled() ? silentFarewellLimit : farewellLimit, [&] { done = true; });
    files.finish([&] { session.shutDown(silentFarewellLimit, [&] { done = true; }); });
    loop.runUntil([&] { return done; });
}

void serve(EventLoop& loop, FuseSession& fuse) {
    bool ended = false;
    fuse_buf buffer{};
    fcntl(fuse.fd(), F_SETFL, fcntl(fuse.fd(), F_GETFL) | O_NONBLOCK);
    loop.watch(fuse.fd(), EPOLLIN, [&](std::uint32_t) { ended = ended || !fuse.serveOne(buffer); });
    loop.watch(fuse.endSignalFd(), EPOLLIN, [&](std::uint32_t) {
        fuse.unmount();
        ended = true;
    });
    loop.setSpin(spin);
    loop.runUntil([&] { return ended; });
    loop.setSpin(Duration::zero());
    loop.forget(fuse.fd());
    loop.forget(fuse.endSignalFd());
    std::free(buffer.mem);
}

int mountThroughFuse(const Options& options) {
    const auto mountPoint = prepareMountPoint(options.mountPoint);
    if (!mountPoint)
        return failureError(program, mountPoint.error());
    Daemon daemon = Daemon::detach(program.name);
    blockEndSignals(); // before the first thread, that of the resolver

    Callers callers;
    EventLoop loop;
    BufferPool pool(options.memory);
    auto connection = connectTo(loop, pool, options, callers.own());
    if (!connection)
        daemon.fail(connection.error(), ExitCode::failure);
    Session& session = *connection->session;
    FileSystem::Settings settings;
    settings.readSize =
        blockSize(options.readSize, connection->statistics.maxRead, session.maximumResponse());
    settings.writeSize =
        blockSize(options.writeSize, connection->statistics.maxWrite, session.maximumRequest());
    settings.writes = options.synchronous ? WriteMode::Through : WriteMode::Behind;
    settings.ownership = options.ownFiles ? Ownership::Own : Ownership::AsTold;
    FileSystem files(loop, pool, *connection->operations, settings, connection->root,
                     connection->statistics);

    FuseMount mount;
    mount.mountPoint = *mountPoint;
    mount.fsName = options.remote.source;
    mount.subtype = "nfs";
    mount.access = options.readOnly ? MountAccess::readOnly : MountAccess::readWrite;
    mount.options = options.mountFlags;
    // Root mounts for the user who called it through sudo, too.
    if (callers.servesOthers() || options.allowOther)
        mount.options.emplace_back("allow_other");
    auto fuse = mountForCaller(mount, files);
    if (!fuse)
        daemon.fail(fuse.error(), ExitCode::failure);
    if (answerInit((*fuse)->handle(), KernelAbility::mapDirectFiles) != 0)
        files.setLargeFiles(LargeFiles::Direct);
    if (!daemon.ready()) // nobody waits for this mount any more
        (*fuse)->unmount();
    serve(loop, **fuse);
    sayFarewell(loop, files, session);
    return ExitCode::success;
}

} // namespace

int main(int argc, char** argv) {
    if (const auto code = answerStandardOptions(program, argc, argv))
        return *code;
    const auto options = parseOptions({argv + 1, argv + argc});
    if (!options)
        return usageError(program, options.error());
    if (const KernelClient kernel; !options->ownClient && kernel.isAvailable(geteuid())) {
        // A dead mount of ours may stand in the way.
        if (const auto ready = prepareMountPoint(options->mountPoint); !ready)
            return failureError(program, ready.error());
        const auto error = kernel.mount(*options);
        return error ? failureError(program, *error) : ExitCode::success;
    }
    return mountThroughFuse(*options);
}
