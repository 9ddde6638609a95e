#include "transfer/FileCopy.h"

#include "files/FileIo.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <span>

namespace harbrix {
namespace {

Result<void, SystemError> makeParents(const QByteArray& path) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path.toStdString()).parent_path(),
                                        error);
    if (error)
        return std::unexpected(systemError(error.value()));
    return {};
}

/// Removes what stands at the destination, which must be no directory and not the source.
Result<void, SystemError> clearTheWay(const QByteArray& destination, const struct stat& source) {
    struct stat existing {};
    if (::lstat(destination.constData(), &existing) != 0)
        return errno == ENOENT ? Result<void, SystemError>() : lastError();
    if (existing.st_dev == source.st_dev && existing.st_ino == source.st_ino)
        return std::unexpected(
            SystemError{EINVAL, QStringLiteral("Source and destination are the same file")});
    if (::unlink(destination.constData()) != 0)
        return lastError();
    return {};
}

} // namespace

Result<std::shared_ptr<FileCopy>, SystemError> FileCopy::open(const QByteArray& source,
                                                              QByteArray destination) {
    struct stat status {};
    auto from = openForReading(source, status);
    if (!from)
        return std::unexpected(from.error());
    if (const auto made = makeParents(destination); !made)
        return std::unexpected(made.error());
    if (const auto cleared = clearTheWay(destination, status); !cleared)
        return std::unexpected(cleared.error());
    UniqueDescriptor to(
        ::open(destination.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!to)
        return lastError();
    ::posix_fadvise(from->get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    return std::shared_ptr<FileCopy>(
        new FileCopy(std::move(*from), std::move(to), std::move(destination)));
}

Result<bool, SystemError> FileCopy::run(std::size_t chunkSize,
                                        const std::function<bool(qint64 copied)>& goesOn) {
    m_chunk.resize(chunkSize);
    while (goesOn(m_copied)) {
        const auto count = readFully(m_from.get(), m_chunk);
        if (!count)
            return std::unexpected(count.error());
        if (*count == 0)
            return true;
        const auto written = writeFully(m_to.get(), std::span<const char>(m_chunk).first(*count));
        if (!written)
            return std::unexpected(written.error());
        m_copied += static_cast<qint64>(*count);
    }
    return false;
}

Result<void, SystemError> FileCopy::close() {
    if (::close(m_to.release()) == 0)
        return {};
    if (errno == EIO || errno == ENOSPC || errno == EDQUOT)
        return lastError();
    return {};
}

void FileCopy::removeDestination() {
    ::unlink(m_destination.constData());
}

} // namespace harbrix
