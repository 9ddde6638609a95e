#pragma once

#include "common/FuseSession.h"
#include "mount_smbfs/NodeTable.h"
#include "mount_smbfs/OpenFile.h"

#include <sys/statvfs.h>

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace harbrix {

/// What a folder held when it was listed, and when that was.
struct FolderListing {
    std::vector<ListedEntry> entries;
    std::chrono::steady_clock::time_point readAt;
};

/// The share as a tree of numbered files. Everything belongs to the mounting user; of the
/// permissions only the read-only attribute of files is real. Blocking calls, from any thread; the
/// error is an errno value.
class SmbFileSystem {
public:
    using Number = NodeTable::Number;

    struct Entry {
        Number number;
        struct stat attributes;
    };

    SmbFileSystem(FileServices services, MountAccess access);

    /// Asks for what is answered without the network from then on: the root's attributes, the
    /// capacity.
    [[nodiscard]] Outcome<void> prepare();

    [[nodiscard]] Outcome<Entry> lookUp(Number parent, const std::string& name);
    void forget(Number number, std::uint64_t lookUps) { m_nodes.forget(number, lookUps); }
    [[nodiscard]] Outcome<struct stat> attributes(Number number);
    [[nodiscard]] Outcome<struct stat> setAttributes(Number number, const struct stat& wanted,
                                                     int which);

    [[nodiscard]] Outcome<Entry> makeFolder(Number parent, const std::string& name);
    [[nodiscard]] Outcome<void> removeFolder(Number parent, const std::string& name);
    /// A file that is open gets a hidden name until its last close.
    [[nodiscard]] Outcome<void> removeFile(Number parent, const std::string& name);
    [[nodiscard]] Outcome<void> rename(Number oldParent, const std::string& oldName,
                                       Number newParent, const std::string& newName,
                                       unsigned flags);

    using File = std::shared_ptr<OpenFile>;
    [[nodiscard]] Outcome<File> open(Number number, int flags);
    [[nodiscard]] Outcome<std::pair<Entry, File>> create(Number parent, const std::string& name,
                                                         int flags);
    /// The counterpart of one open() or create().
    void release(Number number);
    /// The file if it is open just now, else null.
    [[nodiscard]] File openFile(Number number);
    /// Note that the file's content was changed from here.
    void noteChange(Number number) { m_nodes.noteChange(number); }
    /// The size when the kernel last heard of it; 0 if never.
    [[nodiscard]] off_t knownSize(Number number) const;

    [[nodiscard]] Outcome<FolderListing> list(Number number);
    /// An entry of a listing with one more look-up. Absent if its attributes are no longer right.
    [[nodiscard]] std::optional<Entry> listedEntry(Number parent, const FolderListing& listing,
                                                   const ListedEntry& entry);
    /// False if the name was removed since the listing was made.
    [[nodiscard]] bool isStillThere(Number parent, const FolderListing& listing,
                                    const ListedEntry& entry) const;

    /// At once, from memory; refreshed in the background.
    [[nodiscard]] struct statvfs capacity();

    /// Sends all that was written and is still here.
    void flushAll();

private:
    struct Opened {
        File file;
        unsigned count = 0;
        bool isDoomed = false; ///< removed from sight; to be deleted with the last close
    };

    [[nodiscard]] Outcome<std::string> path(Number number) const;
    [[nodiscard]] Outcome<std::string> childPath(Number parent, const std::string& name) const;
    [[nodiscard]] Outcome<struct stat> fetchAttributes(Number number, const std::string& path);
    [[nodiscard]] struct stat presented(Number number, const struct stat& attributes) const;
    [[nodiscard]] Outcome<void> setWritable(const std::string& path, mode_t serverMode,
                                            bool isWritable);
    [[nodiscard]] Outcome<void> setTimes(Number number, const std::string& path,
                                         const struct stat& wanted, int which);
    [[nodiscard]] Outcome<void> truncate(Number number, off_t size);
    [[nodiscard]] Outcome<void> removeOnServer(const std::string& path);
    [[nodiscard]] Outcome<void> renameOnServer(const std::string& from, const std::string& to);
    [[nodiscard]] Outcome<void> hideOpenFile(Number parent, const std::string& name, Number number);
    // Closes on the server whatever is open at or below, so that names can change.
    void releaseHandlesWithin(Number top);
    void waitUntilClosed(Number number);
    [[nodiscard]] File registerOpen(Number number);
    template <typename Operation>
    auto metadata(Repeat repeat, Operation&& operation);

    FileServices m_services;
    const MountAccess m_access;
    const uid_t m_owner;
    const gid_t m_group;
    NodeTable m_nodes;

    mutable std::mutex m_mutex;
    std::condition_variable m_closed;
    std::map<Number, Opened> m_open;
    std::multiset<Number> m_closing;
    struct stat m_rootAttributes {};
    struct statvfs m_capacity {};
    std::chrono::steady_clock::time_point m_capacityReadAt;
    bool m_isCapacityAsked = false;
    std::atomic<unsigned> m_hiddenCount = 0;
};

} // namespace harbrix
