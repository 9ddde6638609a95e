#include "files/CacheIndex.h"

#include <algorithm>

namespace harbrix {
namespace {

struct MoreRecentlyAccessed {
    template <typename Pointer>
    bool operator()(const Pointer& a, const Pointer& b) const {
        return a->entry.lastAccessedAt > b->entry.lastAccessedAt;
    }
};

} // namespace

CacheIndex::CacheIndex(std::vector<CacheEntry> entries) {
    for (CacheEntry& entry : entries)
        add(std::move(entry));
    sort();
}

void CacheIndex::add(CacheEntry entry) {
    auto record = std::make_shared<Record>();
    record->encoded = encodeCacheEntry(entry);
    record->entry = std::move(entry);
    const CacheEntry& added = record->entry;
    m_totalSize += added.fileSize;
    const auto place = m_records.insert(m_records.end(), record);
    m_byId.insert(added.id, place);
    m_byPath.insert({added.configID, added.relativePath}, place);
}

void CacheIndex::sort() {
    m_records.sort(MoreRecentlyAccessed());
    m_isSorted = true;
}

void CacheIndex::insert(CacheEntry entry) {
    add(std::move(entry));
    if (!m_isSorted) {
        sort();
        return;
    }
    // The rest is in order, so the new one moves to its place: as a rule, the front.
    const auto last = std::prev(m_records.end());
    const auto place = std::find_if(m_records.begin(), last, [&last](const auto& other) {
        return MoreRecentlyAccessed()(*last, other);
    });
    m_records.splice(place, m_records, last);
}

std::optional<CacheIndex::Records::iterator>
CacheIndex::first(std::span<const Records::iterator> candidates) const {
    if (candidates.size() <= 1)
        return candidates.empty() ? std::nullopt : std::optional(candidates.front());
    for (const auto& record : m_records) {
        for (const auto candidate : candidates) {
            if (*candidate == record)
                return candidate;
        }
    }
    return std::nullopt;
}

std::optional<CacheEntry> CacheIndex::touch(const QUuid& id, const QDateTime& now) {
    const auto place = first(m_byId.values(id));
    if (!place)
        return std::nullopt;
    auto record = std::make_shared<Record>();
    record->entry = (**place)->entry;
    record->entry.lastAccessedAt = now;
    record->encoded = encodeCacheEntry(record->entry);
    **place = record;
    m_isSorted = false;
    return record->entry;
}

std::optional<CacheEntry> CacheIndex::remove(const QUuid& id) {
    const auto place = first(m_byId.values(id));
    if (!place)
        return std::nullopt;
    CacheEntry entry = (**place)->entry;
    m_byId.remove(id, *place);
    m_byPath.remove({entry.configID, entry.relativePath}, *place);
    m_records.erase(*place);
    m_totalSize -= entry.fileSize;
    return entry;
}

const CacheEntry* CacheIndex::find(const QUuid& configID, const QString& relativePath) const {
    const auto place = first(m_byPath.values({configID, relativePath}));
    return place ? &(**place)->entry : nullptr;
}

const CacheEntry* CacheIndex::find(const QUuid& id) const {
    const auto place = first(m_byId.values(id));
    return place ? &(**place)->entry : nullptr;
}

std::vector<QUrl> CacheIndex::copiesOf(const QUuid& configID, const QString& relativePath) const {
    std::vector<QUrl> copies;
    for (const auto place : m_byPath.values({configID, relativePath}))
        copies.push_back((*place)->entry.localURL);
    return copies;
}

std::vector<CacheEntry> CacheIndex::oldest(qint64 bytes) const {
    struct Candidate {
        qint64 accessed;
        std::size_t place;
        const CacheEntry* entry;
    };
    const auto isLater = [](const Candidate& a, const Candidate& b) {
        return std::pair(a.accessed, a.place) > std::pair(b.accessed, b.place);
    };
    std::vector<Candidate> heap;
    heap.reserve(m_records.size());
    for (const auto& record : m_records)
        heap.push_back(
            {record->entry.lastAccessedAt.toMSecsSinceEpoch(), heap.size(), &record->entry});
    // A heap instead of a sort: as a rule only the first few go.
    std::ranges::make_heap(heap, isLater);
    std::vector<CacheEntry> chosen;
    while (bytes > 0 && !heap.empty()) {
        std::ranges::pop_heap(heap, isLater);
        chosen.push_back(*heap.back().entry);
        bytes -= chosen.back().fileSize;
        heap.pop_back();
    }
    return chosen;
}

QByteArray encodeCacheIndex(const CacheIndex::Snapshot& snapshot) {
    std::vector<const QByteArray*> encoded;
    encoded.reserve(snapshot.size());
    for (const auto& record : snapshot)
        encoded.push_back(&record->encoded);
    return joinCacheIndex(encoded);
}

} // namespace harbrix
