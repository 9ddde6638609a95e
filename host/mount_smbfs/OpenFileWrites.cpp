// The part of OpenFile that collects what is written and sends it in the background.
#include "mount_smbfs/CallScope.h"
#include "mount_smbfs/OpenFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace harbrix {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr std::size_t blocksInFlight = 4;
// Below this a write is sent by the thread that waits for it; the hop to another costs more.
constexpr std::size_t smallWrite = std::size_t{256} << 10;
constexpr auto collectFor = 1s;
// What a writer waits for is bounded by the limit of each transfer; this only ends a lost wake-up.
constexpr auto longestWait = 90s;

} // namespace

Outcome<void> OpenFile::send(const WriteBlock& block, unsigned allowedLanes) {
    const CallPlan plan{
        .kind = CallKind::transfer, .allowed = usableLanes(allowedLanes), .preferred = m_occupied};
    return m_services.link.call(plan, [&](Lane& lane) -> Outcome<void> {
        const auto file = handleOn(lane, Access::write);
        if (!file)
            return std::unexpected(file.error());
        return lane.connection.write(*file, std::span(block.memory.get(), block.size),
                                     block.offset);
    });
}

Outcome<void> OpenFile::waitForWriters(Lock& lock, const std::function<bool()>& condition) {
    const CallScope* scope = CallScope::current();
    const auto end = steady_clock::now() + longestWait;
    while (!condition()) {
        m_writersChanged.wait_for(lock, CallScope::impatienceCheck);
        if (scope && scope->shouldGiveUp())
            return std::unexpected(EINTR);
        if (steady_clock::now() > end)
            return std::unexpected(ETIMEDOUT);
    }
    return {};
}

bool OpenFile::overlapsInFlight(const WriteBlock& block) const {
    return std::any_of(m_inFlight.begin(), m_inFlight.end(), [&](const auto& other) {
        return block.offset < other->end() && other->offset < block.end();
    });
}

Outcome<void> OpenFile::submit(Lock& lock) {
    const auto block = m_collecting;
    if (!block)
        return {};
    const auto mayGo = [&] {
        return m_collecting != block ||
               (m_inFlight.size() < blocksInFlight && !overlapsInFlight(*block));
    };
    if (auto waited = waitForWriters(lock, mayGo); !waited)
        return waited;
    // Another thread may have sent it off while this one waited.
    if (m_collecting != block)
        return {};
    m_collecting.reset();
    m_inFlight.push_back(block);
    m_services.jobs.post([self = shared_from_this(), block] { self->runWrite(block); });
    return {};
}

void OpenFile::runWrite(const std::shared_ptr<WriteBlock>& block) {
    const auto sent = send(*block, m_services.link.transferLanes());
    // A reader may have read ahead what was there before.
    m_readAhead.drop();
    {
        const std::lock_guard lock(m_mutex);
        if (!sent && m_writeError == 0)
            m_writeError = sent.error();
        block->memory.reset();
        m_inFlight.remove(block);
    }
    m_writersChanged.notify_all();
}

// A block to collect into at this offset: the current one if it continues or rewrites it, else a
// new one.
Outcome<void> OpenFile::makeRoom(Lock& lock, off_t offset) {
    for (;;) {
        const auto& block = m_collecting;
        const bool fits = block && offset >= block->offset && offset <= block->end() &&
                          offset < block->offset + static_cast<off_t>(BufferPool::blockSize);
        if (fits)
            return {};
        if (block) {
            if (auto submitted = submit(lock); !submitted)
                return submitted;
            continue;
        }
        BufferPool::Block memory;
        const auto hasMemory = [&] {
            if (!memory && !m_collecting)
                memory = m_services.buffers.take();
            return memory || m_collecting;
        };
        if (auto waited = waitForWriters(lock, hasMemory); !waited)
            return waited;
        if (m_collecting)
            continue;
        m_collecting = std::make_shared<WriteBlock>();
        m_collecting->memory = std::move(memory);
        m_collecting->offset = offset;
        scheduleFlush();
    }
}

Outcome<std::size_t> OpenFile::write(std::span<const char> bytes, off_t offset) {
    m_readAhead.drop();
    Lock lock(m_mutex);
    std::size_t taken = 0;
    while (taken < bytes.size()) {
        if (m_writeError != 0)
            return std::unexpected(m_writeError);
        const off_t at = offset + static_cast<off_t>(taken);
        if (auto room = makeRoom(lock, at); !room) {
            if (taken > 0)
                return taken;
            return std::unexpected(room.error());
        }
        WriteBlock& block = *m_collecting;
        const auto within = static_cast<std::size_t>(at - block.offset);
        const std::size_t count = std::min(bytes.size() - taken, BufferPool::blockSize - within);
        std::memcpy(block.memory.get() + within, bytes.data() + taken, count);
        block.size = std::max(block.size, within + count);
        taken += count;
        if (block.size == BufferPool::blockSize) {
            // The bytes are taken over in any case; a failure to send them shows at the next call.
            (void) submit(lock);
        }
    }
    return taken;
}

// What a writer leaves in a half-full block reaches the server within a moment, not only at close.
void OpenFile::scheduleFlush() {
    if (m_isFlushDue)
        return;
    m_isFlushDue = true;
    const auto flushLate = [weak = weak_from_this()]() -> std::optional<Watchdog::TimePoint> {
        if (const auto self = weak.lock())
            self->m_services.jobs.post([self] { self->submitLate(); });
        return std::nullopt;
    };
    m_flushAlarm =
        Watchdog::Alarm(m_services.watchdog, steady_clock::now() + collectFor, flushLate);
}

void OpenFile::submitLate() {
    Lock lock(m_mutex);
    m_isFlushDue = false;
    // Waiting here could hold the very thread that is waited for.
    if (!m_collecting)
        return;
    if (m_inFlight.size() >= blocksInFlight || overlapsInFlight(*m_collecting)) {
        scheduleFlush();
        return;
    }
    (void) submit(lock);
}

Outcome<void> OpenFile::drain(Lock& lock) {
    while (m_collecting || !m_inFlight.empty()) {
        if (m_collecting && m_inFlight.empty() && m_collecting->size <= smallWrite) {
            const auto block = std::exchange(m_collecting, nullptr);
            m_inFlight.push_back(block);
            lock.unlock();
            const auto sent = send(*block, ~0U);
            m_readAhead.drop();
            lock.lock();
            if (!sent && m_writeError == 0)
                m_writeError = sent.error();
            m_inFlight.remove(block);
            m_writersChanged.notify_all();
            continue;
        }
        if (auto submitted = submit(lock); !submitted)
            return submitted;
        const auto isQuiet = [&] { return m_inFlight.empty(); };
        if (auto waited = waitForWriters(lock, isQuiet); !waited)
            return waited;
    }
    if (m_writeError != 0)
        return std::unexpected(m_writeError);
    return {};
}

Outcome<void> OpenFile::flush() {
    Lock lock(m_mutex);
    return drain(lock);
}

} // namespace harbrix
