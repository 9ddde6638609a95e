#pragma once

#include "mount_nfs/files/ExtentMap.h"
#include "mount_nfs/session/Operations.h"

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace harbrix::nfs {

/// The writes of one file on their way to the server. A byte is in up to three places, newest
/// first: dirty (not sent), in flight, and uncommitted (answered, but perhaps only in the server's
/// memory). Writes that overlap are never in flight together, since the server may carry them out
/// in any order. Uncommitted data is kept until COMMIT has told that no restart of the server came
/// between.
class WriteBehind : public std::enable_shared_from_this<WriteBehind> {
public:
    /// Takes the outcome of waiting for writes: the first error since the last report, or Ok.
    using Done = std::move_only_function<void(Status)>;

    WriteBehind(Operations& operations, BufferPool& pool, std::uint32_t writeSize)
        : m_operations(operations), m_pool(pool), m_writeSize(writeSize) {}

    /// Copies the data; it leaves soon.
    void write(const std::shared_ptr<OpenState>& state, std::uint64_t offset, Bytes data);
    /// Calls `done` once everything written before is answered (not: on stable storage).
    void drain(Done done);
    /// Calls `done` once everything written before is on stable storage; reports and clears the
    /// error.
    void flush(Done done);
    /// Begins a COMMIT if there is anything to free by it.
    void relievePressure();

    /// An error that nobody was told yet.
    [[nodiscard]] bool hasFailed() const { return m_error != Status::Ok; }
    /// Nothing dirty, in flight or uncommitted.
    [[nodiscard]] bool isIdle() const;
    /// Nothing dirty or in flight.
    [[nodiscard]] bool isDrained() const { return m_dirty.isEmpty() && m_flying.empty(); }
    /// The largest end of file that a question asked at that time may have missed.
    [[nodiscard]] std::uint64_t endSeenSince(TimePoint asked) const;
    /// The size was set by SETATTR, so earlier ends count no more. Only while drained.
    void truncated() { m_end = 0; }
    /// Gives everything up: the file is gone for good.
    void discard();

private:
    void append(const std::shared_ptr<OpenState>& state, std::uint64_t offset, Bytes data);
    void dispatch();
    [[nodiscard]] std::optional<Extent> nextToSend();
    [[nodiscard]] bool flyingOverlaps(std::uint64_t from, std::uint64_t to) const;
    void send(Extent extent, Stability stability);
    void sent(std::list<Extent>::iterator flying, Outcome<WriteResult> outcome);
    void sawVerifier(const Verifier& verifier);
    void commit();
    void committed(Outcome<Verifier> outcome);
    void redoUncommitted();
    void settle();
    void fail(Status status);

    Operations& m_operations;
    BufferPool& m_pool;
    std::uint32_t m_writeSize;

    ExtentMap m_dirty;
    std::list<Extent> m_flying;
    ExtentMap m_uncommitted;
    std::uint64_t m_uncommittedSince = 0; ///< Uncommitted bytes since the last COMMIT was sent.
    std::optional<Verifier> m_verifier;
    unsigned m_redos = 0; ///< Since the last COMMIT that succeeded.
    bool m_committing = false;
    /// Answered after the COMMIT in flight was sent: that one does not cover them.
    ExtentMap m_late;

    std::uint64_t m_lastEnd = 0; ///< Where the last write ended: sequential ones go on from there.
    std::uint64_t m_run = 0;     ///< The length of the sequential run.
    std::uint64_t m_end = 0;     ///< The largest end that was ever written.
    TimePoint m_lastAnswer{};
    Status m_error = Status::Ok;

    std::vector<Done> m_drains;
    std::vector<Done> m_flushes;
};

} // namespace harbrix::nfs
