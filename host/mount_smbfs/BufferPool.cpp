#include "mount_smbfs/BufferPool.h"

#include <malloc.h>

namespace harbrix {

namespace {
using namespace std::chrono_literals;
constexpr auto keepSpareFor = 5s;
} // namespace

BufferPool::BufferPool(std::size_t maximumBlocks, Watchdog& watchdog)
    : m_maximum(maximumBlocks), m_watchdog(watchdog) {}

BufferPool::Block BufferPool::take() {
    const std::lock_guard lock(m_mutex);
    if (m_inUse == m_maximum)
        return Block(nullptr, GiveBack{this});
    ++m_inUse;
    if (m_spare.empty())
        return Block(new char[blockSize], GiveBack{this});
    char* block = m_spare.back().release();
    m_spare.pop_back();
    return Block(block, GiveBack{this});
}

void BufferPool::GiveBack::operator()(char* block) const {
    pool->put(block);
}

void BufferPool::put(char* block) {
    const std::lock_guard lock(m_mutex);
    --m_inUse;
    m_spare.emplace_back(block);
    if (m_isTrimDue)
        return;
    m_isTrimDue = true;
    m_trimAlarm = Watchdog::Alarm(m_watchdog, std::chrono::steady_clock::now() + keepSpareFor,
                                  [this]() -> std::optional<Watchdog::TimePoint> {
                                      trim();
                                      return std::nullopt;
                                  });
}

void BufferPool::trim() {
    {
        const std::lock_guard lock(m_mutex);
        m_spare.clear();
        m_isTrimDue = false;
    }
    ::malloc_trim(0);
}

} // namespace harbrix
