#pragma once

#include "mount_nfs/session/Operations.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace harbrix::nfs {

class WriteBehind;

/// A file that the kernel, or an unfinished write, knows.
struct Inode {
    Inode(std::uint64_t numberInTable, const FileHandle& fileHandle)
        : number(numberInTable), handle(fileHandle) {}

    std::uint64_t number; ///< The kernel's node id.
    FileHandle handle;
    std::uint64_t lookups = 0;
    Attributes attributes; ///< As the server told them last.
    TimePoint attributesAsked{};
    unsigned opens = 0;
    /// Where the file went when its last name was removed while it was open.
    struct HiddenName {
        std::shared_ptr<Inode> directory;
        std::string name;
        Credentials who;
    };
    std::unique_ptr<HiddenName> hidden;
    /// Grows with every change of the content from this side, or seen at the server: what was read
    /// ahead before is not valid after it.
    std::uint64_t contentVersion = 0;
    /// The change attribute for which the kernel's cached pages are valid; 0 if unknown.
    std::uint64_t cachedChange = 0;
    std::shared_ptr<WriteBehind> writes; ///< Made by the first write.

    /// Takes attributes in that the server told when asked at that time; older news are dropped.
    void learn(const Attributes& found, TimePoint asked);
    /// The size with what is still on its way to the server.
    [[nodiscard]] std::uint64_t sizeWithWrites(const Attributes& found, TimePoint asked) const;
};

/// The files of a mount by node id and by file handle.
class InodeTable {
public:
    static constexpr std::uint64_t rootNumber = 1;

    /// The inode of `handle`, made if it is new, without counting a lookup.
    [[nodiscard]] std::shared_ptr<Inode> remember(const FileHandle& handle);
    [[nodiscard]] std::shared_ptr<Inode> find(std::uint64_t number) const;
    [[nodiscard]] std::shared_ptr<Inode> find(const FileHandle& handle) const;
    /// The kernel drops `count` lookups.
    void forget(std::uint64_t number, std::uint64_t count);
    /// Drops an inode that nobody counts: an entry that did not reach the kernel.
    void release(const std::shared_ptr<Inode>& inode);
    [[nodiscard]] const std::unordered_map<std::uint64_t, std::shared_ptr<Inode>>& all() const {
        return m_byNumber;
    }

private:
    std::unordered_map<std::uint64_t, std::shared_ptr<Inode>> m_byNumber;
    std::unordered_map<FileHandle, std::weak_ptr<Inode>, FileHandleHash> m_byHandle;
    std::uint64_t m_nextNumber = rootNumber;
};

} // namespace harbrix::nfs
