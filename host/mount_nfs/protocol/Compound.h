#pragma once

#include "mount_nfs/protocol/Attributes.h"
#include "mount_nfs/protocol/Nfs4.h"
#include "mount_nfs/protocol/Xdr.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace harbrix::nfs {

/// What OPEN does about a file that is not there yet.
enum class CreateMode { None, Unchecked, Guarded };

struct OpenOwner {
    std::uint64_t clientId = 0;
    std::uint64_t owner = 0;
};

struct ByteRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0; ///< All ones: to the end of the file.
};

/// Writes the arguments of COMPOUND, operation by operation.
class CompoundWriter {
public:
    CompoundWriter(XdrWriter& out, std::uint32_t minorVersion);

    // Around the current file handle.
    void putRootFh() { begin(Op::PutRootFh); }
    void putFh(const FileHandle& handle);
    void getFh() { begin(Op::GetFh); }
    void saveFh() { begin(Op::SaveFh); }
    void restoreFh() { begin(Op::RestoreFh); }
    void lookup(std::string_view name);
    void lookupParent() { begin(Op::LookupParent); }

    // Attributes and names.
    void getAttr(const AttrMask& wanted);
    void setAttr(const Stateid& stateid, const AttributeChange& change);
    void access(std::uint32_t wanted);
    void readLink() { begin(Op::ReadLink); }
    void create(FileType type, std::string_view name, const AttributeChange& attributes,
                std::string_view linkTarget, std::uint32_t deviceMajor, std::uint32_t deviceMinor);
    void remove(std::string_view name);
    void rename(std::string_view from, std::string_view to);
    void link(std::string_view name);
    void readDir(std::uint64_t cookie, const Verifier& verifier, std::uint32_t maximumBytes,
                 const AttrMask& wanted);

    // Open files.
    void openByName(const OpenOwner& owner, std::uint32_t sequence, std::uint32_t access,
                    std::string_view name, CreateMode mode, const AttributeChange& attributes);
    void openByHandle(const OpenOwner& owner, std::uint32_t access);
    void openReclaim(const OpenOwner& owner, std::uint32_t access);
    void openConfirm(const Stateid& stateid, std::uint32_t sequence);
    void close(const Stateid& stateid, std::uint32_t sequence);
    void delegReturn(const Stateid& stateid);
    void read(const Stateid& stateid, std::uint64_t offset, std::uint32_t count);
    void write(const Stateid& stateid, std::uint64_t offset, Stability stability, Slice data);
    void commit(std::uint64_t offset, std::uint32_t count);

    // Byte-range locks.
    void lockFirst(LockType type, bool reclaim, const ByteRange& range, const Stateid& open,
                   const OpenOwner& lockOwner);
    void lockMore(LockType type, bool reclaim, const ByteRange& range, const Stateid& lock);
    void lockTest(LockType type, const ByteRange& range, const OpenOwner& lockOwner);
    void unlock(LockType type, const ByteRange& range, const Stateid& lock);
    void freeStateid(const Stateid& stateid);

    // Client, session, lease.
    void exchangeId(const Verifier& boot, std::string_view clientName);
    void createSession(std::uint64_t clientId, std::uint32_t sequence, std::uint32_t maximumMessage,
                       std::uint32_t slots);
    void sequence(const SessionId& session, std::uint32_t sequence, std::uint32_t slot,
                  std::uint32_t highestSlot, bool cacheReply);
    void reclaimComplete();
    void destroySession(const SessionId& session);
    void destroyClientId(std::uint64_t clientId);
    void setClientId(const Verifier& boot, std::string_view clientName);
    void setClientIdConfirm(std::uint64_t clientId, const Verifier& confirm);

private:
    void begin(Op op);
    void stateid(const Stateid& stateid);
    void owner(const OpenOwner& owner);

    XdrWriter& m_out;
    std::size_t m_countAt;
    std::uint32_t m_count = 0;
};

struct OpenResult {
    Stateid stateid;
    std::uint32_t flags = 0;
    /// A delegation that nobody asked for; it goes back at once.
    std::optional<Stateid> delegation;
};

struct ReadResult {
    bool endOfFile = false;
    Bytes data; ///< Points into the record.
};

struct WriteResult {
    std::uint32_t count = 0;
    Stability committed = Stability::Unstable;
    Verifier verifier{};
};

struct DirectoryEntry {
    std::uint64_t cookie = 0;
    std::string_view name; ///< Points into the record; checked by the caller.
    Attributes attributes;
};

struct ExchangeIdResult {
    std::uint64_t clientId = 0;
    std::uint32_t sequence = 0;
    std::uint32_t flags = 0;
};

struct CreateSessionResult {
    SessionId session{};
    std::uint32_t maximumRequest = 0;
    std::uint32_t maximumResponse = 0;
    std::uint32_t maximumOperations = 0;
    std::uint32_t slots = 0;
};

struct SequenceResult {
    SessionId session{};
    std::uint32_t sequence = 0;
    std::uint32_t slot = 0;
    std::uint32_t targetHighestSlot = 0;
    std::uint32_t statusFlags = 0;
};

/// Reads the results of COMPOUND. Each operation is announced by `next`, then its body is read by
/// the function of its name. Bytes that do not decode make the reader `malformed` for good.
class CompoundReader {
public:
    explicit CompoundReader(Bytes results);

    /// The status of the last operation that ran.
    [[nodiscard]] Status status() const { return m_status; }
    [[nodiscard]] bool malformed() const { return m_in.failed(); }

    /// Whether the next result belongs to `op` and succeeded; only then its body may be read.
    [[nodiscard]] bool next(Op op);
    /// The status of the result that `next` looked at last.
    [[nodiscard]] Status lastStatus() const { return m_last; }

    [[nodiscard]] FileHandle getFh();
    [[nodiscard]] Attributes getAttr() { return decodeAttributes(m_in); }
    void setAttr() { (void) AttrMask::decode(m_in); }
    [[nodiscard]] std::uint32_t access();
    [[nodiscard]] std::string_view readLink();
    void create();
    void changeInfo();
    [[nodiscard]] OpenResult open();
    [[nodiscard]] Stateid stateid();
    [[nodiscard]] ReadResult read();
    [[nodiscard]] WriteResult write();
    [[nodiscard]] Verifier verifier();
    [[nodiscard]] ExchangeIdResult exchangeId();
    [[nodiscard]] CreateSessionResult createSession();
    [[nodiscard]] SequenceResult sequence();
    [[nodiscard]] std::uint64_t clientId() { return m_in.u64(); }

    /// READDIR: the verifier first, then entries until one is missing, then whether that was all.
    [[nodiscard]] bool nextEntry(DirectoryEntry& entry);
    [[nodiscard]] bool endOfDirectory() { return m_in.boolean(); }

    /// The holder of a lock, behind a LOCK or LOCKT that was denied.
    struct Denied {
        ByteRange range;
        LockType type = LockType::Write;
    };
    [[nodiscard]] Denied denied();

private:
    template <std::size_t Size>
    std::array<std::uint8_t, Size> array();

    XdrReader m_in;
    Status m_status = Status::LocalMalformed;
    Status m_last = Status::LocalMalformed;
    std::uint32_t m_left = 0;
};

} // namespace harbrix::nfs
