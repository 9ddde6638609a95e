#include "mount_nfs/files/WriteBehind.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace harbrix::nfs {

namespace {
constexpr std::size_t maximumFlying = 8;
/// Partly filled extents wait for more data while this many are on their way.
constexpr std::size_t busy = 2;
/// A server that shows another verifier each time must not keep this side writing for ever.
constexpr unsigned maximumRedos = 16;
} // namespace

void WriteBehind::write(const std::shared_ptr<OpenState>& state, std::uint64_t offset, Bytes data) {
    m_run = offset == m_lastEnd ? m_run + data.size() : data.size();
    m_lastEnd = offset + data.size();
    m_end = std::max(m_end, m_lastEnd);
    while (!data.empty()) {
        const std::size_t part = std::min<std::size_t>(data.size(), m_writeSize);
        append(state, offset, data.first(part));
        offset += part;
        data = data.subspan(part);
    }
    dispatch();
}

void WriteBehind::append(const std::shared_ptr<OpenState>& state, std::uint64_t offset,
                         Bytes data) {
    m_dirty.cut(offset, offset + data.size());
    Extent* before = m_dirty.endingAt(offset);
    if (before && before->state == state && before->length < m_writeSize) {
        const std::size_t used = before->start + before->length;
        const std::size_t room =
            std::min<std::size_t>(before->buffer->capacity() - used, m_writeSize - before->length);
        const std::size_t part = std::min(room, data.size());
        // A part of the buffer behind the extent may belong to one that was cut off and sent.
        if (part > 0 && before->buffer.use_count() == 1) {
            std::memcpy(before->buffer->data() + used, data.data(), part);
            m_dirty.grown(*before, static_cast<std::uint32_t>(part));
            offset += part;
            data = data.subspan(part);
        }
    }
    if (data.empty())
        return;
    // A long run gets large buffers, a lone small write a small one.
    const std::size_t wanted =
        std::clamp<std::size_t>(std::bit_ceil(m_run), data.size(), m_writeSize);
    Extent extent{offset, static_cast<std::uint32_t>(data.size()), m_pool.allocate(wanted), 0,
                  state};
    std::memcpy(extent.buffer->data(), data.data(), data.size());
    m_dirty.put(extent);
}

bool WriteBehind::flyingOverlaps(std::uint64_t from, std::uint64_t to) const {
    return std::any_of(m_flying.begin(), m_flying.end(), [&](const Extent& extent) {
        return extent.offset < to && extent.end() > from;
    });
}

std::optional<Extent> WriteBehind::nextToSend() {
    const bool urgent = !m_drains.empty() || !m_flushes.empty() || m_flying.size() < busy;
    for (const auto& [offset, extent] : m_dirty.all()) {
        const bool growing = extent.end() == m_lastEnd && extent.length < m_writeSize;
        if (growing && !urgent)
            continue;
        if (!flyingOverlaps(offset, extent.end()))
            return m_dirty.take(offset);
    }
    return std::nullopt;
}

void WriteBehind::dispatch() {
    while (m_flying.size() < maximumFlying) {
        auto extent = nextToSend();
        if (!extent)
            return;
        // The last piece of a small file goes out stable and spares the COMMIT.
        const bool alone = !m_flushes.empty() && m_dirty.isEmpty() && m_flying.empty() &&
                           m_uncommitted.isEmpty() && m_late.isEmpty() && !m_committing;
        if (extent->buffer->capacity() / 4 > extent->length) {
            auto fitting = m_pool.allocate(extent->length);
            std::memcpy(fitting->data(), extent->buffer->data() + extent->start, extent->length);
            extent->buffer = std::move(fitting);
            extent->start = 0;
        }
        send(std::move(*extent), alone ? Stability::FileSync : Stability::Unstable);
    }
}

void WriteBehind::send(Extent extent, Stability stability) {
    m_flying.push_back(std::move(extent));
    const auto flying = std::prev(m_flying.end());
    m_operations.write(flying->state, flying->offset, stability, flying->slice(),
                       [self = shared_from_this(), flying](Outcome<WriteResult> outcome) {
                           self->sent(flying, std::move(outcome));
                       });
}

