#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>
#include <vector>

namespace harbrix {

/// One file of a share that has a copy on the local disk.
struct CacheEntry {
    QUuid id;
    QUuid configID;
    QString relativePath; ///< below the mount point, without a slash in front
    QUrl localURL;        ///< the copy
    qint64 fileSize = 0;  ///< bytes, as read from the source
    bool isDirectory = false;
    QString fileName;
    QDateTime cachedAt;
    QDateTime lastAccessedAt; ///< of the last offer; looking at the copy does not count
    std::optional<QString> contentHash;

    bool operator==(const CacheEntry&) const = default;
};

struct CacheStatistics {
    int entryCount = 0;
    qint64 totalSize = 0; ///< bytes
    qint64 maxSize = 0;   ///< bytes
    int hitCount = 0;
    int missCount = 0;

    bool operator==(const CacheStatistics&) const = default;
};

/// The entry as it stands in the index file: an indented JSON object with sorted keys.
[[nodiscard]] QByteArray encodeCacheEntry(const CacheEntry& entry);
/// The text of the index file from the encoded entries.
[[nodiscard]] QByteArray joinCacheIndex(const std::vector<const QByteArray*>& encodedEntries);
/// Reads the text of an index file. One entry that cannot be read fails them all.
[[nodiscard]] Result<std::vector<CacheEntry>, SystemError> decodeCacheIndex(const QByteArray& json);

/// Whether the path can only lead to a place below the folder that it is relative to: components
/// that are neither empty nor "." nor "..", and no zero byte.
[[nodiscard]] bool isSafeRelativePath(const QString& relativePath);
/// The name of the folder below the cache directory that holds the copies of a configuration.
[[nodiscard]] QString cacheFolderName(const QUuid& configID);
/// Whether the entry's copy lies where copies of this entry are put, below whatever cache
/// directory. The index is a file like any other: what it names is removed only if this holds.
[[nodiscard]] bool ownsItsCopy(const CacheEntry& entry);

} // namespace harbrix
