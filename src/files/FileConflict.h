#pragma once

#include "base/Result.h"

#include <QList>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace harbrix {

/// What becomes of an upload whose name is taken.
enum class ConflictResolution { overwrite, rename, skip };
[[nodiscard]] QString rawValue(ConflictResolution resolution);

/// A dropped file whose name is taken in the directory on screen, by a file or by a folder, which
/// cannot be overwritten.
struct FileConflict {
    QUuid id;
    QUrl source;
    QUrl destination; ///< what has the name
    bool isFolderInTheWay = false;

    bool operator==(const FileConflict&) const = default;
};

/// What a drop of files comes to.
struct DropPlan {
    QList<QUrl> uploads; ///< in the order of the drop
    /// The last one that clashed: there is one slot, and the user is asked about one file only.
    std::optional<FileConflict> conflict;
};

/// Sorts dropped files into uploads and a conflict; directories and what is no local file are left
/// out. Blocks: workers only.
[[nodiscard]] DropPlan planDrop(const QList<QUrl>& dropped, const QUrl& directory);

/// The first of "a.txt", "a (1).txt", "a (2).txt" and so on that is free in the directory. Blocks:
/// workers only.
[[nodiscard]] QByteArray freeName(const QUrl& directory, const QByteArray& name);

/// Renames the existing file or folder of a conflict to a free name of the directory, for the new
/// one to take its place. Never replaces a file. Blocks: workers only.
Result<void, SystemError> moveAside(const FileConflict& conflict, const QUrl& directory);

} // namespace harbrix
