#pragma once

#include "files/CacheEntry.h"

#include <QSet>

#include <chrono>

namespace harbrix {

// The files of the cache. Everything here blocks and runs on a worker, one call at a time.

constexpr auto cacheIndexFileName = "cache-index.json";

struct SourceAttributes {
    qint64 size = 0; ///< bytes
    bool isDirectory = false;
    bool isSpecial = false; ///< a pipe, a socket, a device
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

/// A file that is to be cached.
struct CopyRequest {
    QByteArray source;
    CopyTarget target;
    bool isPresent = false; ///< it has an entry: it is only looked at
    bool isSafe = true;     ///< the target lies where it should
};
struct CopyOutcome {
    enum class Kind { Unreadable, TooLarge, Present, Special, Unsafe, NeedsRoom, Copied, Failed };
    Kind kind = Kind::Unreadable;
    SourceAttributes attributes;
    SystemError error; ///< if it failed
};
/// Serves the requests one after the other, as far as the copies fit into `room` bytes: ends at the
/// first that does not, which is NeedsRoom, and soon after `budget` has passed. One outcome for
/// each request that was served.
[[nodiscard]] std::vector<CopyOutcome> copyInTurn(const std::vector<CopyRequest>& requests,
                                                  qint64 largest, qint64 room,
                                                  std::chrono::milliseconds budget);

/// Removes the copy of an entry; failures are ignored. What the entry names is left alone where
/// ownsItsCopy() does not hold.
void removeCopy(const CacheEntry& entry);

/// The folders directly below the cache directory that are the cache's own. Nothing where the whole
/// directory is.
using OwnFolders = std::optional<QSet<QString>>;
/// Removes the empty ones.
void sweepEmptyDirectories(const QByteArray& cacheDirectory, const OwnFolders& folders);
/// Empties the cache directory, as far as it is the cache's own; failures are ignored.
void clearCacheDirectory(const QByteArray& cacheDirectory, const OwnFolders& folders);

/// Replaces the index file by a rename, without waiting for the disk: a program that is killed
/// leaves the old file or the new one, a power cut may leave neither.
[[nodiscard]] Result<void, SystemError> replaceIndexQuickly(const QByteArray& path,
                                                            const QByteArray& contents);
/// Removes what a process that was killed during a save has left beside the index.
void removeUnfinishedIndexes(const QByteArray& cacheDirectory);

} // namespace harbrix
