#pragma once

#include "mount_nfs/protocol/Buffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace harbrix::nfs {

/// A whole RPC record: its bytes, and the buffer that holds them.
struct Record {
    std::shared_ptr<const Buffer> buffer;
    Bytes bytes;
};

/// Puts records together from a byte stream with record marks (RFC 5531, section 11). It names the
/// place where the next bytes belong, so that bulk data is received straight into its final buffer.
class RecordReader {
public:
    /// `largest`: what a record may measure at most; a longer one is an error.
    RecordReader(BufferPool& pool, std::size_t largest) : m_pool(pool), m_largest(largest) {}

    /// Where the next bytes of the stream go; never empty.
    [[nodiscard]] std::span<std::uint8_t> space();
    /// Tells that `count` bytes were put there. False: the stream is broken and must be closed.
    [[nodiscard]] bool filled(std::size_t count, const std::function<void(Record)>& deliver);
    void reset();

private:
    [[nodiscard]] bool startFragment();
    [[nodiscard]] bool take(Bytes bytes, const std::function<void(Record)>& deliver);
    void finish(const std::function<void(Record)>& deliver);

    BufferPool& m_pool;
    std::size_t m_largest;
    // Small records arrive many at a time: they are cut out of one stretch of stream. Only once a
    // long fragment is under way does the rest of it go to its buffer directly.
    std::array<std::uint8_t, 64 * 1024> m_stream{};
    std::array<std::uint8_t, 4> m_mark{};
    std::size_t m_markFilled = 0;
    std::shared_ptr<Buffer> m_buffer;
    std::size_t m_recordFilled = 0;
    std::size_t m_fragmentLeft = 0;
    bool m_lastFragment = false;
    bool m_direct = false;
    std::uint64_t m_resets = 0;
};

} // namespace harbrix::nfs
