#pragma once

#include <QSet>
#include <QUrl>
#include <QUuid>

#include <vector>

namespace harbrix {

struct FileItem;

/// One file of the share that is to be fetched, and the local directory that it is to go into.
struct Download {
    QUrl source;
    QUrl directory;

    bool operator==(const Download&) const = default;
};

/// What a download of the selected items comes to, in listing order. A file goes right into the
/// chosen place, a directory one level deeper, into a directory of its own name. Ids of an earlier
/// listing match nothing.
[[nodiscard]] std::vector<Download> planDownload(const std::vector<FileItem>& items,
                                                 const QSet<QUuid>& selected, const QUrl& chosen);

} // namespace harbrix
