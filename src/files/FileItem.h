#pragma once

#include "base/NaturalCompare.h"
#include "base/Result.h"

#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <vector>

namespace harbrix {

struct CacheEntry;

/// One entry of a directory, as a listing found it.
struct FileItem {
    QUuid id; ///< random: the same file has another one in each listing
    QUrl url; ///< on the share; offline, the copy in the cache
    QString name;
    qint64 size = -1; ///< bytes; -1 where it is not known
    QDateTime modificationDate;
    bool isDirectory = false;
    bool isHidden = false;

    /// The name of the symbol that stands for this kind of file.
    [[nodiscard]] QString iconName() const;

    bool operator==(const FileItem&) const = default;
};

/// Whether two listings show the same: all but the ids, which differ in any case.
[[nodiscard]] bool showTheSame(const std::vector<FileItem>& a, const std::vector<FileItem>& b);

/// Directories first, then by name; what compares the same keeps its order.
void sortForListing(std::vector<FileItem>& items, const NaturalCompare& names);

/// What the directory holds, sorted, hidden files left out. Attributes are those of what a symbolic
/// link leads to; a link that leads nowhere is listed by itself. `now` stands in for dates that
/// cannot be known. Blocks: workers only.
[[nodiscard]] Result<std::vector<FileItem>, SystemError>
listDirectory(const QUrl& directory, const NaturalCompare& names, const QDateTime& now);

/// The entries as a listing, sorted.
[[nodiscard]] std::vector<FileItem> listCopies(const std::vector<const CacheEntry*>& entries,
                                               const NaturalCompare& names);

} // namespace harbrix
