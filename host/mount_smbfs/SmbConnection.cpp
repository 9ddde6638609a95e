#include "mount_smbfs/SmbConnection.h"

#include "mount_smbfs/NameMapping.h"
#include "mount_smbfs/SmbLibrary.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

namespace harbrix {

namespace {

// Connecting touches state that all contexts of the process share.
std::timed_mutex connectMutex;

// Longer than any limit of ours: cut() ends what takes too long, not the library.
constexpr int libraryTimeoutMilliseconds = 40'000;

// FILE_ATTRIBUTE_REPARSE_POINT of MS-FSCC, 2.6.
constexpr unsigned reparsePoint = 0x400;

bool isConnectionError(int error) {
    switch (error) {
    case ECONNABORTED:
    case ECONNRESET:
    case ENOTCONN:
    case EPIPE:
    case ETIMEDOUT:
    case EHOSTUNREACH:
    case ENETUNREACH:
        return true;
    default:
        return false;
    }
}

// The TCP sockets of this process by inode (a descriptor's number may be used anew in between); the
// library does not tell which is its own.
SmbConnection::Sockets tcpSockets() {
    SmbConnection::Sockets sockets;
    DIR* folder = ::opendir("/proc/self/fd");
    if (!folder)
        return sockets;
    while (const dirent* entry = ::readdir(folder)) {
        const std::string_view name = entry->d_name;
        int fd = -1;
        std::from_chars(name.data(), name.data() + name.size(), fd);
        int protocol = 0;
        socklen_t size = sizeof protocol;
        struct stat info {};
        if (fd >= 0 && ::getsockopt(fd, SOL_SOCKET, SO_PROTOCOL, &protocol, &size) == 0 &&
            protocol == IPPROTO_TCP && ::fstat(fd, &info) == 0)
            sockets.emplace(info.st_ino, fd);
    }
    ::closedir(folder);
    return sockets;
}

std::vector<int> newSockets(const SmbConnection::Sockets& before) {
    std::vector<int> added;
    for (const auto& [inode, fd] : tcpSockets()) {
        if (!before.contains(inode))
            added.push_back(fd);
    }
    return added;
}

void giveLogin(SMBCCTX* context, const char*, const char*, char* domain, int domainSize, char* user,
               int userSize, char* password, int passwordSize) {
    const SmbLogin& login =
        static_cast<const SmbContextData*>(smbc_getOptionUserData(context))->login();
    const auto copy = [](char* target, int size, std::string_view text) {
        const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
        std::memcpy(target, text.data(), count);
        target[count] = '\0';
    };
    if (!login.domain.empty())
        copy(domain, domainSize, login.domain);
    copy(user, userSize, login.user);
    copy(password, passwordSize, login.password.view());
}

// The library would probe the server before calls and reconnect inside of them, without a bound.
int trustConnection(SMBCCTX*, SMBCSRV*) {
    return 0;
}

SMBCCTX* makeContext(SmbContextData& data) {
    const SmbLogin& login = data.login();
    SMBCCTX* context = smbc_new_context();
    if (!context)
        return nullptr;
    smbc_setDebug(context, 0);
    smbc_setOptionDebugToStderr(context, 1);
    smbc_setTimeout(context, libraryTimeoutMilliseconds);
    smbc_setPort(context, login.port);
    data.attach(context);
    smbc_setFunctionAuthDataWithContext(context, giveLogin);
    smbc_setFunctionCheckServer(context, trustConnection);
    // A wrong password must not turn into an anonymous login; a guest may become one.
    smbc_setOptionNoAutoAnonymousLogin(context, login.isGuest ? 0 : 1);
    smbc_setUser(context, login.user.c_str());
    if (!login.domain.empty())
        smbc_setWorkgroup(context, login.domain.c_str());
    if (!smbc_init_context(context)) {
        smbc_free_context(context, 1);
        return nullptr;
    }
    applySmbSettings(context);
    smbc_setOptionProtocols(context, "SMB2_02", "SMB3_11");
    return context;
}

Outcome<void> succeeded() {
    return {};
}

} // namespace

SmbConnection::~SmbConnection() {
    closeContext();
}

Outcome<void> SmbConnection::connect(const std::string& numericAddress, Deadline deadline) {
    const std::unique_lock lock(connectMutex, deadline);
    if (!lock)
        return std::unexpected(ETIMEDOUT);
    closeContext();
    {
        const std::lock_guard guard(m_cutMutex);
        m_socketsBefore = tcpSockets();
        m_isConnecting = true;
        m_isCut = false;
    }
    auto opened = openContext(numericAddress);
    const std::lock_guard guard(m_cutMutex);
    m_isConnecting = false;
    const std::vector<int> added = newSockets(m_socketsBefore);
    if (opened && (added.size() != 1 || m_isCut))
        opened = std::unexpected(ECONNABORTED);
    if (opened) {
        m_socket.reset(::fcntl(added.front(), F_DUPFD_CLOEXEC, 0));
        ++m_epoch;
    }
    m_isBroken = !opened;
    return opened;
}

Outcome<void> SmbConnection::openContext(const std::string& numericAddress) {
    m_context = makeContext(m_data);
    if (!m_context)
        return std::unexpected(ENOMEM);
    // The library takes the first colon for the port's, encoded or not it is decoded afterwards.
    m_base = "smb://" + urlEncoded(numericAddress) + "/" + urlEncoded(m_data.login().share);
    const auto folder = urlPath(m_data.login().folder);
    if (!folder)
        return std::unexpected(folder.error());
    m_base += *folder;
    errno = 0;
    struct stat info {};
    if (smbc_getFunctionStat(m_context)(m_context, (m_base + "/").c_str(), &info) != 0)
        return std::unexpected(errno != 0 ? errno : EIO);
    return S_ISDIR(info.st_mode) ? succeeded() : std::unexpected(ENOTDIR);
}

void SmbConnection::closeContext() {
    {
        // Freeing closes open files, one question each, to a server that may be silent.
        const std::lock_guard guard(m_cutMutex);
        if (m_socket)
            ::shutdown(m_socket.get(), SHUT_RDWR);
        m_socket.reset();
    }
    if (m_context)
        smbc_free_context(m_context, 1);
    m_context = nullptr;
    m_isBroken = true;
}

void SmbConnection::cut() {
    const std::lock_guard guard(m_cutMutex);
    m_isCut = true;
    if (m_socket)
        ::shutdown(m_socket.get(), SHUT_RDWR);
    if (m_isConnecting) {
        for (int fd : newSockets(m_socketsBefore))
            ::shutdown(fd, SHUT_RDWR);
    }
}

std::uint64_t SmbConnection::progress() {
    const std::lock_guard guard(m_cutMutex);
    tcp_info info{};
    socklen_t size = sizeof info;
    if (!m_socket || ::getsockopt(m_socket.get(), IPPROTO_TCP, TCP_INFO, &info, &size) != 0)
        return 0;
    return info.tcpi_bytes_received + info.tcpi_bytes_acked;
}

bool SmbConnection::isUsable() const {
    if (m_isBroken || !m_socket)
        return false;
    pollfd state{m_socket.get(), POLLRDHUP, 0};
    return ::poll(&state, 1, 0) == 0;
}

int SmbConnection::failed() {
    const int error = errno != 0 ? errno : EIO;
    if (isConnectionError(error)) {
        m_isBroken = true;
        return ECONNABORTED;
    }
    // What the library cannot translate comes as EINVAL, the end of a session among it.
    if (error == EINVAL || error == EIO) {
        struct stat info {};
        if (smbc_getFunctionStat(m_context)(m_context, (m_base + "/").c_str(), &info) != 0) {
            m_isBroken = true;
            return ECONNABORTED;
        }
    }
    return error;
}

Outcome<std::string> SmbConnection::url(const std::string& path) const {
    auto encoded = urlPath(path);
    if (!encoded)
        return std::unexpected(encoded.error());
    return m_base + (encoded->empty() ? "/" : *encoded);
}

template <typename Call>
Outcome<void> SmbConnection::callWithUrl(const std::string& path, Call&& call) {
    const auto target = url(path);
    if (!target)
        return std::unexpected(target.error());
    errno = 0;
    if (call(target->c_str()) != 0)
        return std::unexpected(failed());
    return {};
}

Outcome<struct stat> SmbConnection::attributes(const std::string& path) {
    struct stat info {};
    const auto call = [&](const char* target) {
        return smbc_getFunctionStat(m_context)(m_context, target, &info);
    };
    if (auto done = callWithUrl(path, call); !done)
        return std::unexpected(done.error());
    return info;
}

Outcome<std::vector<ListedEntry>> SmbConnection::list(const std::string& path) {
    SMBCFILE* folder = nullptr;
    const auto call = [&](const char* target) {
        folder = smbc_getFunctionOpendir(m_context)(m_context, target);
        return folder ? 0 : -1;
    };
    if (auto done = callWithUrl(path, call); !done)
        return std::unexpected(done.error());
    std::vector<ListedEntry> entries;
    struct stat info {};
    errno = 0;
    while (const auto* entry = smbc_getFunctionReaddirPlus2(m_context)(m_context, folder, &info)) {
        const std::string_view name = entry->name;
        if (name != "." && name != "..")
            entries.push_back({nameFromServer(name), info, (entry->attrs & reparsePoint) != 0});
        errno = 0;
    }
    (void) smbc_getFunctionClosedir(m_context)(m_context, folder);
    return entries;
}

Outcome<SMBCFILE*> SmbConnection::open(const std::string& path, int flags) {
    SMBCFILE* file = nullptr;
    const auto call = [&](const char* target) {
        file = smbc_getFunctionOpen(m_context)(m_context, target, flags, 0666);
        return file ? 0 : -1;
    };
    if (auto done = callWithUrl(path, call); !done)
        return std::unexpected(done.error());
    return file;
}

Outcome<void> SmbConnection::close(SMBCFILE* file) {
    errno = 0;
    if (smbc_getFunctionClose(m_context)(m_context, file) != 0)
        return std::unexpected(failed());
    return {};
}

Outcome<struct stat> SmbConnection::attributes(SMBCFILE* file) {
    struct stat info {};
    errno = 0;
    if (smbc_getFunctionFstat(m_context)(m_context, file, &info) != 0)
        return std::unexpected(failed());
    return info;
}

Outcome<std::size_t> SmbConnection::read(SMBCFILE* file, std::span<char> buffer, off_t offset) {
    std::size_t total = 0;
    while (total < buffer.size()) {
        errno = 0;
        const off_t at = offset + static_cast<off_t>(total);
        if (smbc_getFunctionLseek(m_context)(m_context, file, at, SEEK_SET) != at)
            return std::unexpected(failed());
        const ssize_t count =
            smbc_getFunctionRead(m_context)(m_context, file, &buffer[total], buffer.size() - total);
        if (count < 0)
            return std::unexpected(failed());
        if (count == 0)
            break;
        total += static_cast<std::size_t>(count);
    }
    return total;
}

Outcome<void> SmbConnection::write(SMBCFILE* file, std::span<const char> bytes, off_t offset) {
    while (!bytes.empty()) {
        errno = 0;
        if (smbc_getFunctionLseek(m_context)(m_context, file, offset, SEEK_SET) != offset)
            return std::unexpected(failed());
        const ssize_t count =
            smbc_getFunctionWrite(m_context)(m_context, file, bytes.data(), bytes.size());
        if (count <= 0)
            return std::unexpected(failed());
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += count;
    }
    return {};
}

Outcome<void> SmbConnection::truncate(SMBCFILE* file, off_t size) {
    errno = 0;
    if (smbc_getFunctionFtruncate(m_context)(m_context, file, size) != 0)
        return std::unexpected(failed());
    return {};
}

Outcome<void> SmbConnection::makeFolder(const std::string& path) {
    return callWithUrl(path, [&](const char* target) {
        return smbc_getFunctionMkdir(m_context)(m_context, target, 0777);
    });
}

Outcome<void> SmbConnection::removeFolder(const std::string& path) {
    return callWithUrl(path, [&](const char* target) {
        return smbc_getFunctionRmdir(m_context)(m_context, target);
    });
}

Outcome<void> SmbConnection::removeFile(const std::string& path) {
    return callWithUrl(path, [&](const char* target) {
        return smbc_getFunctionUnlink(m_context)(m_context, target);
    });
}

Outcome<void> SmbConnection::rename(const std::string& from, const std::string& to) {
    const auto target = url(to);
    if (!target)
        return std::unexpected(target.error());
    return callWithUrl(from, [&](const char* source) {
        return smbc_getFunctionRename(m_context)(m_context, source, m_context, target->c_str());
    });
}

Outcome<void> SmbConnection::setTimes(const std::string& path, timespec access,
                                      timespec modification) {
    timeval times[2] = {{access.tv_sec, access.tv_nsec / 1000},
                        {modification.tv_sec, modification.tv_nsec / 1000}};
    return callWithUrl(path, [&](const char* target) {
        return smbc_getFunctionUtimes(m_context)(m_context, target, times);
    });
}

Outcome<void> SmbConnection::setMode(const std::string& path, mode_t mode) {
    return callWithUrl(path, [&](const char* target) {
        return smbc_getFunctionChmod(m_context)(m_context, target, mode);
    });
}

Outcome<struct statvfs> SmbConnection::capacity() {
    struct statvfs info {};
    std::string target = m_base + "/";
    errno = 0;
    if (smbc_getFunctionStatVFS(m_context)(m_context, target.data(), &info) != 0)
        return std::unexpected(failed());
    return info;
}

} // namespace harbrix
