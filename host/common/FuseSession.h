#pragma once

#include "base/UniqueDescriptor.h"
#include "common/MountClaim.h"

#include <fuse_lowlevel.h>

#include <atomic>
#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace harbrix {

enum class MountAccess { readWrite, readOnly };

/// What a FUSE mount of ours looks like from outside.
struct FuseMount {
    std::string mountPoint; ///< absolute, as prepareMountPoint() returned it
    std::string fsName;     ///< the source in the mount table: "//user@host/share", "host:/path"
    std::string subtype;    ///< "smbfs", "nfs"
    MountAccess access = MountAccess::readWrite;
    std::vector<std::string> options; ///< more options, e.g. "default_permissions"
};

/// Blocks the signals that end a daemon of ours (SIGTERM, SIGINT, SIGHUP) in this thread and those
/// it starts. To be called before the first thread; FuseSession::endSignalFd() tells of the signals
/// then.
void blockEndSignals();

/// A live FUSE mount: as root by mount(2), otherwise through fusermount3(1). Making one calls
/// blockEndSignals().
///
/// Either several threads call serveOne() in a loop until it returns false, or one event loop
/// watches fd() and calls serveOne() when it is readable.
class FuseSession {
public:
    /// The operations are copied. The error is a text for the user.
    [[nodiscard]] static std::expected<std::unique_ptr<FuseSession>, std::string>
    mount(const FuseMount& mount, const fuse_lowlevel_ops& operations, void* userData);

    /// Takes the mount off if it is still there, lazily.
    ~FuseSession();
    FuseSession(const FuseSession&) = delete;
    FuseSession& operator=(const FuseSession&) = delete;

    /// Reads one request and calls its operation in this thread; waits for one if there is none.
    /// False once the mount is gone. Any thread; each passes a buffer of its own, zeroed before the
    /// first use, and frees `mem` in the end.
    [[nodiscard]] bool serveOne(fuse_buf& buffer);
    /// The two halves of serveOne(), for a pool that counts its idle threads: what a false of the
    /// first means is the same; `hasRequest` tells whether there is something to process.
    [[nodiscard]] bool receive(fuse_buf& buffer, bool& hasRequest);
    void process(const fuse_buf& buffer);

    [[nodiscard]] int fd() const;
    [[nodiscard]] fuse_session* handle() const { return m_session; }
    [[nodiscard]] const MountEntry& entry() const { return m_entry; }
    /// A signalfd(2): readable once somebody asked this process to end.
    [[nodiscard]] int endSignalFd() const { return m_endSignals.get(); }

    /// Takes the mount off, lazily. The other threads' serveOne() returns false as soon as nobody
    /// uses the mount any more. Any thread; once is enough.
    void unmount();
    /// For a process that ends without destructors: removes what tells that it serves this mount.
    void giveBackClaim() { m_claim = MountClaim(); }

private:
    FuseSession() = default;
    [[nodiscard]] std::expected<void, std::string> attach(const std::string& mountPoint,
                                                          const std::string& options);

    fuse_session* m_session = nullptr;
    bool m_isMounted = false;
    MountEntry m_entry;
    MountClaim m_claim;
    UniqueDescriptor m_endSignals;
    std::atomic<bool> m_isDetached = false;
};

} // namespace harbrix
