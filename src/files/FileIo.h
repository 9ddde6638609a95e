#pragma once

#include "base/Result.h"
#include "base/UniqueDescriptor.h"

#include <QByteArray>

#include <dirent.h>

#include <memory>
#include <span>

struct stat;

namespace harbrix {

// Reading and writing by descriptor. Each call may block on a share: workers only.

/// The errno that stands now, as the error of a Result.
[[nodiscard]] std::unexpected<SystemError> lastError();

/// Opens a file for reading and looks at it. A directory is EISDIR; a named pipe does not block.
[[nodiscard]] Result<UniqueDescriptor, SystemError> openForReading(const QByteArray& path,
                                                                   struct stat& status);
/// Fills the buffer, over as many reads as that takes; fewer bytes mean the end of the file.
[[nodiscard]] Result<std::size_t, SystemError> readFully(int descriptor, std::span<char> buffer);
[[nodiscard]] Result<void, SystemError> writeFully(int descriptor, std::span<const char> bytes);

/// Whether something stands at the path, symbolic links followed; false for an empty path.
[[nodiscard]] bool itemExists(const QByteArray& path);

struct CloseDirectory {
    void operator()(DIR* stream) const { ::closedir(stream); }
};
/// An open directory; ends with its descriptor.
using DirectoryStream = std::unique_ptr<DIR, CloseDirectory>;

/// Removes a file, a link, or a directory with all that it holds. Links are not followed, and what
/// is mounted below is neither entered nor removed. `directory` is what `name` is relative to, as
/// in openat(2).
Result<void, SystemError> removeTree(int directory, const QByteArray& name);

} // namespace harbrix
