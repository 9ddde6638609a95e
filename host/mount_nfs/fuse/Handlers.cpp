#include "mount_nfs/fuse/FileSystem.h"

#include <sys/sysmacros.h>

#include <cerrno>

// The C side: libfuse's table of operations, each handing over to the file system.
namespace harbrix::nfs {

namespace {

FileSystem& self(fuse_req_t request) {
    return *static_cast<FileSystem*>(fuse_req_userdata(request));
}

constexpr unsigned largestRequest = 1 << 20;

void initialise(void*, fuse_conn_info* connection) {
    connection->max_write = largestRequest;
    connection->max_readahead = largestRequest;
    connection->max_background = 64;
    connection->congestion_threshold = 48;
    connection->time_gran = 1;
    // Attributes come with every listing anyway, so they are always handed on.
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_READDIRPLUS_AUTO);
    if (connection->capable & FUSE_CAP_READDIRPLUS)
        connection->want |= FUSE_CAP_READDIRPLUS;
    if (connection->capable & FUSE_CAP_PARALLEL_DIROPS)
        connection->want |= FUSE_CAP_PARALLEL_DIROPS;
}

} // namespace

struct Handlers {
    static void lookup(fuse_req_t request, fuse_ino_t parent, const char* name) {
        self(request).lookup(request, parent, name);
    }
    static void forget(fuse_req_t request, fuse_ino_t number, std::uint64_t count) {
        self(request).m_inodes.forget(number, count);
        fuse_reply_none(request);
    }
    static void forgetMany(fuse_req_t request, std::size_t count, fuse_forget_data* forgets) {
        for (std::size_t index = 0; index < count; ++index)
            self(request).m_inodes.forget(forgets[index].ino, forgets[index].nlookup);
        fuse_reply_none(request);
    }
    static void getAttributes(fuse_req_t request, fuse_ino_t number, fuse_file_info*) {
        self(request).getAttributes(request, number);
    }
    static void setAttributes(fuse_req_t request, fuse_ino_t number, struct stat* values, int which,
                              fuse_file_info* info) {
        self(request).setAttributes(request, number, *values, which, info);
    }
    static void readLink(fuse_req_t request, fuse_ino_t number) {
        self(request).readLink(request, number);
    }
    static void makeNode(fuse_req_t request, fuse_ino_t parent, const char* name, mode_t mode,
                         dev_t device) {
        NewNode what;
        what.attributes.mode = mode & 07777;
        switch (mode & S_IFMT) {
        case S_IFIFO:
            what.type = FileType::Fifo;
            break;
        case S_IFSOCK:
            what.type = FileType::Socket;
            break;
        case S_IFCHR:
            what.type = FileType::Character;
            break;
        case S_IFBLK:
            what.type = FileType::Block;
            break;
        default:
            self(request).makeFile(request, parent, name, mode);
            return;
        }
        what.deviceMajor = major(device);
        what.deviceMinor = minor(device);
        self(request).create(request, parent, name, std::move(what));
    }
    static void makeDirectory(fuse_req_t request, fuse_ino_t parent, const char* name,
                              mode_t mode) {
        NewNode what;
        what.type = FileType::Directory;
        what.attributes.mode = mode & 07777;
        self(request).create(request, parent, name, std::move(what));
    }
    static void symbolicLink(fuse_req_t request, const char* target, fuse_ino_t parent,
                             const char* name) {
        NewNode what;
        what.type = FileType::Link;
        what.attributes.mode = 0777;
        what.linkTarget = target;
        self(request).create(request, parent, name, std::move(what));
    }
    static void unlink(fuse_req_t request, fuse_ino_t parent, const char* name) {
        self(request).remove(request, parent, name);
    }
    static void removeDirectory(fuse_req_t request, fuse_ino_t parent, const char* name) {
        self(request).removeDirectory(request, parent, name);
    }
    static void rename(fuse_req_t request, fuse_ino_t parent, const char* name,
                       fuse_ino_t newParent, const char* newName, unsigned flags) {
        self(request).rename(request, parent, name, newParent, newName, flags);
    }
    static void link(fuse_req_t request, fuse_ino_t number, fuse_ino_t parent, const char* name) {
        self(request).link(request, number, parent, name);
    }
    static void open(fuse_req_t request, fuse_ino_t number, fuse_file_info* info) {
        self(request).open(request, number, *info);
    }
    static void create(fuse_req_t request, fuse_ino_t parent, const char* name, mode_t mode,
                       fuse_file_info* info) {
        self(request).createFile(request, parent, name, mode, *info);
    }
    static void read(fuse_req_t request, fuse_ino_t, std::size_t size, off_t offset,
                     fuse_file_info* info) {
        self(request).read(request, info->fh, size, offset);
    }
    static void write(fuse_req_t request, fuse_ino_t, const char* data, std::size_t size,
                      off_t offset, fuse_file_info* info) {
        self(request).write(request, info->fh, {reinterpret_cast<const std::uint8_t*>(data), size},
                            offset);
    }
    static void flush(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
        self(request).flush(request, info->fh, info->lock_owner);
    }
    static void release(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
        self(request).release(request, info->fh);
    }
    static void synchronise(fuse_req_t request, fuse_ino_t, int, fuse_file_info* info) {
        self(request).synchronise(request, info->fh);
    }
    static void openDirectory(fuse_req_t request, fuse_ino_t number, fuse_file_info* info) {
        self(request).openDirectory(request, number, *info);
    }
    static void readDirectory(fuse_req_t request, fuse_ino_t, std::size_t size, off_t offset,
                              fuse_file_info* info) {
        self(request).readDirectory(request, info->fh, size, offset, FileSystem::Listing::Names);
    }
    static void readDirectoryPlus(fuse_req_t request, fuse_ino_t, std::size_t size, off_t offset,
                                  fuse_file_info* info) {
        self(request).readDirectory(request, info->fh, size, offset,
                                    FileSystem::Listing::WithAttributes);
    }
    static void releaseDirectory(fuse_req_t request, fuse_ino_t, fuse_file_info* info) {
        self(request).releaseDirectory(request, info->fh);
    }
    static void synchroniseDirectory(fuse_req_t request, fuse_ino_t, int, fuse_file_info*) {
        fuse_reply_err(request, 0); // the server answers a change of names once it is stable
    }
    static void statistics(fuse_req_t request, fuse_ino_t) { self(request).statistics(request); }
    static void access(fuse_req_t request, fuse_ino_t number, int mask) {
        self(request).access(request, number, mask);
    }
    static void testLock(fuse_req_t request, fuse_ino_t, fuse_file_info* info, struct flock* lock) {
        self(request).testLock(request, info->fh, info->lock_owner, *lock);
    }
    static void setLock(fuse_req_t request, fuse_ino_t, fuse_file_info* info, struct flock* lock,
                        int wait) {
        self(request).setLock(request, info->fh, info->lock_owner, *lock, wait != 0);
    }
};

