#pragma once

#include "mount_smbfs/Answer.h"
#include "mount_smbfs/BufferPool.h"
#include "mount_smbfs/JobQueue.h"
#include "mount_smbfs/ReadAhead.h"
#include "mount_smbfs/ServerLink.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

namespace harbrix {

/// What all open files of a mount share.
struct FileServices {
    ServerLink& link;
    JobQueue& jobs;
    BufferPool& buffers;
    Watchdog& watchdog;
};

/// A file that the kernel holds open, however often: its handles on the server, one for each
/// connection that works on it, the writes that are still on their way and the data read ahead.
///
/// Writes are collected in blocks and sent by background threads, several at once but never two
/// that overlap. A write that fails there makes every later write, fsync and close of the file
/// fail. A handle lost with its connection is opened anew by path, but only if the same file is
/// still there: otherwise ESTALE. All functions from any thread.
class OpenFile : public std::enable_shared_from_this<OpenFile> {
public:
    /// Absent when the file has lost its name.
    using PathSource = std::function<std::optional<std::string>()>;

    enum class Access { read = 1, write = 2, readWrite = 3 };

    OpenFile(FileServices services, PathSource path);
    /// Only after close().
    ~OpenFile();

    /// Opens it on the server, with the flags of open(2) that make it or empty it. Returns what the
    /// server says of it; that may be `known`, from a moment ago.
    [[nodiscard]] Outcome<Answer> open(Access access, int creationFlags,
                                       const std::optional<Answer>& known);
    /// Whether it was opened in a way that can have changed its content.
    [[nodiscard]] bool isWritable() const;
    /// Sends what is left, then closes on the server. Errors of writing have been told by flush().
    void close();
    /// Closes the server's handles for the moment, so that the name can be changed or removed; the
    /// next use opens them anew.
    void releaseHandles();

    [[nodiscard]] Outcome<ReadResult> read(std::size_t size, off_t offset);
    /// How many bytes were taken over: all, or fewer if the caller was interrupted.
    [[nodiscard]] Outcome<std::size_t> write(std::span<const char> bytes, off_t offset);
    /// Waits until all that was written has reached the server.
    [[nodiscard]] Outcome<void> flush();
    [[nodiscard]] Outcome<void> truncate(off_t size);
    [[nodiscard]] Outcome<Answer> attributes();

private:
    struct Slot {
        SMBCFILE* file = nullptr;
        std::uint64_t epoch = 0;
        int access = 0;
    };
    // Bytes on their way to the server.
    struct WriteBlock {
        BufferPool::Block memory;
        std::size_t size = 0;
        off_t offset = 0;
        [[nodiscard]] off_t end() const { return offset + static_cast<off_t>(size); }
    };
    using Lock = std::unique_lock<std::mutex>;

    // With the lane in hand:
    [[nodiscard]] Outcome<SMBCFILE*> handleOn(Lane& lane, Access access, int creationFlags = 0);
    [[nodiscard]] Outcome<struct stat> attributesOn(Lane& lane);
    [[nodiscard]] Outcome<void> checkIdentity(Lane& lane);
    void closeSlot(Lane& lane);

    [[nodiscard]] unsigned usableLanes(unsigned allowed) const;
    [[nodiscard]] Outcome<void> send(const WriteBlock& block, unsigned allowedLanes);
    [[nodiscard]] Outcome<std::size_t> fetch(std::span<char> buffer, off_t offset,
                                             unsigned allowedLanes);

    // With m_mutex held:
    [[nodiscard]] Outcome<void> waitForWriters(Lock& lock, const std::function<bool()>& condition);
    [[nodiscard]] Outcome<void> makeRoom(Lock& lock, off_t offset);
    [[nodiscard]] Outcome<void> submit(Lock& lock);
    [[nodiscard]] Outcome<void> drain(Lock& lock);
    void scheduleFlush();
    [[nodiscard]] bool overlapsInFlight(const WriteBlock& block) const;

    void runWrite(const std::shared_ptr<WriteBlock>& block);
    void submitLate();

    FileServices m_services;
    PathSource m_path;
    std::atomic<int> m_wanted = 0; ///< every access asked for so far
    std::atomic<ino_t> m_identity = 0;
    /// False while the identity is what the name meant a moment before the file was opened.
    std::atomic<bool> m_isIdentityCertain = false;
    std::atomic<unsigned> m_occupied = 0; ///< lanes with a handle
    std::atomic<bool> m_isClosed = false;
    /// Each touched only by the thread that has its lane.
    std::array<Slot, ServerLink::maximumLanes> m_slots;

    std::mutex m_mutex;
    std::condition_variable m_writersChanged;
    std::shared_ptr<WriteBlock> m_collecting;
    std::list<std::shared_ptr<WriteBlock>> m_inFlight;
    int m_writeError = 0;
    bool m_isFlushDue = false;
    Watchdog::Alarm m_flushAlarm;

    ReadAhead m_readAhead;
};

} // namespace harbrix
