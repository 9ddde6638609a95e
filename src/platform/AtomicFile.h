#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

namespace harbrix {

/// Replaces the file's contents so that a crash leaves the old or the new, never a mixture: written
/// beside it, synced, renamed over it, and the directory synced. The file has mode 0600; parents
/// that are missing are made with mode 0700. Any thread.
[[nodiscard]] Result<void, SystemError> replaceFile(const QString& path,
                                                    const QByteArray& contents);

/// Makes the directories that the path lies below where they are missing, with mode 0700.
[[nodiscard]] Result<void, SystemError> makePrivateParent(const QString& path);

/// The whole file; the error is ENOENT where there is none. Any thread.
[[nodiscard]] Result<QByteArray, SystemError> readFile(const QString& path);

} // namespace harbrix
