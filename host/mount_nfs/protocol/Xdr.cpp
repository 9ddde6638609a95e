#include "mount_nfs/protocol/Xdr.h"

#include <algorithm>
#include <utility>

namespace harbrix::nfs {

namespace {
constexpr std::size_t padding(std::size_t length) {
    return (4 - length % 4) % 4;
}
} // namespace

std::size_t Message::size() const {
    std::size_t total = bytes.size();
    for (const auto& attachment : attachments)
        total += attachment.data.bytes.size();
    return total;
}

std::vector<std::uint8_t> Message::flattened() const {
    std::vector<std::uint8_t> whole;
    whole.reserve(size());
    std::size_t done = 0;
    for (const auto& attachment : attachments) {
        whole.insert(whole.end(), bytes.begin() + static_cast<std::ptrdiff_t>(done),
                     bytes.begin() + static_cast<std::ptrdiff_t>(attachment.position));
        whole.insert(whole.end(), attachment.data.bytes.begin(), attachment.data.bytes.end());
        done = attachment.position;
    }
    whole.insert(whole.end(), bytes.begin() + static_cast<std::ptrdiff_t>(done), bytes.end());
    return whole;
}

void XdrWriter::u32(std::uint32_t value) {
    const std::uint8_t encoded[4] = {
        static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
        static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
    m_message.bytes.insert(m_message.bytes.end(), std::begin(encoded), std::end(encoded));
}

void XdrWriter::u64(std::uint64_t value) {
    u32(static_cast<std::uint32_t>(value >> 32));
    u32(static_cast<std::uint32_t>(value));
}

void XdrWriter::pad(std::size_t length) {
    m_message.bytes.insert(m_message.bytes.end(), padding(length), 0);
}

void XdrWriter::fixed(Bytes data) {
    m_message.bytes.insert(m_message.bytes.end(), data.begin(), data.end());
    pad(data.size());
}

void XdrWriter::opaque(Bytes data) {
    u32(static_cast<std::uint32_t>(data.size()));
    fixed(data);
}

void XdrWriter::text(std::string_view value) {
    opaque({reinterpret_cast<const std::uint8_t*>(value.data()), value.size()});
}

void XdrWriter::attach(Slice data) {
    const std::size_t length = data.bytes.size();
    u32(static_cast<std::uint32_t>(length));
    m_message.attachments.push_back({m_message.bytes.size(), std::move(data)});
    pad(length);
}

std::size_t XdrWriter::placeholder() {
    const std::size_t position = m_message.bytes.size();
    u32(0);
    return position;
}

void XdrWriter::patch(std::size_t position, std::uint32_t value) {
    for (std::size_t index = 0; index < 4; ++index)
        m_message.bytes[position + index] = static_cast<std::uint8_t>(value >> (24 - 8 * index));
}

Bytes XdrReader::fixed(std::size_t length) {
    if (m_failed || length > m_data.size() - m_position) {
        m_failed = true;
        return {};
    }
    const Bytes found = m_data.subspan(m_position, length);
    // The padding of the very last item may be missing: some servers cut it off.
    m_position = std::min(m_data.size(), m_position + length + padding(length));
    return found;
}

std::uint32_t XdrReader::u32() {
    const Bytes found = fixed(4);
    if (m_failed)
        return 0;
    return static_cast<std::uint32_t>(found[0]) << 24 | static_cast<std::uint32_t>(found[1]) << 16 |
           static_cast<std::uint32_t>(found[2]) << 8 | static_cast<std::uint32_t>(found[3]);
}

std::uint64_t XdrReader::u64() {
    const std::uint64_t high = u32();
    const std::uint64_t low = u32();
    return m_failed ? 0 : high << 32 | low;
}

bool XdrReader::boolean() {
    const std::uint32_t value = u32();
    if (value > 1)
        m_failed = true;
    return !m_failed && value == 1;
}

Bytes XdrReader::opaque(std::size_t maximum) {
    const std::size_t length = u32();
    if (length > maximum)
        m_failed = true;
    return fixed(length);
}

std::string_view XdrReader::text(std::size_t maximum) {
    const Bytes found = opaque(maximum);
    return {reinterpret_cast<const char*>(found.data()), found.size()};
}

std::uint32_t XdrReader::count(std::size_t elementSize) {
    const std::uint32_t number = u32();
    if (number > remaining() / elementSize)
        m_failed = true;
    return m_failed ? 0 : number;
}

} // namespace harbrix::nfs
