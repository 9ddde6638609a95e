#pragma once

#include "mount_nfs/files/DirectoryReader.h"
#include "mount_nfs/files/Inode.h"
#include "mount_nfs/files/ReadAhead.h"
#include "mount_nfs/files/WriteBehind.h"
#include "mount_nfs/fuse/Identity.h"
#include "mount_nfs/fuse/Request.h"
#include "mount_nfs/session/Operations.h"

#include <fuse_lowlevel.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace harbrix::nfs {

enum class WriteMode { Behind, Through };
/// Whether large files are read, and files open for writing only are written, past the kernel's
/// page cache, which is faster than through it.
enum class LargeFiles { Cached, Direct };

/// An NFS export as libfuse's low-level operations. Each handler begins something and returns; the
/// reply is sent when the server has answered.
class FileSystem {
public:
    struct Settings {
        std::uint32_t readSize = 1 << 20;
        std::uint32_t writeSize = 1 << 20;
        WriteMode writes = WriteMode::Behind;
        Ownership ownership = Ownership::AsTold;
    };

    FileSystem(EventLoop& loop, BufferPool& pool, Operations& operations, Settings settings,
               const Node& root, const Attributes& statistics);

    /// Pass `this` as libfuse's user data.
    [[nodiscard]] static fuse_lowlevel_ops operations();

    /// Direct only where the kernel can map such files all the same.
    void setLargeFiles(LargeFiles large) { m_largeFiles = large; }

    /// Calls `done` once all that was written has reached the server and all files are closed
    /// there.
    void finish(std::function<void()> done);

private:
    using Pending = std::shared_ptr<Request>;

    struct OpenFile {
        std::shared_ptr<Inode> inode;
        std::shared_ptr<OpenState> state;
        std::shared_ptr<ReadAhead> reads;
        bool synchronous = false; ///< O_SYNC, O_DSYNC: each write waits for stable storage.
        std::unordered_map<std::uint64_t, std::uint64_t> lockOwners; ///< Kernel's to server's.
    };
    struct OpenDirectory {
        std::shared_ptr<Inode> inode;
        std::shared_ptr<DirectoryReader> reader;
    };

    friend struct Handlers; // the table of C functions

    // Common.cpp
    [[nodiscard]] std::shared_ptr<Inode> inodeOf(fuse_req_t request, fuse_ino_t number);
    [[nodiscard]] struct stat statOf(const Inode& inode, const Attributes& attributes,
                                     TimePoint asked);
    [[nodiscard]] fuse_entry_param entryOf(const Node& node, std::shared_ptr<Inode>& inode);
    void replyEntry(const Pending& pending, const Node& node);
    void replyAttributes(const Pending& pending, const std::shared_ptr<Inode>& inode,
                         const Node& node);
    void drained(const std::shared_ptr<Inode>& inode, std::function<void()> then);
    void waitForRoom(std::function<bool()> attempt);
    void serveWaiters();
    [[nodiscard]] static bool nameFits(const Pending& pending, const std::string& name);

    // Attributes.cpp
    void getAttributes(fuse_req_t request, fuse_ino_t number);
    void refreshRoot();
    void setAttributes(fuse_req_t request, fuse_ino_t number, const struct stat& values, int which,
                       const fuse_file_info* info);
    void access(fuse_req_t request, fuse_ino_t number, int mask);
    void statistics(fuse_req_t request);
    void readLink(fuse_req_t request, fuse_ino_t number);

    // Names.cpp
    void lookup(fuse_req_t request, fuse_ino_t parent, std::string name);
    void create(fuse_req_t request, fuse_ino_t parent, std::string name, NewNode what);
    void remove(fuse_req_t request, fuse_ino_t parent, std::string name);
    void removeDirectory(fuse_req_t request, fuse_ino_t parent, std::string name);
    void rename(fuse_req_t request, fuse_ino_t fromParent, std::string from, fuse_ino_t toParent,
                std::string to, unsigned flags);
    void link(fuse_req_t request, fuse_ino_t number, fuse_ino_t parent, std::string name);
    /// A file that is open here keeps its content when its last name goes: it is renamed instead.
    /// `then` takes the file if that was done.
    void hideIfOpen(const Pending& pending, const Credentials& who,
                    const std::shared_ptr<Inode>& directory, const std::string& name,
                    std::function<void(std::shared_ptr<Inode> hidden)> then);
    struct Place {
        std::shared_ptr<Inode> directory;
        std::string name;
    };
    void hide(const Pending& pending, const Credentials& who, const Place& place,
              const std::shared_ptr<Inode>& inode,
              std::function<void(std::shared_ptr<Inode> hidden)> then);
    void unhide(const std::shared_ptr<Inode>& inode, const std::string& name);
    void removeHidden(const std::shared_ptr<Inode>& inode);

