#pragma once

#include "base/Result.h"
#include "base/UniqueDescriptor.h"

#include <QByteArray>

namespace harbrix {

/// Where a copy to the destination is written until it is whole: the hidden file
/// ".NAME.harbrix-part" beside it, NAME being cut where a file name may be no longer.
[[nodiscard]] QByteArray partPath(const QByteArray& destination);

/// The file beside a destination that takes its place once it is whole and on the disk, so that a
/// copy that ends early, in whatever way, leaves the former file alone. Every call blocks: workers
/// only.
class PartFile {
public:
    /// Makes the file, and removes what copies of this program that have ended left in the
    /// directory. EBUSY where another copy of this program writes to the destination just now.
    [[nodiscard]] static Result<PartFile, SystemError> create(QByteArray destination);

    PartFile(PartFile&&) noexcept = default;
    PartFile& operator=(PartFile&&) = delete;
    ~PartFile() { close(); }

    [[nodiscard]] int descriptor() const { return m_file.get(); }
    /// Waits until the bytes are where they belong (fsync(2)). Any error means that they are not.
    [[nodiscard]] Result<void, SystemError> sync();
    /// Closes the file and gives it the name of the destination (rename(2)). ESTALE where somebody
    /// has put another file in its place.
    [[nodiscard]] Result<void, SystemError> replaceDestination();
    /// Leaves the file where it is, until the next copy into the directory.
    void keep() { m_isKept = true; }
    /// Closes the file and removes it, unless it has taken its place or is to be kept.
    void close();

private:
    PartFile(UniqueDescriptor file, QByteArray path, QByteArray destination)
        : m_file(std::move(file)), m_path(std::move(path)), m_destination(std::move(destination)) {}

    UniqueDescriptor m_file;
    QByteArray m_path; ///< empty once closed, and in what was moved from
    QByteArray m_destination;
    bool m_isKept = false;
    bool m_isInPlace = false;
};

} // namespace harbrix
