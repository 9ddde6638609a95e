#include "common/CommandLine.h"
#include "common/Daemon.h"
#include "common/InitAnswer.h"
#include "common/PasswordPrompt.h"
#include "common/Unmount.h"
#include "mount_smbfs/FuseOperations.h"
#include "mount_smbfs/MountArguments.h"
#include "mount_smbfs/RequestThreads.h"
#include "mount_smbfs/SmbLibrary.h"

#include <malloc.h>
#include <poll.h>

#include <cerrno>
#include <cstring>
#include <future>

using namespace harbrix;

namespace {

constexpr ProgramText programText{
    "mount_smbfs",
    "Usage: mount_smbfs [-N] [-o option[,option...]] //[user@]host[:port]/share[/folder] "
    "directory\n"
    "\n"
    "Mounts an SMB share on a directory, as an ordinary user or as root.\n"
    "\n"
    "  -N               do not ask for a password and send none\n"
    "  -o ro            mount read-only\n"
    "  -o port=NUMBER   the server's port (445)\n"
    "  --help           show this text\n"
    "  --version        show the version\n"
    "\n"
    "The user \"guest\", or none, logs in without a password. Blanks and the like in the\n"
    "share's name are percent-encoded. Unmount with diskutil(8) or fusermount3(1).\n"};

constexpr std::uint16_t smbPort = 445;
constexpr unsigned laneCount = 4;
constexpr std::size_t bufferBlocks = 32;
// Whoever runs the tool may wait for half a minute; the message should come before that.
constexpr std::chrono::seconds connectLimit(20);
// diskutil(8) waits a little longer before it kills.
constexpr std::chrono::milliseconds flushAtEnd(1200);

std::string connectError(int error, const ShareAddress& share) {
    const std::string host = share.hostAndPort();
    switch (error) {
    case EACCES:
    case EPERM:
        return share.isGuest()
                   ? "Authentication error: " + host + " does not let a guest use " + share.share
                   : "Authentication error: " + host + " refused the user " + share.user +
                         " or the password";
    case ENOENT:
    case ENODEV:
        return "there is no share '" + share.share + "' on " + host +
               (share.folder.empty() ? "" : ", or no folder '" + share.folder + "' in it");
    case ENOTDIR:
        return share.folder + " on " + host + " is not a folder";
    case ECONNREFUSED:
        return host + " refuses SMB connections";
    case ETIMEDOUT:
        return host + " does not answer";
    case ECONNABORTED:
    case ECONNRESET:
    case EPIPE:
        return host + " closed the connection, perhaps for want of SMB 2";
    default:
        return host + ": " + std::strerror(error);
    }
}

// The resolver keeps to limits of its own, which are too long for us.
std::expected<std::vector<std::string>, std::string> resolve(const std::string& host,
                                                             Deadline deadline) {
    auto answer =
        std::make_shared<std::promise<std::expected<std::vector<std::string>, std::string>>>();
    auto future = answer->get_future();
    std::thread([answer, host] { answer->set_value(numericAddresses(host)); }).detach();
    if (future.wait_until(deadline) != std::future_status::ready)
        return std::unexpected("the name " + host + " could not be looked up in time");
    return future.get();
}

// Everything a live mount consists of. It is never destroyed: the process ends with it, and its
// threads may be waiting for a server that does not answer.
class SmbMount {
public:
    SmbMount(MountArguments arguments, SmbLogin login, unsigned lanes)
        : m_arguments(std::move(arguments)), m_login(std::move(login)),
          m_link(m_login, m_arguments.share.host, lanes, m_watchdog),
          m_jobs(std::max(1U, lanes - 1)), m_buffers(bufferBlocks, m_watchdog),
          m_fileSystem({m_link, m_jobs, m_buffers, m_watchdog}, m_arguments.access),
          m_context{m_fileSystem, {}} {}

