#include "mount_nfs/files/Inode.h"

#include "mount_nfs/files/WriteBehind.h"

#include <algorithm>

namespace harbrix::nfs {

void Inode::learn(const Attributes& found, TimePoint asked) {
    if (!found.present.has(Attr::Type) || asked < attributesAsked)
        return;
    if (found.change != attributes.change)
        ++contentVersion;
    attributes = found;
    attributes.size = sizeWithWrites(found, asked);
    attributesAsked = asked;
}

std::uint64_t Inode::sizeWithWrites(const Attributes& found, TimePoint asked) const {
    return writes ? std::max(found.size, writes->endSeenSince(asked)) : found.size;
}

std::shared_ptr<Inode> InodeTable::remember(const FileHandle& handle) {
    if (auto known = find(handle))
        return known;
    auto inode = std::make_shared<Inode>(m_nextNumber++, handle);
    m_byNumber[inode->number] = inode;
    m_byHandle[handle] = inode;
    return inode;
}

std::shared_ptr<Inode> InodeTable::find(std::uint64_t number) const {
    const auto found = m_byNumber.find(number);
    return found == m_byNumber.end() ? nullptr : found->second;
}

std::shared_ptr<Inode> InodeTable::find(const FileHandle& handle) const {
    const auto found = m_byHandle.find(handle);
    return found == m_byHandle.end() ? nullptr : found->second.lock();
}

void InodeTable::forget(std::uint64_t number, std::uint64_t count) {
    const auto inode = find(number);
    if (!inode)
        return;
    inode->lookups -= std::min(inode->lookups, count);
    release(inode);
}

void InodeTable::release(const std::shared_ptr<Inode>& inode) {
    const bool busy =
        inode->lookups > 0 || inode->opens > 0 || (inode->writes && !inode->writes->isIdle());
    if (busy || inode->number == rootNumber)
        return;
    m_byNumber.erase(inode->number);
    m_byHandle.erase(inode->handle);
}

} // namespace harbrix::nfs
