#pragma once

#include "mount_nfs/files/Inode.h"
#include "mount_nfs/session/Operations.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace harbrix::nfs {

/// The reads of one open file. While it is read from front to back, the server is asked for what
/// comes next before the kernel is: its own read-ahead is too short for a link with any delay.
class ReadAhead : public std::enable_shared_from_this<ReadAhead> {
public:
    /// Takes the bytes in order; fewer than asked for only at the end of the file.
    using Done = std::move_only_function<void(Outcome<std::vector<Slice>>)>;

    ReadAhead(Operations& operations, BufferPool& pool, std::shared_ptr<Inode> inode,
              std::shared_ptr<OpenState> state, std::uint32_t readSize)
        : m_operations(operations), m_pool(pool), m_inode(std::move(inode)),
          m_state(std::move(state)), m_readSize(readSize) {}

    /// The file's writes must be drained.
    void read(std::uint64_t offset, std::uint32_t size, Done done);
    /// Hands in the file's beginning, which came with OPEN.
    void seed(ReadPiece start);

private:
    struct Request;
    struct Chunk {
        std::uint64_t offset = 0;
        std::uint64_t wanted = 0;
        std::vector<Slice> pieces;
        std::uint64_t filled = 0;
        bool ready = false;
        bool endOfFile = false;
        bool ahead = false; ///< Asked for before the kernel did: kept until it is used up.
        Status status = Status::Ok;
        std::vector<std::shared_ptr<Request>> waiters;
        [[nodiscard]] std::uint64_t end() const { return offset + wanted; }
    };
    struct Request {
        std::uint64_t offset = 0;
        std::uint64_t end = 0;
        std::vector<std::shared_ptr<Chunk>> chunks;
        Done done;
    };

    void cover(Request& request);
    std::shared_ptr<Chunk> fetch(std::uint64_t offset, std::uint64_t length, bool ahead);
    void ask(const std::shared_ptr<Chunk>& chunk);
    void arrived(const std::shared_ptr<Chunk>& chunk, Outcome<ReadPiece> outcome);
    void serve(const std::shared_ptr<Request>& request);
    void collect(const Request& request, const Chunk& chunk, std::vector<Slice>& into) const;
    void lookAhead(std::uint64_t from);
    [[nodiscard]] std::map<std::uint64_t, std::shared_ptr<Chunk>>::iterator
    firstOverlapping(std::uint64_t offset);

    Operations& m_operations;
    BufferPool& m_pool;
    std::shared_ptr<Inode> m_inode;
    std::shared_ptr<OpenState> m_state;
    std::uint32_t m_readSize;

    std::map<std::uint64_t, std::shared_ptr<Chunk>> m_chunks; ///< They do not overlap.
    std::uint64_t m_version = 0; ///< The content version for which the chunks are valid.
    std::uint64_t m_next = 0;    ///< Where a sequential reader goes on.
    std::uint64_t m_run = 0;     ///< Bytes read in sequence so far.
};

} // namespace harbrix::nfs
