#include "mount_nfs/transport/RecordReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace harbrix::nfs {

std::span<std::uint8_t> RecordReader::space() {
    m_direct = m_fragmentLeft >= m_stream.size() / 4;
    if (m_direct)
        return {m_buffer->data() + m_recordFilled, m_fragmentLeft};
    return m_stream;
}

bool RecordReader::filled(std::size_t count, const std::function<void(Record)>& deliver) {
    if (!m_direct)
        return take(Bytes(m_stream.data(), count), deliver);
    m_recordFilled += count;
    m_fragmentLeft -= count;
    if (m_fragmentLeft == 0 && m_lastFragment)
        finish(deliver);
    return true;
}

bool RecordReader::take(Bytes bytes, const std::function<void(Record)>& deliver) {
    // Whoever gets a record may close the connection: the rest of the stretch is then worthless.
    const std::uint64_t stream = m_resets;
    while (!bytes.empty() && stream == m_resets) {
        if (m_fragmentLeft == 0) {
            m_mark[m_markFilled++] = bytes.front();
            bytes = bytes.subspan(1);
            if (m_markFilled < m_mark.size())
                continue;
            m_markFilled = 0;
            if (!startFragment())
                return false;
        }
        const std::size_t part = std::min(bytes.size(), m_fragmentLeft);
        if (part > 0)
            std::memcpy(m_buffer->data() + m_recordFilled, bytes.data(), part);
        m_recordFilled += part;
        m_fragmentLeft -= part;
        bytes = bytes.subspan(part);
        if (m_fragmentLeft == 0 && m_lastFragment)
            finish(deliver);
    }
    return true;
}

bool RecordReader::startFragment() {
    const std::uint32_t mark = static_cast<std::uint32_t>(m_mark[0]) << 24 |
                               static_cast<std::uint32_t>(m_mark[1]) << 16 |
                               static_cast<std::uint32_t>(m_mark[2]) << 8 | m_mark[3];
    m_lastFragment = mark & 0x80000000;
    m_fragmentLeft = mark & 0x7fffffff;
    // An empty fragment that is not the last one would let a server keep this loop busy for
    // nothing.
    if (m_fragmentLeft > m_largest - m_recordFilled || (m_fragmentLeft == 0 && !m_lastFragment))
        return false;
    const std::size_t needed = m_recordFilled + m_fragmentLeft;
    if (!m_buffer || m_buffer->capacity() < needed) {
        auto larger = m_pool.allocate(std::max<std::size_t>(needed, 1));
        if (m_recordFilled > 0)
            std::memcpy(larger->data(), m_buffer->data(), m_recordFilled);
        m_buffer = std::move(larger);
    }
    return true;
}

void RecordReader::finish(const std::function<void(Record)>& deliver) {
    const Bytes bytes(m_buffer->data(), m_recordFilled);
    Record record{std::exchange(m_buffer, nullptr), bytes};
    m_recordFilled = 0;
    m_lastFragment = false;
    deliver(std::move(record));
}

void RecordReader::reset() {
    ++m_resets;
    m_markFilled = 0;
    m_buffer.reset();
    m_recordFilled = 0;
    m_fragmentLeft = 0;
    m_lastFragment = false;
    m_direct = false;
}

} // namespace harbrix::nfs
