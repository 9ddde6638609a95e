#pragma once

#include "mount_nfs/protocol/Buffer.h"
#include "mount_nfs/session/OpenState.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace harbrix::nfs {

/// A run of written bytes in memory, and the open file through which it goes to the server.
struct Extent {
    std::uint64_t offset = 0;
    std::uint32_t length = 0;
    std::shared_ptr<Buffer> buffer;
    std::uint32_t start = 0; ///< Where the run begins in `buffer`.
    std::shared_ptr<OpenState> state;

    [[nodiscard]] std::uint64_t end() const { return offset + length; }
    [[nodiscard]] Slice slice() const { return {buffer, {buffer->data() + start, length}}; }
    /// The part of this extent between two offsets of the file, which must lie within it.
    [[nodiscard]] Extent part(std::uint64_t from, std::uint64_t to) const;
};

/// Extents that do not overlap, by their offset.
class ExtentMap {
public:
    /// Puts an extent in; what it overlaps is replaced.
    void put(const Extent& extent);
    /// Puts in only what no extent of the map covers yet.
    void putBelow(const Extent& extent);
    /// Takes everything between two offsets out.
    void cut(std::uint64_t from, std::uint64_t to);
    [[nodiscard]] bool overlaps(std::uint64_t from, std::uint64_t to) const;

    [[nodiscard]] bool isEmpty() const { return m_extents.empty(); }
    [[nodiscard]] std::uint64_t bytes() const { return m_bytes; }
    [[nodiscard]] std::uint64_t end() const;
    /// The extent that ends exactly at `offset`, for more bytes to be added behind it; or null.
    [[nodiscard]] Extent* endingAt(std::uint64_t offset);
    /// `extent`, which `endingAt` returned, has grown in place by `bytes`.
    void grown(Extent& extent, std::uint32_t bytes);
    [[nodiscard]] const std::map<std::uint64_t, Extent>& all() const { return m_extents; }
    [[nodiscard]] Extent take(std::uint64_t offset);
    [[nodiscard]] std::vector<Extent> takeAll();
    void clear() { (void) takeAll(); }

private:
    void insert(const Extent& extent);
    std::map<std::uint64_t, Extent> m_extents;
    std::uint64_t m_bytes = 0;
};

} // namespace harbrix::nfs
