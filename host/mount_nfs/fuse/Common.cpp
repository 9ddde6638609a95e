#include "mount_nfs/fuse/FileSystem.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace harbrix::nfs {

namespace {

constexpr std::size_t maximumName = 255;
constexpr double cacheSeconds = 1.0;
constexpr blksize_t blockSize = 1 << 20;

mode_t typeBits(FileType type) {
    switch (type) {
    case FileType::Directory:
    case FileType::AttributeDirectory:
        return S_IFDIR;
    case FileType::Block:
        return S_IFBLK;
    case FileType::Character:
        return S_IFCHR;
    case FileType::Link:
        return S_IFLNK;
    case FileType::Socket:
        return S_IFSOCK;
    case FileType::Fifo:
        return S_IFIFO;
    default:
        return S_IFREG;
    }
}

timespec timeOf(const Time& time) {
    return {static_cast<time_t>(time.seconds), static_cast<long>(time.nanoseconds)};
}

} // namespace

FileSystem::FileSystem(EventLoop& loop, BufferPool& pool, Operations& operations, Settings settings,
                       const Node& root, const Attributes& statistics)
    : m_loop(loop), m_pool(pool), m_operations(operations), m_settings(settings),
      m_owners(settings.ownership), m_requests(loop, operations.session()),
      m_root(m_inodes.remember(root.handle)), m_statistics(statistics),
      m_statisticsAt(Clock::now()) {
    m_root->learn(root.attributes, root.asked);
    m_loop.beforeWait([this] { serveWaiters(); });
}

std::shared_ptr<Inode> FileSystem::inodeOf(fuse_req_t request, fuse_ino_t number) {
    auto inode = m_inodes.find(number);
    if (!inode)
        fuse_reply_err(request, ESTALE);
    return inode;
}

struct stat FileSystem::statOf(const Inode& inode, const Attributes& attributes, TimePoint asked) {
    struct stat result {};
    const bool mounted = attributes.present.has(Attr::MountedOnFileId) && attributes.fileId == 0;
    result.st_ino = mounted ? attributes.mountedOnFileId : attributes.fileId;
    result.st_mode = typeBits(attributes.type) | attributes.mode;
    result.st_nlink = inode.hidden ? attributes.links - 1 : attributes.links;
    result.st_uid = m_owners.user(attributes.owner);
    result.st_gid = m_owners.group(attributes.ownerGroup);
    result.st_rdev = makedev(attributes.deviceMajor, attributes.deviceMinor);
    // A size past what off_t holds would turn negative in the kernel.
    result.st_size = static_cast<off_t>(
        std::min<std::uint64_t>(inode.sizeWithWrites(attributes, asked), INT64_MAX));
    result.st_blocks = static_cast<blkcnt_t>((attributes.spaceUsed + 511) / 512);
    result.st_blksize = blockSize;
    result.st_atim = timeOf(attributes.accessed);
    result.st_mtim = timeOf(attributes.modified);
    result.st_ctim = timeOf(attributes.statusChanged);
    return result;
}

fuse_entry_param FileSystem::entryOf(const Node& node, std::shared_ptr<Inode>& inode) {
    inode = m_inodes.remember(node.handle);
    inode->learn(node.attributes, node.asked);
    fuse_entry_param entry{};
    entry.ino = inode->number;
    entry.generation = 1;
    entry.attr = statOf(*inode, node.attributes, node.asked);
    entry.attr_timeout = cacheSeconds;
    entry.entry_timeout = cacheSeconds;
    return entry;
}

void FileSystem::replyEntry(const Pending& pending, const Node& node) {
    fuse_req_t request = pending->claim();
    if (!request)
        return;
    std::shared_ptr<Inode> inode;
    const fuse_entry_param entry = entryOf(node, inode);
    ++inode->lookups;
    // The kernel does not count an entry that it did not take.
    if (fuse_reply_entry(request, &entry) != 0)
        m_inodes.forget(inode->number, 1);
}

void FileSystem::replyAttributes(const Pending& pending, const std::shared_ptr<Inode>& inode,
                                 const Node& node) {
    inode->learn(node.attributes, node.asked);
    if (fuse_req_t request = pending->claim()) {
        const struct stat values = statOf(*inode, node.attributes, node.asked);
        fuse_reply_attr(request, &values, cacheSeconds);
    }
}

void FileSystem::drained(const std::shared_ptr<Inode>& inode, std::function<void()> then) {
    if (!inode->writes || inode->writes->isDrained())
        return then();
    inode->writes->drain([then = std::move(then)](Status) { then(); });
}

void FileSystem::resized(Inode& inode) {
    ++inode.contentVersion;
    inode.cachedChange = 0;
    if (inode.writes && inode.writes->isDrained())
        inode.writes->truncated();
}

void FileSystem::waitForRoom(std::function<bool()> attempt) {
    m_roomWaiters.push_back(std::move(attempt));
}

void FileSystem::serveWaiters() {
    if (m_roomWaiters.empty())
        return;
    for (const auto& [number, inode] : m_inodes.all())
        if (inode->writes && !m_pool.room(m_settings.writeSize))
            inode->writes->relievePressure();
    while (!m_roomWaiters.empty() && m_roomWaiters.front()())
        m_roomWaiters.pop_front();
}

bool FileSystem::nameFits(const Pending& pending, const std::string& name) {
    if (name.size() <= maximumName)
        return true;
    pending->fail(ENAMETOOLONG);
    return false;
}

void FileSystem::finish(std::function<void()> done) {
    m_finished = std::move(done);
    ++m_closing;
    for (auto& [handle, file] : std::exchange(m_files, {}))
        closeFile(file);
    m_directories.clear();
    m_loop.after(Duration::zero(), [this] {
        if (--m_closing == 0 && m_finished)
            std::exchange(m_finished, nullptr)();
    });
}

} // namespace harbrix::nfs
