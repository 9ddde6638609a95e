#include "mount_smbfs/FuseOperations.h"

#include "mount_smbfs/CallScope.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>

namespace harbrix {

namespace {

constexpr unsigned maximumTransfer = 1U << 20;
// From here on the copies through the page cache cost more than re-reading could save.
constexpr off_t directFrom = off_t{16} << 20;

// An open folder: its listing from the first read on.
struct FolderHandle {
    ListingPointer listing;
    std::mutex mutex;
};

FuseContext& context(fuse_req_t request) {
    return *static_cast<FuseContext*>(fuse_req_userdata(request));
}

SmbFileSystem& fileSystem(fuse_req_t request) {
    return context(request).fileSystem;
}

OpenFile& fileOf(const fuse_file_info* info) {
    return **reinterpret_cast<SmbFileSystem::File*>(info->fh);
}

FolderHandle& folderOf(const fuse_file_info* info) {
    return *reinterpret_cast<FolderHandle*>(info->fh);
}

fuse_entry_param entryParameters(const SmbFileSystem::Entry& entry) {
    fuse_entry_param parameters{};
    parameters.ino = entry.number;
    parameters.attr = entry.answer.attributes;
    parameters.attr_timeout = entry.answer.remaining().count();
    parameters.entry_timeout = parameters.attr_timeout;
    return parameters;
}

// Runs the operation as the request's own; its reply must come after, when no interrupt can reach
// it.
template <typename Operation>
auto perform(fuse_req_t request, Operation&& operation) {
    const CallScope scope(request);
    return operation(fileSystem(request));
}

void replyEntry(fuse_req_t request, const Outcome<SmbFileSystem::Entry>& entry) {
    if (!entry) {
        fuse_reply_err(request, entry.error());
        return;
    }
    const fuse_entry_param parameters = entryParameters(*entry);
    if (fuse_reply_entry(request, &parameters) != 0)
        fileSystem(request).forget(entry->number, 1);
}

void replyDone(fuse_req_t request, const Outcome<void>& done) {
    fuse_reply_err(request, done ? 0 : done.error());
}

void replyAttributes(fuse_req_t request, const Outcome<Answer>& answer) {
    if (answer)
        fuse_reply_attr(request, &answer->attributes, answer->remaining().count());
    else
        fuse_reply_err(request, answer.error());
}

void initialise(void*, fuse_conn_info* connection) {
    connection->max_write = maximumTransfer;
    connection->max_background = 32;
    connection->congestion_threshold = 24;
    connection->want |= connection->capable &
                        (FUSE_CAP_READDIRPLUS | FUSE_CAP_PARALLEL_DIROPS | FUSE_CAP_ASYNC_READ |
                         FUSE_CAP_ATOMIC_O_TRUNC | FUSE_CAP_AUTO_INVAL_DATA);
    // Attributes come with the names for free; and data is wanted in memory, not in pipes.
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_READDIRPLUS_AUTO | FUSE_CAP_SPLICE_READ |
                                               FUSE_CAP_SPLICE_WRITE | FUSE_CAP_SPLICE_MOVE);
}

void lookUp(fuse_req_t request, fuse_ino_t parent, const char* name) {
    replyEntry(request,
               perform(request, [&](SmbFileSystem& fs) { return fs.lookUp(parent, name); }));
}

void forget(fuse_req_t request, fuse_ino_t number, std::uint64_t lookUps) {
    fileSystem(request).forget(number, lookUps);
    fuse_reply_none(request);
}

void forgetMany(fuse_req_t request, std::size_t count, fuse_forget_data* items) {
    for (const fuse_forget_data& item : std::span(items, count))
        fileSystem(request).forget(item.ino, item.nlookup);
    fuse_reply_none(request);
}

void getAttributes(fuse_req_t request, fuse_ino_t number, fuse_file_info*) {
    replyAttributes(request,
                    perform(request, [&](SmbFileSystem& fs) { return fs.attributes(number); }));
}

void setAttributes(fuse_req_t request, fuse_ino_t number, struct stat* wanted, int which,
                   fuse_file_info*) {
    replyAttributes(request, perform(request, [&](SmbFileSystem& fs) {
                        return fs.setAttributes(number, *wanted, which);
                    }));
}

void makeFolder(fuse_req_t request, fuse_ino_t parent, const char* name, mode_t) {
    replyEntry(request,
               perform(request, [&](SmbFileSystem& fs) { return fs.makeFolder(parent, name); }));
}

void removeFolder(fuse_req_t request, fuse_ino_t parent, const char* name) {
    replyDone(request,
              perform(request, [&](SmbFileSystem& fs) { return fs.removeFolder(parent, name); }));
}

void removeFile(fuse_req_t request, fuse_ino_t parent, const char* name) {
    replyDone(request,
              perform(request, [&](SmbFileSystem& fs) { return fs.removeFile(parent, name); }));
}

void rename(fuse_req_t request, fuse_ino_t parent, const char* name, fuse_ino_t newParent,
            const char* newName, unsigned flags) {
    replyDone(request, perform(request, [&](SmbFileSystem& fs) {
                  return fs.rename(parent, name, newParent, newName, flags);
              }));
}

void refuseLink(fuse_req_t request, const char*, fuse_ino_t, const char*) {
    fuse_reply_err(request, EPERM);
}

void refuseHardLink(fuse_req_t request, fuse_ino_t, fuse_ino_t, const char*) {
    fuse_reply_err(request, EPERM);
}

void makeNode(fuse_req_t request, fuse_ino_t parent, const char* name, mode_t mode, dev_t) {
    if (!S_ISREG(mode)) {
        fuse_reply_err(request, EPERM);
        return;
    }
    const auto made = perform(request, [&](SmbFileSystem& fs) -> Outcome<SmbFileSystem::Entry> {
        const auto created = fs.create(parent, name, O_RDWR | O_EXCL);
        if (!created)
            return std::unexpected(created.error());
        fs.release(created->first.number);
        return created->first;
    });
    replyEntry(request, made);
}

// A file that is only read has nothing to flush, and a large one is read past the page cache.
void settle(fuse_req_t request, fuse_file_info* info, const SmbFileSystem::File& file, off_t size) {
    const bool isReader = (info->flags & O_ACCMODE) == O_RDONLY;
    info->fh = reinterpret_cast<std::uint64_t>(new SmbFileSystem::File(file));
    info->noflush = isReader;
    info->direct_io = isReader && size >= directFrom && context(request).abilities.canMapDirect;
}

void openFile(fuse_req_t request, fuse_ino_t number, fuse_file_info* info) {
    const auto file =
        perform(request, [&](SmbFileSystem& fs) { return fs.open(number, info->flags); });
    if (!file) {
        fuse_reply_err(request, file.error());
        return;
    }
    settle(request, info, *file, fileSystem(request).knownSize(number));
    if (fuse_reply_open(request, info) != 0) {
        delete reinterpret_cast<SmbFileSystem::File*>(info->fh);
        fileSystem(request).release(number);
    }
}

void createFile(fuse_req_t request, fuse_ino_t parent, const char* name, mode_t,
                fuse_file_info* info) {
    const auto created =
        perform(request, [&](SmbFileSystem& fs) { return fs.create(parent, name, info->flags); });
    if (!created) {
        fuse_reply_err(request, created.error());
        return;
    }
    const auto& [entry, file] = *created;
    settle(request, info, file, entry.answer.attributes.st_size);
    const fuse_entry_param parameters = entryParameters(entry);
    SmbFileSystem& fs = fileSystem(request);
    if (fuse_reply_create(request, &parameters, info) != 0) {
        delete reinterpret_cast<SmbFileSystem::File*>(info->fh);
        fs.release(entry.number);
        fs.forget(entry.number, 1);
    }
}

void readFile(fuse_req_t request, fuse_ino_t, std::size_t size, off_t offset,
              fuse_file_info* info) {
    const auto result =
        perform(request, [&](SmbFileSystem&) { return fileOf(info).read(size, offset); });
    if (result)
        fuse_reply_buf(request, result->bytes.data(), result->bytes.size());
    else
        fuse_reply_err(request, result.error());
}

void writeFile(fuse_req_t request, fuse_ino_t, const char* bytes, std::size_t size, off_t offset,
               fuse_file_info* info) {
    const auto taken = perform(request, [&](SmbFileSystem&) {
        return fileOf(info).write(std::span(bytes, size), offset);
    });
    if (taken)
        fuse_reply_write(request, *taken);
    else
        fuse_reply_err(request, taken.error());
}

void flushFile(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
    replyDone(request, perform(request, [&](SmbFileSystem&) { return fileOf(info).flush(); }));
}

void syncFile(fuse_req_t request, fuse_ino_t number, int, fuse_file_info* info) {
    flushFile(request, number, info);
}

void releaseFile(fuse_req_t request, fuse_ino_t number, fuse_file_info* info) {
    delete reinterpret_cast<SmbFileSystem::File*>(info->fh);
    perform(request, [&](SmbFileSystem& fs) {
        fs.release(number);
        return 0;
    });
    fuse_reply_err(request, 0);
}

void openFolder(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
    info->fh = reinterpret_cast<std::uint64_t>(new FolderHandle);
    if (fuse_reply_open(request, info) != 0)
        delete &folderOf(info);
}

void releaseFolder(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
    delete &folderOf(info);
    fuse_reply_err(request, 0);
}

// Fills one reply with entries from a place in the listing on; the two dots stand before it.
class FolderReply {
public:
    FolderReply(fuse_req_t request, fuse_ino_t folder, std::size_t size)
        : m_request(request), m_folder(folder), m_buffer(size) {}

