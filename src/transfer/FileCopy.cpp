#include "transfer/FileCopy.h"

#include "base/Worker.h"
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

/// Whether the destination can be replaced: it must be no directory and not the source.
Result<void, SystemError> checkDestination(const QByteArray& destination,
                                           const struct stat& source) {
    struct stat existing {};
    if (::lstat(destination.constData(), &existing) != 0)
        return errno == ENOENT ? Result<void, SystemError>() : lastError();
    if (S_ISDIR(existing.st_mode))
        return std::unexpected(systemError(EISDIR));
    if (existing.st_dev == source.st_dev && existing.st_ino == source.st_ino)
        return std::unexpected(
            SystemError{EINVAL, QStringLiteral("Source and destination are the same file")});
    return {};
}

} // namespace

Result<std::shared_ptr<FileCopy>, SystemError> FileCopy::open(const QByteArray& source,
                                                              const QByteArray& destination) {
    struct stat status {};
    auto from = openForReading(source, status);
    if (!from)
        return std::unexpected(from.error());
    if (const auto made = makeParents(destination); !made)
        return std::unexpected(made.error());
    if (const auto checked = checkDestination(destination, status); !checked)
        return std::unexpected(checked.error());
    auto to = PartFile::create(destination);
    if (!to)
        return std::unexpected(to.error());
    ::posix_fadvise(from->get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    // To close a file on a share can take as long as to write it.
    const auto endOnWorker = [](FileCopy* copy) { workerPool().start([copy] { delete copy; }); };
    return std::shared_ptr<FileCopy>(new FileCopy(std::move(*from), std::move(*to)), endOnWorker);
}

Result<bool, SystemError> FileCopy::run(std::size_t chunkSize,
                                        const std::function<bool(qint64 copied)>& goesOn) {
    m_chunk.resize(chunkSize);
    while (goesOn(m_copied)) {
        const auto count = readFully(m_from.get(), m_chunk);
        const auto chunk = std::span<const char>(m_chunk).first(count.value_or(0));
        const auto written = count ? writeFully(m_to.descriptor(), chunk)
                                   : Result<void, SystemError>(std::unexpected(count.error()));
        if (!written) {
            m_to.keep();
            return std::unexpected(written.error());
        }
        if (chunk.empty())
            return true;
        m_copied += static_cast<qint64>(chunk.size());
    }
    return false;
}

Result<void, SystemError> FileCopy::sync() {
    auto synced = m_to.sync();
    if (!synced)
        m_to.keep();
    return synced;
}

Result<void, SystemError> FileCopy::finish() {
    return m_to.replaceDestination();
}

void FileCopy::close() {
    m_from.reset();
    m_to.close();
}

} // namespace harbrix
