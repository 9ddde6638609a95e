#pragma once

#include "base/UniqueDescriptor.h"
#include "mount_smbfs/FolderListing.h"
#include "mount_smbfs/Outcome.h"
#include "mount_smbfs/SmbLibrary.h"

#include <libsmbclient.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <chrono>
#include <cstdint>
#include <expected>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace harbrix {

/// One connection to the share: a libsmbclient context of its own, which never reconnects behind
/// our back. Used by one thread at a time, whichever it is; only cut() may be called by any thread
/// meanwhile. Calls block until the server answers or cut() is called.
///
/// `path` is relative to the mounted folder, "a/b", empty for the folder itself.
class SmbConnection {
public:
    /// Descriptors by the inode of their socket.
    using Sockets = std::map<ino_t, int>;

    explicit SmbConnection(const SmbLogin& login) : m_data(login) {}
    ~SmbConnection();
    SmbConnection(const SmbConnection&) = delete;
    SmbConnection& operator=(const SmbConnection&) = delete;

    /// Connects and logs in anew; every file handle of the time before is void. One connection of
    /// the process at a time does so, the others wait, to the deadline at most.
    [[nodiscard]] Outcome<void> connect(const std::string& numericAddress, Deadline deadline);

    /// Makes the call that blocks now, and all later ones, fail with ECONNABORTED.
    void cut();

    /// Grows whenever something comes from the server or is acknowledged by it. Any thread.
    [[nodiscard]] std::uint64_t progress();

    /// False once the server has closed the connection or a call has found it dead.
    [[nodiscard]] bool isUsable() const;
    /// Counts the connects; tells a void file handle from a good one.
    [[nodiscard]] std::uint64_t epoch() const { return m_epoch; }

    [[nodiscard]] Outcome<struct stat> attributes(const std::string& path);
    [[nodiscard]] Outcome<std::vector<ListedEntry>> list(const std::string& path);
    [[nodiscard]] Outcome<SMBCFILE*> open(const std::string& path, int flags);
    [[nodiscard]] Outcome<void> close(SMBCFILE* file);
    [[nodiscard]] Outcome<struct stat> attributes(SMBCFILE* file);
    /// Fewer bytes than asked for only at the end of the file.
    [[nodiscard]] Outcome<std::size_t> read(SMBCFILE* file, std::span<char> buffer, off_t offset);
    /// All of the bytes or an error.
    [[nodiscard]] Outcome<void> write(SMBCFILE* file, std::span<const char> bytes, off_t offset);
    [[nodiscard]] Outcome<void> truncate(SMBCFILE* file, off_t size);
    [[nodiscard]] Outcome<void> makeFolder(const std::string& path);
    [[nodiscard]] Outcome<void> removeFolder(const std::string& path);
    [[nodiscard]] Outcome<void> removeFile(const std::string& path);
    [[nodiscard]] Outcome<void> rename(const std::string& from, const std::string& to);
    [[nodiscard]] Outcome<void> setTimes(const std::string& path, timespec access,
                                         timespec modification);
    /// `mode` as libsmbclient maps it to the attributes of a file.
    [[nodiscard]] Outcome<void> setMode(const std::string& path, mode_t mode);
    [[nodiscard]] Outcome<struct statvfs> capacity();

private:
    [[nodiscard]] Outcome<std::string> url(const std::string& path) const;
    [[nodiscard]] Outcome<void> openContext(const std::string& numericAddress);
    void closeContext();
    // Notes what the current errno says about the connection, and passes it on.
    [[nodiscard]] int failed();
    template <typename Call>
    Outcome<void> callWithUrl(const std::string& path, Call&& call);

    SmbContextData m_data;
    SMBCCTX* m_context = nullptr;
    std::string m_base;
    std::uint64_t m_epoch = 0;
    bool m_isBroken = true;

    // What cut() needs, guarded against the thread that is inside a call.
    std::mutex m_cutMutex;
    UniqueDescriptor
        m_socket; ///< a duplicate, so that a number reused by the library is never shut down
    Sockets m_socketsBefore;
    bool m_isConnecting = false;
    bool m_isCut = false;
};

} // namespace harbrix