void WriteBehind::sent(std::list<Extent>::iterator flying, Outcome<WriteResult> outcome) {
    const Extent extent = std::move(*flying);
    m_flying.erase(flying);
    m_lastAnswer = Clock::now();
    if (!outcome) {
        fail(outcome.error());
    } else {
        const std::uint64_t done = extent.offset + outcome->count;
        if (outcome->committed != Stability::FileSync) {
            // This extent is newer than what a restarted server makes us send again.
            m_late.cut(extent.offset, extent.end());
            m_uncommitted.cut(extent.offset, extent.end());
            sawVerifier(outcome->verifier);
            (m_committing ? m_late : m_uncommitted).put(extent.part(extent.offset, done));
            m_uncommittedSince += outcome->count;
        }
        if (done < extent.end())
            m_dirty.putBelow(extent.part(done, extent.end()));
        if (m_uncommittedSince > m_pool.limit() / 4)
            commit();
    }
    dispatch();
    settle();
}

void WriteBehind::sawVerifier(const Verifier& verifier) {
    const bool changed = m_verifier && *m_verifier != verifier;
    m_verifier = verifier;
    if (changed)
        redoUncommitted();
}

void WriteBehind::redoUncommitted() {
    // The server was started anew and has forgotten what it had in memory only. What is in flight
    // or dirty is newer than any of it.
    if (++m_redos > maximumRedos) {
        fail(Status::Io);
        m_late.clear();
        m_uncommitted.clear();
    }
    for (ExtentMap* map : {&m_late, &m_uncommitted}) {
        for (const Extent& lost : map->takeAll()) {
            ExtentMap pieces;
            pieces.put(lost);
            for (const Extent& newer : m_flying)
                pieces.cut(newer.offset, newer.end());
            for (const Extent& piece : pieces.takeAll())
                m_dirty.putBelow(piece);
        }
    }
    m_uncommittedSince = 0;
}

void WriteBehind::commit() {
    if (m_committing || m_uncommitted.isEmpty())
        return;
    m_committing = true;
    m_uncommittedSince = 0;
    m_operations.commit(m_uncommitted.all().begin()->second.state,
                        [self = shared_from_this()](Outcome<Verifier> outcome) {
                            self->committed(std::move(outcome));
                        });
}

void WriteBehind::committed(Outcome<Verifier> outcome) {
    m_committing = false;
    if (!outcome) {
        // No telling what is safe: it is all said to be lost, once.
        fail(outcome.error());
        m_uncommitted.clear();
    } else if (m_verifier && *m_verifier == *outcome) {
        m_redos = 0;
        m_uncommitted.clear();
    } else {
        sawVerifier(*outcome);
    }
    for (const Extent& extent : m_late.takeAll())
        m_uncommitted.put(extent);
    dispatch();
    settle();
}

void WriteBehind::drain(Done done) {
    m_drains.push_back(std::move(done));
    dispatch();
    settle();
}

void WriteBehind::flush(Done done) {
    m_flushes.push_back(std::move(done));
    dispatch();
    settle();
}

void WriteBehind::settle() {
    if (!isDrained())
        return;
    const auto self = shared_from_this(); // a callback may drop the last other owner
    for (Done& done : std::exchange(m_drains, {}))
        done(m_error);
    if (m_flushes.empty() || !isDrained())
        return;
    if (!m_uncommitted.isEmpty())
        return commit();
    if (m_committing)
        return;
    const Status status = std::exchange(m_error, Status::Ok);
    for (Done& done : std::exchange(m_flushes, {}))
        done(status);
}

void WriteBehind::relievePressure() {
    commit();
}

bool WriteBehind::isIdle() const {
    return isDrained() && m_uncommitted.isEmpty() && m_late.isEmpty() && !m_committing;
}

std::uint64_t WriteBehind::endSeenSince(TimePoint asked) const {
    return isDrained() && asked >= m_lastAnswer ? 0 : m_end;
}

void WriteBehind::fail(Status status) {
    if (m_error == Status::Ok)
        m_error = status;
}

void WriteBehind::discard() {
    m_dirty.clear();
    if (!m_committing)
        m_uncommitted.clear();
    settle();
}

} // namespace harbrix::nfs
