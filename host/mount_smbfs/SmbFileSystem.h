#pragma once

#include "common/FuseSession.h"
#include "mount_smbfs/FolderCache.h"
#include "mount_smbfs/NodeTable.h"
#include "mount_smbfs/OpenFiles.h"
#include "mount_smbfs/ServerTree.h"

#include <sys/statvfs.h>

#include <atomic>
#include <mutex>
#include <string>

namespace harbrix {

/// The share as a tree of numbered files. Everything belongs to the mounting user; of the
/// permissions only the read-only attribute of files is real. Blocking calls, from any thread; the
/// error is an errno value.
class SmbFileSystem {
public:
    using Number = NodeTable::Number;

    /// A file as the kernel is told of it.
    struct Entry {
        Number number;
        Answer answer;
    };

    SmbFileSystem(FileServices services, MountAccess access);

    /// Asks for what is answered without the network from then on: the root's attributes, the
    /// capacity.
    [[nodiscard]] Outcome<void> prepare();

    [[nodiscard]] Outcome<Entry> lookUp(Number parent, const std::string& name);
    void forget(Number number, std::uint64_t lookUps) { m_nodes.forget(number, lookUps); }
    [[nodiscard]] Outcome<Answer> attributes(Number number);
    [[nodiscard]] Outcome<Answer> setAttributes(Number number, const struct stat& wanted,
                                                int which);

    [[nodiscard]] Outcome<Entry> makeFolder(Number parent, const std::string& name);
    [[nodiscard]] Outcome<void> removeFolder(Number parent, const std::string& name);
    /// A file that is open gets a hidden name until its last close.
    [[nodiscard]] Outcome<void> removeFile(Number parent, const std::string& name);
    [[nodiscard]] Outcome<void> rename(Number oldParent, const std::string& oldName,
                                       Number newParent, const std::string& newName,
                                       unsigned flags);

    using File = OpenFiles::File;
    [[nodiscard]] Outcome<File> open(Number number, int flags);
    [[nodiscard]] Outcome<std::pair<Entry, File>> create(Number parent, const std::string& name,
                                                         int flags);
    /// The counterpart of one open() or create().
    void release(Number number);
    /// The size when the kernel last heard of it; 0 if never.
    [[nodiscard]] off_t knownSize(Number number) const;

    [[nodiscard]] Outcome<ListingPointer> list(Number number);
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
    [[nodiscard]] Outcome<std::string> path(Number number) const;
    [[nodiscard]] Outcome<std::string> childPath(Number parent, const std::string& name) const;
    [[nodiscard]] Outcome<Answer> fetchAttributes(Number number);
    [[nodiscard]] Outcome<Answer> fetchNamed(Number parent, const std::string& name);
    void listForLookUps(Number folder);
    [[nodiscard]] Answer presented(Number number, const Answer& answer) const;

    [[nodiscard]] Outcome<void> setTimes(Number number, const std::string& path,
                                         const struct stat& wanted, int which);
    [[nodiscard]] Outcome<void> truncate(Number number, off_t size);
    [[nodiscard]] Outcome<void> changeAttributes(Number number, const std::string& path,
                                                 const struct stat& wanted, int which);
    void noteContentChange(Number number);
    void noteRemoval(Number parent, const std::string& name, const Outcome<void>& removed);
    [[nodiscard]] Outcome<void> hideOpenFile(Number parent, const std::string& name, Number number);

    FileServices m_services;
    const MountAccess m_access;
    const uid_t m_owner;
    const gid_t m_group;
    ServerTree m_server;
    NodeTable m_nodes;
    OpenFiles m_files;
    FolderCache m_folders;
    std::atomic<bool> m_isListing = false; ///< for look-ups

    std::mutex m_mutex;
    struct stat m_rootAttributes {};
    struct statvfs m_capacity {};
    std::chrono::steady_clock::time_point m_capacityReadAt;
    bool m_isCapacityAsked = false;
    std::atomic<unsigned> m_hiddenCount = 0;
};

} // namespace harbrix
