#pragma once

#include "mount_nfs/protocol/Nfs4.h"
#include "mount_nfs/protocol/Xdr.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace harbrix::nfs {

/// The attributes of fattr4 by number (RFC 8881, 5.8).
enum class Attr : std::uint32_t {
    Type = 1,
    Change = 3,
    Size = 4,
    Fsid = 8,
    LeaseTime = 10,
    ReadDirError = 11,
    FileHandle = 19,
    FileId = 20,
    FilesAvail = 21,
    FilesFree = 22,
    FilesTotal = 23,
    MaxName = 29,
    MaxRead = 30,
    MaxWrite = 31,
    Mode = 33,
    NumLinks = 35,
    Owner = 36,
    OwnerGroup = 37,
    RawDev = 41,
    SpaceAvail = 42,
    SpaceFree = 43,
    SpaceTotal = 44,
    SpaceUsed = 45,
    TimeAccess = 47,
    TimeAccessSet = 48,
    TimeMetadata = 52,
    TimeModify = 53,
    TimeModifySet = 54,
    MountedOnFileId = 55,
};

/// bitmap4 as far as this client knows attributes: two words.
class AttrMask {
public:
    constexpr AttrMask() = default;
    constexpr AttrMask(std::initializer_list<Attr> attributes) {
        for (const Attr attribute : attributes)
            add(attribute);
    }
    constexpr void add(Attr attribute) { m_bits |= bit(attribute); }
    [[nodiscard]] constexpr bool has(Attr attribute) const { return m_bits & bit(attribute); }
    [[nodiscard]] constexpr std::uint64_t bits() const { return m_bits; }

    void encode(XdrWriter& out) const;
    /// Fails the reader on bits past the second word that are set: their values cannot be skipped.
    static AttrMask decode(XdrReader& in);

private:
    static constexpr std::uint64_t bit(Attr attribute) {
        return std::uint64_t{1} << static_cast<std::uint32_t>(attribute);
    }
    std::uint64_t m_bits = 0;
};

struct Time {
    std::int64_t seconds = 0;
    std::uint32_t nanoseconds = 0;
    friend bool operator==(const Time&, const Time&) = default;
};

/// What is known of one file or file system; `present` tells which members the server sent.
struct Attributes {
    AttrMask present;
    FileType type = FileType::None;
    std::uint64_t change = 0;
    std::uint64_t size = 0;
    std::uint64_t fsidMajor = 0;
    std::uint64_t fsidMinor = 0;
    std::uint32_t leaseSeconds = 0;
    Status readDirError = Status::Ok;
    FileHandle handle;
    std::uint64_t fileId = 0;
    std::uint64_t filesAvail = 0;
    std::uint64_t filesFree = 0;
    std::uint64_t filesTotal = 0;
    std::uint32_t maxName = 0;
    std::uint64_t maxRead = 0;
    std::uint64_t maxWrite = 0;
    std::uint32_t mode = 0;
    std::uint32_t links = 0;
    std::string owner;
    std::string ownerGroup;
    std::uint32_t deviceMajor = 0;
    std::uint32_t deviceMinor = 0;
    std::uint64_t spaceAvail = 0;
    std::uint64_t spaceFree = 0;
    std::uint64_t spaceTotal = 0;
    std::uint64_t spaceUsed = 0;
    Time accessed;
    Time statusChanged;
    Time modified;
    std::uint64_t mountedOnFileId = 0;
};

/// What stat(2) needs.
extern const AttrMask statAttributes;
/// The same for an entry of READDIR, with its handle and per-entry error.
extern const AttrMask entryAttributes;
/// What statfs(2) needs, and the limits of the file system.
extern const AttrMask fileSystemAttributes;

/// Decodes fattr4. The reader fails on values that are cut, too long, or unknown to this client.
[[nodiscard]] Attributes decodeAttributes(XdrReader& in);

/// A change of attributes, as SETATTR, OPEN and CREATE take it.
struct AttributeChange {
    enum class TimeSource { Server, Client };
    struct TimeChange {
        TimeSource source = TimeSource::Server;
        Time time;
    };
    std::optional<std::uint64_t> size;
    std::optional<std::uint32_t> mode;
    std::optional<std::string> owner;
    std::optional<std::string> ownerGroup;
    std::optional<TimeChange> accessed;
    std::optional<TimeChange> modified;

    void encode(XdrWriter& out) const;
};

} // namespace harbrix::nfs
