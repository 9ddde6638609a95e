#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace harbrix::nfs {

using Bytes = std::span<const std::uint8_t>;

class BufferPool;

/// Uninitialised memory that counts against the limit of its pool until it is destroyed.
class Buffer {
public:
    Buffer(BufferPool& pool, std::unique_ptr<std::uint8_t[]> memory, std::size_t capacity);
    ~Buffer();
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    [[nodiscard]] std::uint8_t* data() { return m_memory.get(); }
    [[nodiscard]] const std::uint8_t* data() const { return m_memory.get(); }
    [[nodiscard]] std::size_t capacity() const { return m_capacity; }

private:
    BufferPool& m_pool;
    std::unique_ptr<std::uint8_t[]> m_memory;
    std::size_t m_capacity;
};

/// A run of bytes together with what keeps it alive.
struct Slice {
    std::shared_ptr<const Buffer> owner;
    Bytes bytes;
};

/// Hands out the buffers of one mount and knows how much they hold together. Large ones are kept
/// for the next use: fresh pages from the kernel would cost more than the copy into them.
class BufferPool {
public:
    explicit BufferPool(std::size_t limit) : m_limit(limit) {}

    /// At least `size` bytes; never refused. Whoever can wait asks `room` first.
    [[nodiscard]] std::shared_ptr<Buffer> allocate(std::size_t size);

    /// Whether `size` more bytes stay within `share` hundredths of the limit.
    [[nodiscard]] bool room(std::size_t size, unsigned share = 100) const {
        return m_used + size <= m_limit / 100 * share;
    }
    [[nodiscard]] std::size_t used() const { return m_used; }
    [[nodiscard]] std::size_t limit() const { return m_limit; }

private:
    friend class Buffer;
    void giveBack(std::unique_ptr<std::uint8_t[]> memory, std::size_t capacity);

    static constexpr std::size_t smallestClass = 128 * 1024;
    static constexpr std::size_t headRoom = 4096; // the headers around a power of two of data
    static constexpr std::size_t classes = 5;
    static constexpr std::size_t keptPerClass = 8;

    std::size_t m_limit;
    std::size_t m_used = 0;
    std::array<std::vector<std::unique_ptr<std::uint8_t[]>>, classes> m_kept;
};

} // namespace harbrix::nfs
