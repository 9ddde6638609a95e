#include "mount_smbfs/ReadAhead.h"

#include "mount_smbfs/CallScope.h"

#include <algorithm>
#include <cstring>

namespace harbrix {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr off_t blocksAhead = 4;
// The kernel's own requests of one reader may arrive in another order by this much.
constexpr off_t disorder = off_t{512} << 10;
// So much has a reader to read in sequence for each block that is read ahead of it.
constexpr off_t streakPerBlock = off_t{256} << 10;
// Data read ahead of a reader that has paused is not what the file holds now.
constexpr auto freshFor = 2s;

} // namespace

ReadAhead::ReadAhead(JobQueue& jobs, BufferPool& buffers, Watchdog& watchdog)
    : m_jobs(jobs), m_buffers(buffers), m_watchdog(watchdog) {}

bool ReadAhead::noteAccess(std::size_t size, off_t offset) {
    const off_t end = offset + static_cast<off_t>(size);
    const bool isSequential = offset >= m_expected - disorder && offset <= m_expected + disorder;
    m_streak = isSequential ? m_streak + static_cast<off_t>(size) : 0;
    m_expected = isSequential ? std::max(m_expected, end) : end;
    return isSequential;
}

void ReadAhead::startAhead(off_t offset, const std::shared_ptr<void>& owner, const Fetch& fetch) {
    const off_t depth = std::min(blocksAhead, m_streak / streakPerBlock);
    const off_t first = offset / blockSize;
    for (off_t number = first; number < first + depth; ++number) {
        if (m_blocks.contains(number) || (m_endBlock && number > *m_endBlock))
            continue;
        auto memory = m_buffers.take();
        if (!memory)
            return;
        auto block = std::make_shared<Block>();
        block->memory = std::move(memory);
        m_blocks.emplace(number, block);
        m_jobs.post([this, owner, fetch, block, number] {
            const auto size =
                fetch(std::span(block->memory.get(), BufferPool::blockSize), number * blockSize);
            {
                const std::lock_guard lock(m_mutex);
                block->size = size.value_or(0);
                block->hasFailed = !size;
                block->isReady = true;
                block->readAt = steady_clock::now();
                if (size && *size < BufferPool::blockSize)
                    m_endBlock = number;
            }
            m_blockReady.notify_all();
        });
    }
}

void ReadAhead::dropBehind(off_t offset) {
    const off_t oldest = std::max<off_t>(0, offset - disorder) / blockSize;
    m_blocks.erase(m_blocks.begin(), m_blocks.lower_bound(oldest));
}

std::optional<ReadResult> ReadAhead::take(std::size_t size, off_t offset,
                                          const std::shared_ptr<void>& owner, const Fetch& fetch) {
    std::unique_lock lock(m_mutex);
    m_lastUse = steady_clock::now();
    if (!noteAccess(size, offset)) {
        m_blocks.clear();
        m_endBlock.reset();
        return std::nullopt;
    }
    dropBehind(offset);
    startAhead(offset, owner, fetch);
    scheduleTidy();
    const off_t number = offset / blockSize;
    const off_t within = offset % blockSize;
    const auto found = m_blocks.find(number);
    if (found == m_blocks.end() || within + static_cast<off_t>(size) > blockSize)
        return std::nullopt;
    const BlockPointer block = found->second;
    const CallScope* scope = CallScope::current();
    while (!block->isReady) {
        m_blockReady.wait_for(lock, CallScope::impatienceCheck);
        if (scope && scope->shouldGiveUp())
            return std::nullopt;
    }
    if (block->hasFailed || m_lastUse - block->readAt > freshFor) {
        m_blocks.erase(number);
        return std::nullopt;
    }
    const off_t available = std::max<off_t>(0, static_cast<off_t>(block->size) - within);
    const auto count = std::min(size, static_cast<std::size_t>(available));
    return ReadResult{block, std::span<const char>(block->memory.get() + within, count)};
}

void ReadAhead::drop() {
    const std::lock_guard lock(m_mutex);
    m_blocks.clear();
    m_endBlock.reset();
}

void ReadAhead::scheduleTidy() {
    if (m_isTidyDue || m_blocks.empty())
        return;
    m_isTidyDue = true;
    const auto tidy = [this]() -> std::optional<Watchdog::TimePoint> {
        const std::lock_guard lock(m_mutex);
        const auto due = m_lastUse + freshFor;
        if (steady_clock::now() < due)
            return due;
        m_blocks.clear();
        m_endBlock.reset();
        m_isTidyDue = false;
        return std::nullopt;
    };
    m_tidyAlarm = Watchdog::Alarm(m_watchdog, m_lastUse + freshFor, tidy);
}

} // namespace harbrix
