#pragma once

#include "base/Result.h"
#include "base/UniqueDescriptor.h"

#include <QByteArray>

#include <memory>

namespace harbrix {

/// The two open files of a transfer. Every call blocks and runs on a worker; a read and a write may
/// run at the same time, two of a kind may not. Files still open at its end are closed.
class FileCopy {
public:
    /// Opens the source and puts a new file in the place of the destination, whose parent
    /// directories are made. A destination that is a directory, or the source itself, is refused
    /// and stays.
    [[nodiscard]] static Result<std::shared_ptr<FileCopy>, SystemError>
    open(const QByteArray& source, QByteArray destination);

    /// The next bytes of the source; empty at its end.
    [[nodiscard]] Result<QByteArray, SystemError> read(qsizetype size);
    [[nodiscard]] Result<void, SystemError> write(const QByteArray& bytes);
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
};

} // namespace harbrix
