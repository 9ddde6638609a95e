#pragma once

#include "files/CacheEntry.h"

#include <QMultiHash>

#include <list>
#include <memory>
#include <span>

namespace harbrix {

/// The entries of the cache in order: sorted by the last access, most recent first, after a load
/// and after each insertion. Keeps the encoded form of each entry, a running total of their sizes,
/// and finds entries without a search. Moved between threads, used by one at a time.
class CacheIndex {
public:
    struct Record {
        CacheEntry entry;
        QByteArray encoded;
    };
    /// The entries at one moment. Records never change, so any thread may read it.
    using Snapshot = std::vector<std::shared_ptr<const Record>>;

    CacheIndex() = default;
    explicit CacheIndex(std::vector<CacheEntry> entries);
    CacheIndex(CacheIndex&&) noexcept = default;
    CacheIndex& operator=(CacheIndex&&) noexcept = default;
    CacheIndex(const CacheIndex&) = delete;
    CacheIndex& operator=(const CacheIndex&) = delete;
    ~CacheIndex() = default;

    void insert(CacheEntry entry);
    /// Sets the last access of an entry, whose place stays; the entry as it then is.
    std::optional<CacheEntry> touch(const QUuid& id, const QDateTime& now);
    /// Takes out the first entry with this id.
    std::optional<CacheEntry> remove(const QUuid& id);

    /// The first entry of this configuration with exactly this path.
    [[nodiscard]] const CacheEntry* find(const QUuid& configID, const QString& relativePath) const;
    [[nodiscard]] const CacheEntry* find(const QUuid& id) const;
    /// Where the copies of this path are; a file that was not made by this program may list several
    /// entries for one.
    [[nodiscard]] std::vector<QUrl> copiesOf(const QUuid& configID,
                                             const QString& relativePath) const;

    /// The entries that have to go so that at least `bytes` are freed: those whose last access is
    /// the oldest, of equal ones the first in order.
    [[nodiscard]] std::vector<CacheEntry> oldest(qint64 bytes) const;

    [[nodiscard]] qint64 totalSize() const { return m_totalSize; } ///< bytes
    [[nodiscard]] std::size_t size() const { return m_records.size(); }
    [[nodiscard]] Snapshot snapshot() const { return {m_records.begin(), m_records.end()}; }

private:
    using Records = std::list<std::shared_ptr<const Record>>;
    using Path = std::pair<QUuid, QString>;

    void add(CacheEntry entry);
    void sort();
    /// The one of the candidates that comes first in order.
    [[nodiscard]] std::optional<Records::iterator>
    first(std::span<const Records::iterator> candidates) const;

    Records m_records;
    QMultiHash<QUuid, Records::iterator> m_byId;
    QMultiHash<Path, Records::iterator> m_byPath;
    qint64 m_totalSize = 0;
    // Entries whose access was set since the last sort stand where they stood.
    bool m_isSorted = true;
};

/// The text of the index file.
[[nodiscard]] QByteArray encodeCacheIndex(const CacheIndex::Snapshot& snapshot);

} // namespace harbrix
