#include "mount_nfs/files/ReadAhead.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace harbrix::nfs {

namespace {
constexpr std::uint64_t smallestChunk = 128 * 1024;
constexpr std::uint64_t smallestWindow = 256 * 1024;
constexpr std::uint64_t largestWindow = 8 << 20;
/// What reading ahead may hold of the mount's memory, in hundredths: writes need the rest.
constexpr unsigned memoryShare = 60;
} // namespace

void ReadAhead::read(std::uint64_t offset, std::uint32_t size, Done done) {
    if (m_version != m_inode->contentVersion) {
        m_chunks.clear();
        m_version = m_inode->contentVersion;
    }
    const auto known = firstOverlapping(offset);
    const bool covered = known != m_chunks.end() && known->first <= offset;
    if (offset == m_next || covered) {
        m_run += size;
    } else {
        m_run = 0;
        m_chunks.clear(); // a jump: what was read ahead is not wanted any more
    }
    m_next = offset + size;

    auto request = std::make_shared<Request>();
    request->offset = offset;
    request->end = offset + size;
    request->done = std::move(done);
    cover(*request);
    for (const auto& chunk : request->chunks)
        if (!chunk->ready)
            chunk->waiters.push_back(request);
    if (m_run > 0)
        lookAhead(offset + size);
    serve(request);
}

void ReadAhead::seed(ReadPiece start) {
    m_version = m_inode->contentVersion;
    auto chunk = std::make_shared<Chunk>();
    chunk->wanted = std::max<std::uint64_t>(start.data.bytes.size(), 1);
    chunk->filled = start.data.bytes.size();
    chunk->pieces.push_back(std::move(start.data));
    chunk->endOfFile = start.endOfFile;
    chunk->ahead = true;
    chunk->ready = true;
    if (chunk->filled > 0 || chunk->endOfFile)
        m_chunks[0] = std::move(chunk);
}

std::map<std::uint64_t, std::shared_ptr<ReadAhead::Chunk>>::iterator
ReadAhead::firstOverlapping(std::uint64_t offset) {
    auto each = m_chunks.upper_bound(offset);
    if (each != m_chunks.begin() && std::prev(each)->second->end() > offset)
        --each;
    return each;
}

void ReadAhead::cover(Request& request) {
    std::uint64_t position = request.offset;
    while (position < request.end) {
        const auto next = firstOverlapping(position);
        std::shared_ptr<Chunk> chunk;
        if (next != m_chunks.end() && next->first <= position) {
            chunk = next->second;
        } else {
            const std::uint64_t end =
                next == m_chunks.end() ? request.end : std::min(request.end, next->first);
            chunk = fetch(position, std::min<std::uint64_t>(end - position, m_readSize), false);
        }
        position = chunk->end();
        request.chunks.push_back(chunk);
        if (chunk->ready && chunk->endOfFile)
            return;
    }
}

std::shared_ptr<ReadAhead::Chunk> ReadAhead::fetch(std::uint64_t offset, std::uint64_t length,
                                                   bool ahead) {
    auto chunk = std::make_shared<Chunk>();
    chunk->offset = offset;
    chunk->wanted = length;
    chunk->ahead = ahead;
    m_chunks[offset] = chunk;
    ask(chunk);
    return chunk;
}

void ReadAhead::ask(const std::shared_ptr<Chunk>& chunk) {
    const auto count = static_cast<std::uint32_t>(chunk->wanted - chunk->filled);
    m_operations.read(m_state, chunk->offset + chunk->filled, count,
                      [self = shared_from_this(), chunk](Outcome<ReadPiece> outcome) {
                          self->arrived(chunk, std::move(outcome));
                      });
}

void ReadAhead::arrived(const std::shared_ptr<Chunk>& chunk, Outcome<ReadPiece> outcome) {
    if (!outcome) {
        chunk->status = outcome.error();
    } else {
        const std::size_t length = outcome->data.bytes.size();
        chunk->filled += length;
        chunk->endOfFile = outcome->endOfFile;
        if (length > 0)
            chunk->pieces.push_back(std::move(outcome->data));
        else if (!chunk->endOfFile)
            chunk->status = Status::Io; // neither data nor an end: a server that loops
        if (chunk->status == Status::Ok && !chunk->endOfFile && chunk->filled < chunk->wanted)
            return ask(chunk); // a server may always send less
    }
    chunk->ready = true;
    const auto known = m_chunks.find(chunk->offset);
    if (chunk->status != Status::Ok && known != m_chunks.end() && known->second == chunk)
        m_chunks.erase(known);
    for (const auto& request : std::exchange(chunk->waiters, {}))
        serve(request);
}

void ReadAhead::serve(const std::shared_ptr<Request>& request) {
    if (!request->done)
        return;
    for (const auto& chunk : request->chunks)
        if (!chunk->ready)
            return;
    std::vector<Slice> slices;
    Status status = Status::Ok;
    for (const auto& chunk : request->chunks) {
        status = chunk->status;
        if (status != Status::Ok)
            break;
        collect(*request, *chunk, slices);
        const auto known = m_chunks.find(chunk->offset);
        const bool usedUp = !chunk->ahead || request->end >= chunk->end();
        if (usedUp && known != m_chunks.end() && known->second == chunk)
            m_chunks.erase(known);
        if (chunk->endOfFile)
            break;
    }
    auto done = std::move(request->done);
    request->done = nullptr;
    if (status != Status::Ok)
        return done(std::unexpected(status));
    done(std::move(slices));
}

void ReadAhead::collect(const Request& request, const Chunk& chunk,
                        std::vector<Slice>& into) const {
    std::uint64_t position = chunk.offset;
    for (const Slice& piece : chunk.pieces) {
        const std::uint64_t end = position + piece.bytes.size();
        const std::uint64_t from = std::max(position, request.offset);
        const std::uint64_t to = std::min(end, request.end);
        if (from < to)
            into.push_back({piece.owner, piece.bytes.subspan(from - position, to - from)});
        position = end;
    }
}

void ReadAhead::lookAhead(std::uint64_t from) {
    const std::uint64_t window =
        std::clamp(std::bit_floor(2 * m_run), smallestWindow, largestWindow);
    const std::uint64_t unit = std::clamp<std::uint64_t>(
        window / 8, std::min<std::uint64_t>(smallestChunk, m_readSize), m_readSize);
    const std::uint64_t end = std::min(from + window, m_inode->attributes.size);
    std::uint64_t position = from;
    while (position < end) {
        const auto next = firstOverlapping(position);
        if (next != m_chunks.end() && next->first <= position) {
            position = next->second->end();
            continue;
        }
        // Whole units only, but for the end of the file: a trickle of short reads would be slower.
        const std::uint64_t length = std::min(
            unit, (next == m_chunks.end() ? m_inode->attributes.size : next->first) - position);
        const bool whole = length == unit || next != m_chunks.end() ||
                           position + length >= m_inode->attributes.size;
        if (!whole || position + length > from + window + unit || !m_pool.room(unit, memoryShare))
            return;
        (void) fetch(position, length, true);
        position += length;
    }
}

} // namespace harbrix::nfs
