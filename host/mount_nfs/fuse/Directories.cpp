#include "mount_nfs/fuse/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

// Listing: names with their attributes, from one READDIR.
namespace harbrix::nfs {

namespace {

constexpr std::uint32_t pageBytes = 256 * 1024;
// Cookies 1 and 2 are never a server's (RFC 8881, 18.23.3), which leaves them for the two entries
// that READDIR does not return.
constexpr std::uint64_t afterDot = 1;
constexpr std::uint64_t afterDotDot = 2;

/// What a server must not send as the name of an entry: it would lead elsewhere, or confuse the
/// kernel.
bool isSound(const std::string& name) {
    return !name.empty() && name.size() <= 255 && name != "." && name != ".." &&
           name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
}

} // namespace

struct FileSystem::DirectoryBuffer {
    std::vector<char> bytes;
    std::size_t used = 0;
    Listing listing;

    /// False if the entry does not fit any more.
    bool add(fuse_req_t request, const std::string& name, const fuse_entry_param& entry,
             std::uint64_t cookie) {
        char* place = bytes.data() + used;
        const std::size_t left = bytes.size() - used;
        const auto next = static_cast<off_t>(cookie);
        const std::size_t needed =
            listing == Listing::WithAttributes
                ? fuse_add_direntry_plus(request, place, left, name.c_str(), &entry, next)
                : fuse_add_direntry(request, place, left, name.c_str(), &entry.attr, next);
        if (needed > left)
            return false;
        used += needed;
        return true;
    }
};

void FileSystem::openDirectory(fuse_req_t request, fuse_ino_t number, fuse_file_info info) {
    const auto inode = inodeOf(request, number);
    if (!inode)
        return;
    const std::uint32_t largest = m_operations.session().maximumResponse() - 1024;
    auto directory = std::make_shared<OpenDirectory>();
    directory->inode = inode;
    directory->reader = std::make_shared<DirectoryReader>(
        m_operations, m_callers.of(request), inode->handle, std::min(pageBytes, largest));
    info.fh = m_nextHandle++;
    m_directories[info.fh] = std::move(directory);
    if (fuse_reply_open(request, &info) != 0)
        m_directories.erase(info.fh);
}

void FileSystem::releaseDirectory(fuse_req_t request, std::uint64_t handle) {
    m_directories.erase(handle);
    fuse_reply_err(request, 0);
}

void FileSystem::readDirectory(fuse_req_t request, std::uint64_t handle, std::size_t size,
                               off_t offset, Listing listing) {
    const auto found = m_directories.find(handle);
    if (found == m_directories.end()) {
        fuse_reply_err(request, EBADF);
        return;
    }
    const auto directory = found->second;
    auto buffer = std::make_shared<DirectoryBuffer>();
    buffer->bytes.resize(size);
    buffer->listing = listing;
    auto cookie = static_cast<std::uint64_t>(offset);
    // The kernel neither looks the dots up nor counts them, so they carry no inode of their own.
    fuse_entry_param dot{};
    dot.attr.st_mode = S_IFDIR;
    dot.attr.st_ino = directory->inode->attributes.fileId;
    if (cookie == 0 && buffer->add(request, ".", dot, afterDot))
        cookie = afterDot;
    if (cookie == afterDot && buffer->add(request, "..", dot, afterDotDot))
        cookie = afterDotDot;
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    fillDirectory(pending, directory, buffer, cookie == afterDotDot ? 0 : cookie);
}

void FileSystem::fillDirectory(const Pending& pending,
                               const std::shared_ptr<OpenDirectory>& directory,
                               const std::shared_ptr<DirectoryBuffer>& buffer,
                               std::uint64_t cookie) {
    directory->reader->after(
        cookie, [this, pending, directory, buffer](Outcome<DirectoryReader::View> view) {
            if (pending->isAnswered())
                return;
            if (!view && buffer->used == 0)
                return pending->fail(view.error());
            std::uint64_t last = 0;
            bool full = !view.has_value();
            if (view) {
                const auto& entries = view->page->entries;
                for (std::size_t index = view->index; index < entries.size() && !full; ++index)
                    full = !addEntry(pending, *buffer, entries[index], view->page->asked, last);
                // Names that were left out must not look like the end of the directory.
                if (buffer->used == 0 && !full && last != 0 && !view->page->end)
                    return fillDirectory(pending, directory, buffer, last);
            }
            if (fuse_req_t request = pending->claim())
                fuse_reply_buf(request, buffer->bytes.data(), buffer->used);
        });
}

bool FileSystem::addEntry(const Pending& pending, DirectoryBuffer& buffer,
                          const DirectoryPage::Entry& entry, TimePoint asked, std::uint64_t& last) {
    const Attributes& attributes = entry.attributes;
    if (!isSound(entry.name)) {
        last = entry.cookie;
        return true;
    }
    fuse_entry_param parameters{};
    std::shared_ptr<Inode> inode;
    const bool known = attributes.readDirError == Status::Ok && !attributes.handle.empty() &&
                       attributes.present.has(Attr::Type);
    if (known)
        parameters = entryOf({attributes.handle, attributes, asked}, inode);
    else
        parameters.attr.st_ino =
            attributes.fileId; // only a name: the kernel will look it up itself
    if (!buffer.add(pending->peek(), entry.name, parameters, entry.cookie)) {
        if (inode)
            m_inodes.release(inode);
        return false;
    }
    if (inode && buffer.listing == Listing::WithAttributes)
        ++inode->lookups;
    else if (inode)
        m_inodes.release(inode);
    last = entry.cookie;
    return true;
}

} // namespace harbrix::nfs