    void fill(const FolderListing& listing, std::size_t position) {
        const std::size_t end = listing.entries.size() + 2;
        while (position < end && add(listing, position, static_cast<off_t>(position + 1)))
            ++position;
    }
    void send() { fuse_reply_buf(m_request, m_buffer.data(), m_used); }

private:
    bool add(const FolderListing& listing, std::size_t position, off_t next) {
        if (position < 2) {
            fuse_entry_param dots{};
            dots.attr.st_mode = S_IFDIR;
            dots.attr.st_ino = m_folder;
            return append(position == 0 ? "." : "..", dots, next);
        }
        SmbFileSystem& fs = fileSystem(m_request);
        const ListedEntry& listed = listing.entries[position - 2];
        if (!fs.isStillThere(m_folder, listing, listed))
            return true;
        const auto entry = fs.listedEntry(m_folder, listing, listed);
        fuse_entry_param parameters{};
        if (entry) {
            parameters = entryParameters(*entry);
        } else {
            // Without a number the kernel takes the name alone and asks for the rest.
            parameters.attr.st_mode = listed.attributes.st_mode;
            parameters.attr.st_ino = listed.attributes.st_ino;
        }
        const bool hasFit = append(listed.name.c_str(), parameters, next);
        if (!hasFit && entry)
            fs.forget(entry->number, 1);
        return hasFit;
    }