    // Files.cpp
    void open(fuse_req_t request, fuse_ino_t number, const fuse_file_info& info);
    void openDrained(const Pending& pending, const std::shared_ptr<Inode>& inode,
                     const Credentials& who, const fuse_file_info& info);
    /// What is known of the content is worthless: the size was set.
    static void resized(Inode& inode);
    void createFile(fuse_req_t request, fuse_ino_t parent, std::string name, mode_t mode,
                    const fuse_file_info& info);
    void makeFile(fuse_req_t request, fuse_ino_t parent, std::string name, mode_t mode);
    void opened(const Pending& pending, const std::shared_ptr<Inode>& inode, OpenedFile file,
                fuse_file_info info, const fuse_entry_param* entry);
    void read(fuse_req_t request, std::uint64_t handle, std::size_t size, off_t offset);
    void write(fuse_req_t request, std::uint64_t handle, Bytes data, off_t offset);
    void flush(fuse_req_t request, std::uint64_t handle, std::uint64_t lockOwner);
    void synchronise(fuse_req_t request, std::uint64_t handle);
    void release(fuse_req_t request, std::uint64_t handle);
    void closeFile(const std::shared_ptr<OpenFile>& file);

    // Directories.cpp
    void openDirectory(fuse_req_t request, fuse_ino_t number, fuse_file_info info);
    enum class Listing { Names, WithAttributes };
    void readDirectory(fuse_req_t request, std::uint64_t handle, std::size_t size, off_t offset,
                       Listing listing);
    struct DirectoryBuffer;
    void fillDirectory(const Pending& pending, const std::shared_ptr<OpenDirectory>& directory,
                       const std::shared_ptr<DirectoryBuffer>& buffer, std::uint64_t cookie);
    [[nodiscard]] bool addEntry(const Pending& pending, DirectoryBuffer& buffer,
                                const DirectoryPage::Entry& entry, TimePoint asked,
                                std::uint64_t& last);
    void releaseDirectory(fuse_req_t request, std::uint64_t handle);

    // Locks.cpp
    void testLock(fuse_req_t request, std::uint64_t handle, std::uint64_t owner, struct flock lock);
    void setLock(fuse_req_t request, std::uint64_t handle, std::uint64_t owner, struct flock lock,
                 bool wait);
    void tryLock(const Pending& pending, const std::shared_ptr<OpenFile>& file, std::uint64_t owner,
                 struct flock lock, bool wait, Duration pause);
    void dropLocks(const std::shared_ptr<OpenFile>& file, std::uint64_t owner,
                   std::function<void()> then);

    EventLoop& m_loop;
    BufferPool& m_pool;
    Operations& m_operations;
    Settings m_settings;
    Callers m_callers;
    OwnerMap m_owners;
    Requests m_requests;
    InodeTable m_inodes;
    std::shared_ptr<Inode> m_root;
    LargeFiles m_largeFiles = LargeFiles::Cached;
    Attributes m_statistics;
    TimePoint m_statisticsAt{};
    bool m_rootRefreshing = false;
    bool m_statisticsRefreshing = false;

    std::uint64_t m_nextHandle = 1;
    std::unordered_map<std::uint64_t, std::shared_ptr<OpenFile>> m_files;
    std::unordered_map<std::uint64_t, std::shared_ptr<OpenDirectory>> m_directories;
    std::deque<std::function<bool()>> m_roomWaiters;
    std::size_t m_closing =
        0; ///< Files whose last data is on its way though the kernel let go of them.
    std::function<void()> m_finished;
};

} // namespace harbrix::nfs
