#pragma once

#include "mount_nfs/protocol/Buffer.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace harbrix::nfs {

/// A message on its way out: encoded bytes with bulk data inserted by reference.
struct Message {
    struct Attachment {
        std::size_t position; ///< Offset into `bytes` before which the data stands.
        Slice data;
    };
    std::vector<std::uint8_t> bytes;
    std::vector<Attachment> attachments;

    [[nodiscard]] std::size_t size() const;
    /// One contiguous copy, as it goes over the wire.
    [[nodiscard]] std::vector<std::uint8_t> flattened() const;
};

/// Encodes External Data Representation (RFC 4506).
class XdrWriter {
public:
    void u32(std::uint32_t value);
    void u64(std::uint64_t value);
    void boolean(bool value) { u32(value ? 1 : 0); }
    void fixed(Bytes data);
    void opaque(Bytes data);
    void text(std::string_view value);
    /// Variable-length opaque data that is not copied; `data.owner` lives until the message was
    /// sent.
    void attach(Slice data);

    /// Leaves four bytes to be filled in by `patch`.
    [[nodiscard]] std::size_t placeholder();
    void patch(std::size_t position, std::uint32_t value);

    [[nodiscard]] std::size_t encodedSize() const { return m_message.bytes.size(); }
    [[nodiscard]] Message take() { return std::move(m_message); }

private:
    void pad(std::size_t length);
    Message m_message;
};

/// Decodes XDR from bytes that nobody vouches for. A read past the end, or a length above its
/// maximum, turns the reader to failed for good; from then on every read yields zero or nothing.
class XdrReader {
public:
    explicit XdrReader(Bytes data) : m_data(data) {}

    std::uint32_t u32();
    std::uint64_t u64();
    std::int64_t i64() { return static_cast<std::int64_t>(u64()); }
    bool boolean();
    Bytes fixed(std::size_t length);
    Bytes opaque(std::size_t maximum);
    std::string_view text(std::size_t maximum);
    /// The count of an array whose elements take at least `elementSize` bytes each.
    std::uint32_t count(std::size_t elementSize);

    void fail() { m_failed = true; }
    [[nodiscard]] bool failed() const { return m_failed; }
    [[nodiscard]] std::size_t remaining() const {
        return m_failed ? 0 : m_data.size() - m_position;
    }

private:
    Bytes m_data;
    std::size_t m_position = 0;
    bool m_failed = false;
};

} // namespace harbrix::nfs