    bool append(const char* name, const fuse_entry_param& parameters, off_t next) {
        const std::size_t room = m_buffer.size() - m_used;
        const std::size_t needed =
            fuse_add_direntry_plus(m_request, &m_buffer[m_used], room, name, &parameters, next);
        if (needed > room)
            return false;
        m_used += needed;
        return true;
    }

    fuse_req_t m_request;
    fuse_ino_t m_folder;
    std::vector<char> m_buffer;
    std::size_t m_used = 0;
};

void readFolder(fuse_req_t request, fuse_ino_t number, std::size_t size, off_t offset,
                fuse_file_info* info) {
    FolderHandle& folder = folderOf(info);
    const std::lock_guard lock(folder.mutex);
    if (offset == 0 || !folder.listing) {
        auto listing = perform(request, [&](SmbFileSystem& fs) { return fs.list(number); });
        if (!listing) {
            fuse_reply_err(request, listing.error());
            return;
        }
        folder.listing = std::move(*listing);
    }
    FolderReply reply(request, number, size);
    reply.fill(*folder.listing, static_cast<std::size_t>(offset));
    reply.send();
}

void capacity(fuse_req_t request, fuse_ino_t) {
    const struct statvfs info = fileSystem(request).capacity();
    fuse_reply_statfs(request, &info);
}

} // namespace

fuse_lowlevel_ops smbFuseOperations() {
    fuse_lowlevel_ops operations{};
    operations.init = initialise;
    operations.lookup = lookUp;
    operations.forget = forget;
    operations.forget_multi = forgetMany;
    operations.getattr = getAttributes;
    operations.setattr = setAttributes;
    operations.mknod = makeNode;
    operations.mkdir = makeFolder;
    operations.unlink = removeFile;
    operations.rmdir = removeFolder;
    operations.symlink = refuseLink;
    operations.link = refuseHardLink;
    operations.rename = rename;
    operations.open = openFile;
    operations.create = createFile;
    operations.read = readFile;
    operations.write = writeFile;
    operations.flush = flushFile;
    operations.fsync = syncFile;
    operations.release = releaseFile;
    operations.opendir = openFolder;
    operations.readdirplus = readFolder;
    operations.releasedir = releaseFolder;
    operations.statfs = capacity;
    // Neither access nor extended attributes: the kernel hears ENOSYS once and asks no more.
    return operations;
}

} // namespace harbrix
