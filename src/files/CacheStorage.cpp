#include "files/CacheStorage.h"

#include "files/FileIo.h"
#include "files/FileUrl.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace harbrix {
namespace {

constexpr std::size_t bufferSize = 256 * 1024;

/// Opens a directory below another one, after making it if need be.
Result<UniqueDescriptor, SystemError> enterDirectory(int parent, const QByteArray& name) {
    if (::mkdirat(parent, name.constData(), 0700) != 0 && errno != EEXIST)
        return lastError();
    UniqueDescriptor directory(
        ::openat(parent, name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory)
        return lastError();
    return directory;
}

/// The directory that is to hold the copy.
Result<UniqueDescriptor, SystemError> enterTargetDirectory(const CopyTarget& target) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    UniqueDescriptor directory(::open(target.cacheDirectory.constData(), flags));
    if (!directory) {
        if (const auto made = makeCacheDirectory(target.cacheDirectory); !made)
            return std::unexpected(made.error());
        directory.reset(::open(target.cacheDirectory.constData(), flags));
        if (!directory)
            return lastError();
    }
    QList<QByteArray> steps = target.relativePath.split('/');
    steps.last() = target.folder;
    std::rotate(steps.begin(), steps.end() - 1, steps.end());
    for (const QByteArray& step : steps) {
        auto inner = enterDirectory(directory.get(), step);
        if (!inner)
            return inner;
        directory = std::move(*inner);
    }
    return directory;
}

Result<void, SystemError> copyBytes(int from, int to, qint64 size, qint64 largest) {
    const auto wanted = static_cast<std::size_t>(std::max<qint64>(size, 0)) + 1;
    const std::size_t capacity = std::min(wanted, bufferSize);
    const auto buffer = std::make_unique_for_overwrite<char[]>(capacity);
    for (qint64 copied = 0;;) {
        const auto count = readFully(from, {buffer.get(), capacity});
        if (!count)
            return std::unexpected(count.error());
        copied += static_cast<qint64>(*count);
        // The source may have grown since it was looked at, or have no end at all.
        if (copied > largest)
            return std::unexpected(systemError(EFBIG));
        if (const auto written = writeFully(to, {buffer.get(), *count}); !written)
            return written;
        if (*count < capacity)
            return {};
    }
}

Result<void, SystemError> makeRoomFor(int directory, const QByteArray& name,
                                      const struct stat& source) {
    struct stat existing {};
    if (::fstatat(directory, name.constData(), &existing, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? Result<void, SystemError>() : lastError();
    if (existing.st_dev == source.st_dev && existing.st_ino == source.st_ino)
        return std::unexpected(
            SystemError{EINVAL, QStringLiteral("The file would be replaced by itself")});
    return removeTree(directory, name);
}

Result<void, SystemError> copyFile(const QByteArray& source, int directory, const QByteArray& name,
                                   qint64 largest) {
    struct stat status {};
    const auto from = openForReading(source, status);
    if (!from)
        return std::unexpected(from.error());
    if (!S_ISREG(status.st_mode))
        return std::unexpected(SystemError{EINVAL, QStringLiteral("Not a regular file")});
    if (auto room = makeRoomFor(directory, name, status); !room)
        return room;
    UniqueDescriptor to(::openat(directory, name.constData(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!to)
        return lastError();
    auto copied = copyBytes(from->get(), to.get(), status.st_size, largest);
    // What could not be written earlier may be told only now.
    if (copied && ::close(to.release()) != 0 && errno != EINTR)
        copied = lastError();
    if (!copied)
        ::unlinkat(directory, name.constData(), 0);
    return copied;
}

Result<void, SystemError> copyDirectory(const QByteArray& source, int directory,
                                        const CopyTarget& target, const QByteArray& name) {
    struct stat status {};
    if (::stat(source.constData(), &status) != 0)
        return lastError();
    if (auto room = makeRoomFor(directory, name, status); !room)
        return room;
    std::error_code error;
    std::filesystem::copy(source.toStdString(), target.path().toStdString(),
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::skip_symlinks,
                          error);
    if (!error)
        return {};
    (void) removeTree(directory, name);
    return std::unexpected(systemError(error.value()));
}

QList<QByteArray> foldersIn(const QByteArray& cacheDirectory, const OwnFolders& wanted) {
    const QDir directory(QFile::decodeName(cacheDirectory));
    QList<QByteArray> paths;
    for (const QString& name :
         directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
        if (!wanted || wanted->contains(name))
            paths << QFile::encodeName(directory.filePath(name));
    }
    return paths;
}

CopyOutcome serve(const CopyRequest& request, qint64 largest, qint64 room) {
    using enum CopyOutcome::Kind;
    const auto attributes = readSourceAttributes(request.source);
    if (!attributes)
        return {};
    CopyOutcome outcome{Copied, *attributes, {}};
    if (attributes->size > largest)
        outcome.kind = TooLarge;
    else if (request.isPresent)
        outcome.kind = Present;
    else if (attributes->isSpecial)
        outcome.kind = Special;
    else if (!request.isSafe)
        outcome.kind = Unsafe;
    else if (attributes->size > room)
        outcome.kind = NeedsRoom;
    if (outcome.kind != Copied)
        return outcome;
    if (const auto copied = copyIntoCache(request.source, request.target, largest); !copied) {
        outcome.kind = Failed;
        outcome.error = copied.error();
    }
    return outcome;
}

} // namespace

std::vector<CopyOutcome> copyInTurn(const std::vector<CopyRequest>& requests, qint64 largest,
                                    qint64 room, std::chrono::milliseconds budget) {
    const auto end = std::chrono::steady_clock::now() + budget;
    std::vector<CopyOutcome> outcomes;
    for (const CopyRequest& request : requests) {
        const CopyOutcome& outcome = outcomes.emplace_back(serve(request, largest, room));
        if (outcome.kind == CopyOutcome::Kind::Copied)
            room -= outcome.attributes.size;
        if (outcome.kind == CopyOutcome::Kind::NeedsRoom || std::chrono::steady_clock::now() >= end)
            break;
    }
    return outcomes;
}

std::optional<SourceAttributes> readSourceAttributes(const QByteArray& path) {
    struct stat status {};
    if (path.isEmpty() || ::stat(path.constData(), &status) != 0)
        return std::nullopt;
    return SourceAttributes{status.st_size, S_ISDIR(status.st_mode),
                            !S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode)};
}

QByteArray CopyTarget::path() const {
    return cacheDirectory + '/' + folder + '/' + relativePath;
}

Result<void, SystemError> makeCacheDirectory(const QByteArray& path) {
    if (::mkdir(path.constData(), 0700) == 0 || errno == EEXIST)
        return {};
    const qsizetype slash = path.lastIndexOf('/');
    if (errno != ENOENT || slash <= 0)
        return lastError();
    if (auto made = makeCacheDirectory(path.left(slash)); !made)
        return made;
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return lastError();
    return {};
}

Result<void, SystemError> copyIntoCache(const QByteArray& source, const CopyTarget& target,
                                        qint64 largest) {
    const auto attributes = readSourceAttributes(source);
    if (!attributes)
        return lastError();
    const auto directory = enterTargetDirectory(target);
    if (!directory)
        return std::unexpected(directory.error());
    const QByteArray name = target.relativePath.mid(target.relativePath.lastIndexOf('/') + 1);
    if (attributes->isDirectory)
        return copyDirectory(source, directory->get(), target, name);
    return copyFile(source, directory->get(), name, largest);
}

void removeCopy(const CacheEntry& entry) {
    if (ownsItsCopy(entry))
        (void) removeTree(AT_FDCWD, nativePath(entry.localURL));
}

void sweepEmptyDirectories(const QByteArray& cacheDirectory, const OwnFolders& folders) {
    for (const QByteArray& folder : foldersIn(cacheDirectory, folders))
        // rmdir(2) by itself refuses what is not empty.
        ::rmdir(folder.constData());
}

void clearCacheDirectory(const QByteArray& cacheDirectory, const OwnFolders& folders) {
    if (!folders) {
        (void) removeTree(AT_FDCWD, cacheDirectory);
        return;
    }
    for (const QByteArray& folder : foldersIn(cacheDirectory, folders))
        (void) removeTree(AT_FDCWD, folder);
    ::unlink((cacheDirectory + '/' + cacheIndexFileName).constData());
}

Result<void, SystemError> replaceIndexQuickly(const QByteArray& path, const QByteArray& contents) {
    QByteArray beside = path + ".XXXXXX";
    UniqueDescriptor file(::mkostemp(beside.data(), O_CLOEXEC));
    if (!file)
        return lastError();
    auto written =
        writeFully(file.get(), {contents.constData(), static_cast<std::size_t>(contents.size())});
    if (written && ::rename(beside.constData(), path.constData()) != 0)
        written = lastError();
    if (!written)
        ::unlink(beside.constData());
    return written;
}

void removeUnfinishedIndexes(const QByteArray& cacheDirectory) {
    const QDir directory(QFile::decodeName(cacheDirectory));
    const QString pattern = QLatin1String(cacheIndexFileName) + QStringLiteral(".??????");
    for (const QString& name : directory.entryList({pattern}, QDir::Files | QDir::NoSymLinks))
        ::unlink(QFile::encodeName(directory.filePath(name)).constData());
}

} // namespace harbrix
