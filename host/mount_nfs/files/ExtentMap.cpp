#include "mount_nfs/files/ExtentMap.h"

#include <algorithm>
#include <utility>

namespace harbrix::nfs {

Extent Extent::part(std::uint64_t from, std::uint64_t to) const {
    Extent result = *this;
    result.offset = from;
    result.length = static_cast<std::uint32_t>(to - from);
    result.start = start + static_cast<std::uint32_t>(from - offset);
    return result;
}

void ExtentMap::insert(const Extent& extent) {
    if (extent.length == 0)
        return;
    m_extents[extent.offset] = extent;
    m_bytes += extent.length;
}

void ExtentMap::put(const Extent& extent) {
    cut(extent.offset, extent.end());
    insert(extent);
}

void ExtentMap::putBelow(const Extent& extent) {
    std::uint64_t position = extent.offset;
    std::vector<Extent> gaps;
    auto each = m_extents.upper_bound(position);
    if (each != m_extents.begin() && std::prev(each)->second.end() > position)
        --each;
    for (; each != m_extents.end() && each->first < extent.end(); ++each) {
        if (each->first > position)
            gaps.push_back(extent.part(position, each->first));
        position = std::max(position, each->second.end());
    }
    if (position < extent.end())
        gaps.push_back(extent.part(position, extent.end()));
    for (const Extent& gap : gaps)
        insert(gap);
}

void ExtentMap::cut(std::uint64_t from, std::uint64_t to) {
    if (from >= to)
        return;
    auto each = m_extents.upper_bound(from);
    if (each != m_extents.begin() && std::prev(each)->second.end() > from)
        --each;
    while (each != m_extents.end() && each->first < to) {
        const Extent old = each->second;
        each = m_extents.erase(each);
        m_bytes -= old.length;
        if (old.offset < from)
            insert(old.part(old.offset, from));
        if (old.end() > to)
            insert(old.part(to, old.end()));
    }
}

bool ExtentMap::overlaps(std::uint64_t from, std::uint64_t to) const {
    const auto next = m_extents.lower_bound(to);
    return next != m_extents.begin() && std::prev(next)->second.end() > from;
}

std::uint64_t ExtentMap::end() const {
    return m_extents.empty() ? 0 : std::prev(m_extents.end())->second.end();
}

Extent* ExtentMap::endingAt(std::uint64_t offset) {
    const auto next = m_extents.lower_bound(offset);
    if (next == m_extents.begin() || std::prev(next)->second.end() != offset)
        return nullptr;
    return &std::prev(next)->second;
}

void ExtentMap::grown(Extent& extent, std::uint32_t bytes) {
    extent.length += bytes;
    m_bytes += bytes;
}

Extent ExtentMap::take(std::uint64_t offset) {
    auto node = m_extents.extract(offset);
    m_bytes -= node.mapped().length;
    return std::move(node.mapped());
}

std::vector<Extent> ExtentMap::takeAll() {
    std::vector<Extent> all;
    for (auto& [offset, extent] : m_extents)
        all.push_back(std::move(extent));
    m_extents.clear();
    m_bytes = 0;
    return all;
}

} // namespace harbrix::nfs