fuse_lowlevel_ops FileSystem::operations() {
    // Extended attributes are missing on purpose: the kernel then says EOPNOTSUPP by itself.
    fuse_lowlevel_ops table{};
    table.init = initialise;
    table.lookup = Handlers::lookup;
    table.forget = Handlers::forget;
    table.forget_multi = Handlers::forgetMany;
    table.getattr = Handlers::getAttributes;
    table.setattr = Handlers::setAttributes;
    table.readlink = Handlers::readLink;
    table.mknod = Handlers::makeNode;
    table.mkdir = Handlers::makeDirectory;
    table.symlink = Handlers::symbolicLink;
    table.unlink = Handlers::unlink;
    table.rmdir = Handlers::removeDirectory;
    table.rename = Handlers::rename;
    table.link = Handlers::link;
    table.open = Handlers::open;
    table.create = Handlers::create;
    table.read = Handlers::read;
    table.write = Handlers::write;
    table.flush = Handlers::flush;
    table.release = Handlers::release;
    table.fsync = Handlers::synchronise;
    table.opendir = Handlers::openDirectory;
    table.readdir = Handlers::readDirectory;
    table.readdirplus = Handlers::readDirectoryPlus;
    table.releasedir = Handlers::releaseDirectory;
    table.fsyncdir = Handlers::synchroniseDirectory;
    table.statfs = Handlers::statistics;
    table.access = Handlers::access;
    table.getlk = Handlers::testLock;
    table.setlk = Handlers::setLock;
    return table;
}

} // namespace harbrix::nfs
