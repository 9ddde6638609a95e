#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace harbrix::nfs {

/// The slots of a session's fore channel (RFC 8881, 2.10.6.1): one request each at a time, numbered
/// so that a request sent again is not carried out again.
class SlotTable {
public:
    /// All slots free, at the sequence number that a new session begins with.
    void reset(std::uint32_t count) {
        m_slots.assign(count, {});
        m_limit = count;
    }
    /// The server's wish for the highest slot in use.
    void setTarget(std::uint32_t highest) {
        m_limit =
            std::clamp<std::uint32_t>(highest, 0, static_cast<std::uint32_t>(m_slots.size()) - 1) +
            1;
    }
    /// The lowest free slot.
    [[nodiscard]] std::optional<std::uint32_t> acquire() {
        for (std::uint32_t index = 0; index < m_limit && index < m_slots.size(); ++index) {
            if (!m_slots[index].busy) {
                m_slots[index].busy = true;
                return index;
            }
        }
        return std::nullopt;
    }
    [[nodiscard]] std::uint32_t sequence(std::uint32_t slot) const {
        return m_slots[slot].sequence;
    }
    [[nodiscard]] std::uint32_t highestBusy() const {
        for (std::size_t index = m_slots.size(); index-- > 0;)
            if (m_slots[index].busy)
                return static_cast<std::uint32_t>(index);
        return 0;
    }
    /// `consumed`: the server has taken the request in, so the next one needs a new number.
    void release(std::uint32_t slot, bool consumed) {
        m_slots[slot].busy = false;
        if (consumed)
            ++m_slots[slot].sequence;
    }

private:
    struct Slot {
        std::uint32_t sequence = 1;
        bool busy = false;
    };
    std::vector<Slot> m_slots;
    std::uint32_t m_limit = 0;
};

} // namespace harbrix::nfs
