#pragma once

#include "mount_smbfs/Watchdog.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace harbrix {

/// The memory for data on its way: blocks of 1 MiB, a fixed number at most. Blocks that came back
/// are kept for a few seconds, because fresh pages cost more than the copying. All functions from
/// any thread.
class BufferPool {
public:
    static constexpr std::size_t blockSize = std::size_t{1} << 20;

    BufferPool(std::size_t maximumBlocks, Watchdog& watchdog);

    struct GiveBack {
        BufferPool* pool = nullptr;
        void operator()(char* block) const;
    };
    using Block = std::unique_ptr<char, GiveBack>;

    /// Null if all blocks are in use.
    [[nodiscard]] Block take();

private:
    void put(char* block);
    void trim();

    const std::size_t m_maximum;
    Watchdog& m_watchdog;
    std::mutex m_mutex;
    std::size_t m_inUse = 0;
    std::vector<std::unique_ptr<char[]>> m_spare;
    bool m_isTrimDue = false;
    Watchdog::Alarm m_trimAlarm;
};

} // namespace harbrix
