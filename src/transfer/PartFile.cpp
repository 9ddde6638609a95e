#include "transfer/PartFile.h"

#include "files/FileIo.h"

#include <QSet>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <mutex>
#include <vector>

namespace harbrix {
namespace {

constexpr QByteArrayView suffix = ".harbrix-part";

QByteArray directoryOf(const QByteArray& path) {
    return path.left(path.lastIndexOf('/') + 1);
}

/// The part files that copies of this program write to just now, and the directories in which there
/// is nothing else to be found. All windows share it. Any thread.
class LiveParts {
public:
    static LiveParts& instance() {
        static LiveParts parts;
        return parts;
    }
    /// False where a copy writes to it already.
    bool begin(const QByteArray& path) {
        const std::lock_guard lock(m_mutex);
        if (m_paths.contains(path))
            return false;
        m_paths.insert(path);
        return true;
    }
    void end(const QByteArray& path, bool isLeftBehind) {
        const std::lock_guard lock(m_mutex);
        m_paths.remove(path);
        if (isLeftBehind)
            m_swept.remove(directoryOf(path));
    }
    [[nodiscard]] bool isLive(const QByteArray& path) const {
        const std::lock_guard lock(m_mutex);
        return m_paths.contains(path);
    }
    /// True once, until a part is left behind in the directory.
    [[nodiscard]] bool needsSweep(const QByteArray& directory) {
        const std::lock_guard lock(m_mutex);
        if (m_swept.contains(directory))
            return false;
        m_swept.insert(directory);
        return true;
    }

private:
    mutable std::mutex m_mutex;
    QSet<QByteArray> m_paths;
    QSet<QByteArray> m_swept;
};

/// Removes a part file, unless a process of this machine writes to it: each holds a lock on its
/// own, which ends with it. (NFS gives such a lock to writers only.)
void removeAbandoned(int directory, const QByteArray& name) {
    const UniqueDescriptor file(
        ::openat(directory, name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return;
    ::unlinkat(directory, name.constData(), 0);
}

/// Removes the user's part files to which nobody writes any more. Failures are ignored: another
/// copy into the directory tries again.
void sweep(const QByteArray& directory) {
    const DirectoryStream stream(::opendir(directory.constData()));
    if (!stream)
        return;
    std::vector<QByteArray> left;
    while (const dirent* entry = ::readdir(stream.get())) {
        const QByteArray name(entry->d_name);
        if (name.startsWith('.') && name.endsWith(suffix))
            left.push_back(name);
    }
    for (const QByteArray& name : left) {
        struct stat status {};
        if (!LiveParts::instance().isLive(directory + name) &&
            ::fstatat(::dirfd(stream.get()), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(status.st_mode) && status.st_uid == ::geteuid())
            removeAbandoned(::dirfd(stream.get()), name);
    }
}

std::unexpected<SystemError> beingCopied() {
    return std::unexpected(SystemError{EBUSY, QStringLiteral("The file is being copied already")});
}

} // namespace

QByteArray partPath(const QByteArray& destination) {
    const QByteArray directory = directoryOf(destination);
    QByteArray name = destination.mid(directory.size());
    const qsizetype longest = NAME_MAX - 1 - suffix.size();
    if (name.size() > longest) {
        // Not within a character: some file systems take whole UTF-8 only.
        qsizetype end = longest;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U)
            --end;
        name.truncate(end);
    }
    return directory + '.' + name + suffix.toByteArray();
}

Result<PartFile, SystemError> PartFile::create(QByteArray destination) {
    QByteArray path = partPath(destination);
    LiveParts& live = LiveParts::instance();
    if (!live.begin(path))
        return beingCopied();
    if (live.needsSweep(directoryOf(path)))
        sweep(directoryOf(path));
    // A copy to this destination that has failed may have left one.
    removeAbandoned(AT_FDCWD, path);
    UniqueDescriptor file(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file) {
        const int error = errno;
        live.end(path, false);
        return error == EEXIST ? beingCopied() : std::unexpected(systemError(error));
    }
    // Where locks are not known, other processes cannot tell; copies of this one can.
    (void) ::flock(file.get(), LOCK_EX | LOCK_NB);
    return PartFile(std::move(file), std::move(path), std::move(destination));
}

void PartFile::close() {
    const QByteArray path = std::exchange(m_path, {});
    if (path.isEmpty())
        return;
    m_file.reset();
    if (!m_isKept && !m_isInPlace)
        ::unlink(path.constData());
    LiveParts::instance().end(path, m_isKept);
}

Result<void, SystemError> PartFile::sync() {
    if (::fsync(m_file.get()) != 0)
        return lastError();
    return {};
}

Result<void, SystemError> PartFile::replaceDestination() {
    struct stat written {};
    struct stat named {};
    if (::fstat(m_file.get(), &written) != 0 || ::lstat(m_path.constData(), &named) != 0)
        return lastError();
    if (written.st_dev != named.st_dev || written.st_ino != named.st_ino)
        return std::unexpected(systemError(ESTALE));
    if (::close(m_file.release()) != 0 && errno != EINTR)
        return lastError();
    if (::rename(m_path.constData(), m_destination.constData()) != 0)
        return lastError();
    m_isInPlace = true;
    // The name is safe once the directory is; not every file system can sync one.
    const UniqueDescriptor directory(
        ::open(directoryOf(m_destination).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory)
        ::fsync(directory.get());
    return {};
}

} // namespace harbrix
