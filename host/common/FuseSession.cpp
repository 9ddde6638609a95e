#include "common/FuseSession.h"

#include "common/FuseMountHelper.h"
#include "common/Unmount.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace harbrix {

namespace {

// A comma or backslash in a value would end it, or worse, begin another option.
std::string escaped(std::string_view value) {
    std::string text;
    for (char c : value) {
        if (c == ',' || c == '\\')
            text += '\\';
        text += c;
    }
    return text;
}

std::string optionText(const FuseMount& mount) {
    std::string text =
        "fsname=" + escaped(mount.fsName) + ",subtype=" + escaped(mount.subtype) + ",nosuid,nodev";
    if (mount.access == MountAccess::readOnly)
        text += ",ro";
    for (const std::string& option : mount.options)
        text += "," + escaped(option);
    return text;
}

// libfuse tells why something failed only through its log.
thread_local std::string lastLogLine;

void keepLogLine(fuse_log_level, const char* format, va_list arguments) {
    char line[512];
    std::vsnprintf(line, sizeof line, format, arguments);
    lastLogLine = line;
    while (lastLogLine.ends_with('\n'))
        lastLogLine.pop_back();
}

std::string withReason(std::string text) {
    if (!lastLogLine.empty())
        text += " (" + lastLogLine + ")";
    return text;
}

sigset_t endSignals() {
    sigset_t signals;
    ::sigemptyset(&signals);
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaddset(&signals, signal);
    return signals;
}

} // namespace

void blockEndSignals() {
    const sigset_t signals = endSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

std::expected<std::unique_ptr<FuseSession>, std::string>
FuseSession::mount(const FuseMount& mount, const fuse_lowlevel_ops& operations, void* userData) {
    fuse_set_log_func(keepLogLine);
    std::unique_ptr<FuseSession> session(new FuseSession);
    blockEndSignals();
    const sigset_t signals = endSignals();
    session->m_endSignals.reset(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    std::string program = mount.subtype;
    std::string dashO = "-o";
    std::string options = optionText(mount);
    char* argv[] = {program.data(), dashO.data(), options.data(), nullptr};
    fuse_args arguments = FUSE_ARGS_INIT(3, argv);
    session->m_session = fuse_session_new(&arguments, &operations, sizeof operations, userData);
    fuse_opt_free_args(&arguments);
    if (!session->m_session)
        return std::unexpected(withReason("the FUSE session cannot be set up"));
    if (auto mounted = session->attach(mount.mountPoint, options); !mounted)
        return std::unexpected(mounted.error());
    const MountTable table = MountTable::read();
    if (const MountEntry* entry = table.at(mount.mountPoint)) {
        session->m_entry = *entry;
        session->m_claim = MountClaim::take(*entry);
    }
    return session;
}

std::expected<void, std::string> FuseSession::attach(const std::string& mountPoint,
                                                     const std::string& options) {
    std::string target = mountPoint;
    UniqueDescriptor device;
    if (::geteuid() != 0) {
        auto mounted = mountThroughFusermount(mountPoint, options);
        if (!mounted)
            return std::unexpected(mountPoint + ": FUSE refused the mount (" + mounted.error() +
                                   ")");
        device = std::move(*mounted);
        // libfuse takes over a descriptor that is named like this.
        target = "/dev/fd/" + std::to_string(device.get());
    }
    m_isMounted = static_cast<bool>(device);
    if (fuse_session_mount(m_session, target.c_str()) != 0)
        return std::unexpected(withReason(mountPoint + ": FUSE refused the mount"));
    (void) device.release();
    m_isMounted = true;
    return {};
}

FuseSession::~FuseSession() {
    unmount();
    if (m_session)
        fuse_session_destroy(m_session);
}

bool FuseSession::receive(fuse_buf& buffer, bool& hasRequest) {
    const int count = fuse_session_receive_buf(m_session, &buffer);
    hasRequest = count > 0;
    return hasRequest || count == -EINTR || count == -EAGAIN;
}

void FuseSession::process(const fuse_buf& buffer) {
    fuse_session_process_buf(m_session, &buffer);
}

bool FuseSession::serveOne(fuse_buf& buffer) {
    bool hasRequest = false;
    if (!receive(buffer, hasRequest))
        return false;
    if (hasRequest)
        process(buffer);
    return true;
}

int FuseSession::fd() const {
    return fuse_session_fd(m_session);
}

void FuseSession::unmount() {
    if (!m_isMounted || m_isDetached.exchange(true))
        return;
    // Only the mount of this session: another one may have come to the same place since.
    const MountTable table = MountTable::read();
    const MountEntry* entry = table.at(m_entry.mountPoint);
    if (entry && entry->deviceMinor == m_entry.deviceMinor && entry->isFuse())
        (void) detachMount(*entry, DetachMode::lazily);
}

} // namespace harbrix