    std::expected<void, std::string> connect() {
        const Deadline deadline = std::chrono::steady_clock::now() + connectLimit;
        const auto addresses = resolve(m_arguments.share.host, deadline);
        if (!addresses)
            return std::unexpected(addresses.error());
        Outcome<void> connected = std::unexpected(EHOSTUNREACH);
        for (const std::string& address : *addresses) {
            connected = m_link.connectFirst(address, deadline);
            const bool isFinal = connected || connected.error() == EACCES ||
                                 connected.error() == ENOENT ||
                                 std::chrono::steady_clock::now() >= deadline;
            if (isFinal)
                break;
        }
        if (connected)
            connected = m_fileSystem.prepare();
        if (!connected)
            return std::unexpected(connectError(connected.error(), m_arguments.share));
        return {};
    }

    std::expected<void, std::string> mount(const std::string& mountPoint) {
        const FuseMount description{.mountPoint = mountPoint,
                                    .fsName = m_arguments.share.displayName(),
                                    .subtype = "smbfs",
                                    .access = m_arguments.access,
                                    .options = {"default_permissions"}};
        auto session = FuseSession::mount(description, smbFuseOperations(), &m_context);
        if (!session)
            return std::unexpected(session.error());
        m_session = std::move(*session);
        m_context.abilities.canMapDirect =
            answerInit(m_session->handle(), KernelAbility::mapDirectFiles) != 0;
        m_threads.emplace(*m_session);
        m_threads->start();
        return {};
    }

    void serveUntilTheEnd() {
        pollfd events[2] = {{m_session->endSignalFd(), POLLIN, 0},
                            {m_threads->goneFd(), POLLIN, 0}};
        while (::poll(events, 2, -1) < 0 && errno == EINTR)
            ;
        end();
    }

    void end() {
        auto flushed = std::async(std::launch::async, [this] { m_fileSystem.flushAll(); });
        (void) flushed.wait_for(flushAtEnd);
        m_session->unmount();
        // Not exit(): threads may be inside the library.
        m_session->giveBackClaim();
        ::_exit(ExitCode::success);
    }

private:
    MountArguments m_arguments;
    SmbLogin m_login;
    Watchdog m_watchdog;
    ServerLink m_link;
    JobQueue m_jobs;
    BufferPool m_buffers;
    SmbFileSystem m_fileSystem;
    FuseContext m_context;
    std::unique_ptr<FuseSession> m_session;
    std::optional<RequestThreads> m_threads;
};

std::expected<SmbLogin, std::string> makeLogin(const MountArguments& arguments) {
    const ShareAddress& share = arguments.share;
    SmbLogin login;
    login.domain = share.domain;
    login.port = share.port.value_or(smbPort);
    login.share = share.share;
    login.folder = share.folder;
    login.isGuest = share.isGuest() || arguments.password == PasswordSource::none;
    login.user = share.user.empty() ? "guest" : share.user;
    if (!login.isGuest) {
        auto password = readPassword("Password for " + share.hostAndPort() + ": ");
        if (!password)
            return std::unexpected(password.error());
        login.password = std::move(*password);
    }
    return login;
}

int run(MountArguments arguments) {
    forbidMemoryDumps();
    const auto mountPoint = prepareMountPoint(arguments.mountPoint);
    if (!mountPoint)
        return failureError(programText, mountPoint.error());
    auto login = makeLogin(arguments);
    if (!login)
        return failureError(programText, login.error());

    Daemon daemon = Daemon::detach(programText.name);
    blockEndSignals();
    ::mallopt(M_ARENA_MAX, 2);
    const unsigned lanes = prepareSmbLibrary() ? laneCount : 1;
    auto* mount = new SmbMount(std::move(arguments), std::move(*login), lanes);
    if (auto connected = mount->connect(); !connected)
        daemon.fail(connected.error(), ExitCode::failure);
    if (auto mounted = mount->mount(*mountPoint); !mounted)
        daemon.fail(mounted.error(), ExitCode::failure);
    if (!daemon.ready())
        mount->end();
    mount->serveUntilTheEnd();
    return ExitCode::success;
}

} // namespace

int main(int argc, char** argv) {
    if (const auto code = answerStandardOptions(programText, argc, argv))
        return *code;
    auto arguments = MountArguments::parse({argv + 1, argv + argc});
    if (!arguments)
        return usageError(programText, arguments.error());
    return run(std::move(*arguments));
}
