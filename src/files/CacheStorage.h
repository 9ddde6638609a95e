#pragma once

#include "files/CacheEntry.h"

namespace harbrix {

// The files of the cache. Everything here blocks and runs on a worker, one call at a time.

constexpr auto cacheIndexFileName = "cache-index.json";

struct SourceAttributes {
    qint64 size = 0; ///< bytes
    bool isDirectory = false;
};
/// Symbolic links are followed. Nothing where the file cannot be looked at.
[[nodiscard]] std::optional<SourceAttributes> readSourceAttributes(const QByteArray& path);

/// Where a copy goes: cache directory, folder of the configuration, path below it.
struct CopyTarget {
    QByteArray cacheDirectory;
    QByteArray folder;
    QByteArray relativePath;

    [[nodiscard]] QByteArray path() const;
};

/// Makes the directory with its parents, mode 0700.
Result<void, SystemError> makeCacheDirectory(const QByteArray& path);

/// Copies a file, or a directory with what it holds, in the place of whatever stands at the target.
/// Below the cache directory no symbolic link is followed, so the copy cannot end up elsewhere. A
/// file of more than `largest` bytes is EFBIG. A copy that failed is removed.
[[nodiscard]] Result<void, SystemError> copyIntoCache(const QByteArray& source,
                                                      const CopyTarget& target, qint64 largest);

/// Removes the copy of an entry; failures are ignored. What the entry names is left alone where
/// ownsItsCopy() does not hold.
void removeCopy(const CacheEntry& entry);

/// Removes the empty directories directly below the cache directory.
void sweepEmptyDirectories(const QByteArray& cacheDirectory);

/// What of a cache directory is the cache's own.
enum class CacheOwnership { WholeDirectory, OwnFilesOnly };
/// Empties the cache directory, as far as it is the cache's own; failures are ignored.
void clearCacheDirectory(const QByteArray& cacheDirectory, CacheOwnership ownership);

/// Removes what a process that was killed during a save has left beside the index.
void removeUnfinishedIndexes(const QByteArray& cacheDirectory);

} // namespace harbrix
