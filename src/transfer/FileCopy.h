#pragma once

#include "base/Result.h"
#include "base/UniqueDescriptor.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <vector>

namespace harbrix {

/// The two open files of a transfer. Every call blocks and runs on a worker, one at a time but for
/// removeDestination(). Files still open at its end are closed.
class FileCopy {
public:
    /// Opens the source and puts a new file in the place of the destination, whose parent
    /// directories are made. A destination that is a directory, or the source itself, is refused
    /// and stays.
    [[nodiscard]] static Result<std::shared_ptr<FileCopy>, SystemError>
    open(const QByteArray& source, QByteArray destination);

    /// Copies one chunk after the other. `goesOn` is asked before each, with the number of bytes
    /// that have been copied. True at the end of the source; false when `goesOn` said no, and the
    /// next call goes on from there.
    [[nodiscard]] Result<bool, SystemError> run(std::size_t chunkSize,
                                                const std::function<bool(qint64 copied)>& goesOn);
    /// Closes the destination. Fails only where bytes that were taken could not be stored, which
    /// network file systems may tell as late as this (close(2)).
    [[nodiscard]] Result<void, SystemError> close();
    /// Removes the destination.
    void removeDestination();

private:
    FileCopy(UniqueDescriptor from, UniqueDescriptor to, QByteArray destination)
        : m_from(std::move(from)), m_to(std::move(to)), m_destination(std::move(destination)) {}

    UniqueDescriptor m_from;
    UniqueDescriptor m_to;
    QByteArray m_destination;
    std::vector<char> m_chunk;
    qint64 m_copied = 0;
};

} // namespace harbrix
