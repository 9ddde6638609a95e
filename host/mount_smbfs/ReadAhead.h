#pragma once

#include "mount_smbfs/BufferPool.h"
#include "mount_smbfs/JobQueue.h"
#include "mount_smbfs/Outcome.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>

namespace harbrix {

/// Bytes that were read, and what keeps them alive. Shorter than asked for at the end of the file
/// only.
struct ReadResult {
    std::shared_ptr<const void> owner;
    std::span<const char> bytes;
};

/// Reads a file ahead of a sequential reader, in blocks of 1 MiB, several at once: the kernel
/// itself looks 128 KiB ahead and an ordinary user cannot change that. Any thread.
class ReadAhead {
public:
    /// Reads into the buffer; fewer bytes only at the end of the file. Called on the job threads.
    using Fetch = std::function<Outcome<std::size_t>(std::span<char>, off_t)>;

    static constexpr off_t blockSize = static_cast<off_t>(BufferPool::blockSize);

    ReadAhead(JobQueue& jobs, BufferPool& buffers, Watchdog& watchdog);

    /// The bytes, if the reader is a sequential one and they were or are being read ahead; waits
    /// for them. Absent: the caller reads them itself. `owner` keeps the file alive while jobs run
    /// for it.
    [[nodiscard]] std::optional<ReadResult>
    take(std::size_t size, off_t offset, const std::shared_ptr<void>& owner, const Fetch& fetch);

    /// Forgets all that was read: the file has changed, or the reader has gone.
    void drop();

private:
    struct Block {
        BufferPool::Block memory;
        std::size_t size = 0;
        bool isReady = false;
        bool hasFailed = false;
        std::chrono::steady_clock::time_point readAt;
    };
    using BlockPointer = std::shared_ptr<Block>;

    [[nodiscard]] bool noteAccess(std::size_t size, off_t offset);
    void startAhead(off_t offset, const std::shared_ptr<void>& owner, const Fetch& fetch);
    void dropBehind(off_t offset);
    void scheduleTidy();

    JobQueue& m_jobs;
    BufferPool& m_buffers;
    Watchdog& m_watchdog;
    std::mutex m_mutex;
    std::condition_variable m_blockReady;
    std::map<off_t, BlockPointer> m_blocks; ///< by number, offset / blockSize
    off_t m_expected = 0;
    off_t m_streak = 0;
    std::optional<off_t> m_endBlock; ///< the block that held the end of the file
    std::chrono::steady_clock::time_point m_lastUse;
    bool m_isTidyDue = false;
    Watchdog::Alarm m_tidyAlarm;
};

} // namespace harbrix
