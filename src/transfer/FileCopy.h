#pragma once

#include "transfer/PartFile.h"

#include <functional>
#include <memory>
#include <vector>

namespace harbrix {

/// The two open files of a transfer. Every call blocks and runs on a worker, one at a time.
///
/// Wherever the last reference is dropped, a worker closes the files. A copy that has not been
/// finished leaves the destination as it was; its part file is removed, except after a failure,
/// which keeps it until the next copy into that directory.
class FileCopy {
public:
    /// Opens the source and makes the part file of the destination, whose parent directories are
    /// made. A destination that is a directory, or the source itself, is refused.
    [[nodiscard]] static Result<std::shared_ptr<FileCopy>, SystemError>
    open(const QByteArray& source, const QByteArray& destination);

    /// Copies one chunk after the other. `goesOn` is asked before each, with the number of bytes
    /// that have been copied. True at the end of the source; false when `goesOn` said no, and the
    /// next call goes on from there.
    [[nodiscard]] Result<bool, SystemError> run(std::size_t chunkSize,
                                                const std::function<bool(qint64 copied)>& goesOn);
    /// Waits until what was written is stored; may take as long as the file system holds data back.
    [[nodiscard]] Result<void, SystemError> sync();
    /// Puts the copy in the place of the destination. Where that fails, the part file is not kept.
    [[nodiscard]] Result<void, SystemError> finish();
    /// Closes both files, and removes the part file where that is due.
    void close();

private:
    FileCopy(UniqueDescriptor from, PartFile to) : m_from(std::move(from)), m_to(std::move(to)) {}

    UniqueDescriptor m_from;
    PartFile m_to;
    std::vector<char> m_chunk;
    qint64 m_copied = 0;
};

} // namespace harbrix
