#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <functional>
#include <span>
#include <string>
#include <string_view>

/// The numbers of NFSv4.0 (RFC 7530) and NFSv4.1 (RFC 8881) that this client speaks.
namespace harbrix::nfs {

enum class Op : std::uint32_t {
    Access = 3,
    Close = 4,
    Commit = 5,
    Create = 6,
    DelegReturn = 8,
    GetAttr = 9,
    GetFh = 10,
    Link = 11,
    Lock = 12,
    LockT = 13,
    LockU = 14,
    Lookup = 15,
    LookupParent = 16,
    Open = 18,
    OpenConfirm = 20,
    PutFh = 22,
    PutRootFh = 24,
    Read = 25,
    ReadDir = 26,
    ReadLink = 27,
    Remove = 28,
    Rename = 29,
    RestoreFh = 31,
    SaveFh = 32,
    SetAttr = 34,
    SetClientId = 35,
    SetClientIdConfirm = 36,
    Write = 38,
    BindConnToSession = 41,
    ExchangeId = 42,
    CreateSession = 43,
    DestroySession = 44,
    FreeStateid = 45,
    Sequence = 53,
    DestroyClientId = 57,
    ReclaimComplete = 58,
};

enum class Status : std::uint32_t {
    Ok = 0,
    Perm = 1,
    NoEnt = 2,
    Io = 5,
    NxIo = 6,
    Access = 13,
    Exist = 17,
    XDev = 18,
    NotDir = 20,
    IsDir = 21,
    Inval = 22,
    FBig = 27,
    NoSpc = 28,
    RoFs = 30,
    MLink = 31,
    NameTooLong = 63,
    NotEmpty = 66,
    DQuot = 69,
    Stale = 70,
    BadHandle = 10001,
    BadCookie = 10003,
    NotSupp = 10004,
    TooSmall = 10005,
    ServerFault = 10006,
    BadType = 10007,
    Delay = 10008,
    Denied = 10010,
    Expired = 10011,
    Locked = 10012,
    Grace = 10013,
    FhExpired = 10014,
    ShareDenied = 10015,
    WrongSec = 10016,
    ClidInUse = 10017,
    Resource = 10018,
    Moved = 10019,
    NoFileHandle = 10020,
    MinorVersMismatch = 10021,
    StaleClientId = 10022,
    StaleStateid = 10023,
    OldStateid = 10024,
    BadStateid = 10025,
    LockRange = 10028,
    Symlink = 10029,
    AttrNotSupp = 10032,
    NoGrace = 10033,
    ReclaimBad = 10034,
    ReclaimConflict = 10035,
    BadXdr = 10036,
    LocksHeld = 10037,
    OpenMode = 10038,
    BadOwner = 10039,
    BadChar = 10040,
    BadName = 10041,
    BadRange = 10042,
    LockNotSupp = 10043,
    OpIllegal = 10044,
    Deadlock = 10045,
    FileOpen = 10046,
    AdminRevoked = 10047,
    BadSession = 10052,
    BadSlot = 10053,
    CompleteAlready = 10054,
    ConnNotBoundToSession = 10055,
    SeqMisordered = 10063,
    SequencePos = 10064,
    ReqTooBig = 10065,
    RepTooBig = 10066,
    RepTooBigToCache = 10067,
    RetryUncachedRep = 10068,
    TooManyOps = 10070,
    OpNotInSession = 10071,
    SeqFalseRetry = 10076,
    BadHighSlot = 10077,
    DeadSession = 10078,
    WrongType = 10083,
    DelegRevoked = 10087,

    // Not from the server: what this side found.
    LocalTimedOut = 0x40000001,  ///< No answer within the call's limit.
    LocalMalformed = 0x40000002, ///< An answer that does not decode.
    LocalRefused = 0x40000003,   ///< The RPC layer of the server refused the credentials.
    LocalGone = 0x40000004,      ///< The client is shutting down.
};

/// The errno that a program sees for a status.
[[nodiscard]] int errnoOf(Status status);
/// "NFS4ERR_ACCESS" and the like, for messages.
[[nodiscard]] std::string nameOf(Status status);

/// An NFSv4 file handle: opaque, at most 128 bytes.
class FileHandle {
public:
    static constexpr std::size_t maximum = 128;

    FileHandle() = default;
    /// Longer input is cut; decoders check the length first.
    explicit FileHandle(std::span<const std::uint8_t> bytes)
        : m_size(static_cast<std::uint8_t>(bytes.size() < maximum ? bytes.size() : maximum)) {
        if (m_size > 0)
            std::memcpy(m_bytes.data(), bytes.data(), m_size);
    }
    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return {m_bytes.data(), m_size}; }
    [[nodiscard]] bool empty() const { return m_size == 0; }
    friend bool operator==(const FileHandle& a, const FileHandle& b) {
        return a.m_size == b.m_size &&
               std::memcmp(a.m_bytes.data(), b.m_bytes.data(), a.m_size) == 0;
    }

private:
    std::array<std::uint8_t, maximum> m_bytes{};
    std::uint8_t m_size = 0;
};

struct FileHandleHash {
    std::size_t operator()(const FileHandle& handle) const {
        const auto bytes = handle.bytes();
        return std::hash<std::string_view>{}(
            {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }
};

/// Names one piece of open or lock state at the server.
struct Stateid {
    std::uint32_t sequence = 0;
    std::array<std::uint8_t, 12> other{};

    /// All zeros: I/O without state (RFC 8881, 8.2.3).
    static Stateid anonymous() { return {}; }
    /// What an earlier operation of the same compound returned; NFSv4.1 only.
    static Stateid current() { return {1, {}}; }
    /// The same state, whatever its sequence number is by now; NFSv4.1 only.
    [[nodiscard]] Stateid latest() const { return {0, other}; }
};

using Verifier = std::array<std::uint8_t, 8>;
using SessionId = std::array<std::uint8_t, 16>;

constexpr std::uint32_t shareAccessRead = 1;
constexpr std::uint32_t shareAccessWrite = 2;
constexpr std::uint32_t shareAccessWantNoDelegation = 0x0400;
constexpr std::uint32_t openResultConfirm = 2;

constexpr std::uint32_t accessRead = 0x01;
constexpr std::uint32_t accessLookup = 0x02;
constexpr std::uint32_t accessModify = 0x04;
constexpr std::uint32_t accessExtend = 0x08;
constexpr std::uint32_t accessDelete = 0x10;
constexpr std::uint32_t accessExecute = 0x20;

enum class Stability : std::uint32_t { Unstable = 0, DataSync = 1, FileSync = 2 };
enum class LockType : std::uint32_t { Read = 1, Write = 2 };
enum class FileType : std::uint32_t {
    None = 0,
    Regular = 1,
    Directory = 2,
    Block = 3,
    Character = 4,
    Link = 5,
    Socket = 6,
    Fifo = 7,
    AttributeDirectory = 8,
    NamedAttribute = 9
};

/// sr_status_flags that mean lost state (RFC 8881, 18.46.3).
constexpr std::uint32_t sequenceStateRevoked = 0x08 | 0x10 | 0x20;
constexpr std::uint32_t sequenceRestartReclaimNeeded = 0x100;

} // namespace harbrix::nfs
