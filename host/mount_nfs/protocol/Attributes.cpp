#include "mount_nfs/protocol/Attributes.h"

#include <algorithm>

namespace harbrix::nfs {

namespace {

constexpr std::size_t maximumOwner = 1024;
constexpr std::uint32_t nanosecondsPerSecond = 1'000'000'000;

Time decodeTime(XdrReader& in) {
    Time time;
    time.seconds = in.i64();
    // A fraction of a second or more would make utimensat and its kin refuse the value.
    time.nanoseconds = std::min(in.u32(), nanosecondsPerSecond - 1);
    return time;
}

void encodeTime(XdrWriter& out, const AttributeChange::TimeChange& change) {
    if (change.source == AttributeChange::TimeSource::Server) {
        out.u32(0);
        return;
    }
    out.u32(1);
    out.u64(static_cast<std::uint64_t>(change.time.seconds));
    out.u32(change.time.nanoseconds);
}

void decodeValue(XdrReader& in, Attr attribute, Attributes& into) {
    switch (attribute) {
    case Attr::Type:
        into.type = static_cast<FileType>(in.u32());
        return;
    case Attr::Change:
        into.change = in.u64();
        return;
    case Attr::Size:
        into.size = in.u64();
        return;
    case Attr::Fsid:
        into.fsidMajor = in.u64();
        into.fsidMinor = in.u64();
        return;
    case Attr::LeaseTime:
        into.leaseSeconds = in.u32();
        return;
    case Attr::ReadDirError:
        into.readDirError = static_cast<Status>(in.u32());
        return;
    case Attr::FileHandle:
        into.handle = FileHandle(in.opaque(FileHandle::maximum));
        return;
    case Attr::FileId:
        into.fileId = in.u64();
        return;
    case Attr::FilesAvail:
        into.filesAvail = in.u64();
        return;
    case Attr::FilesFree:
        into.filesFree = in.u64();
        return;
    case Attr::FilesTotal:
        into.filesTotal = in.u64();
        return;
    case Attr::MaxName:
        into.maxName = in.u32();
        return;
    case Attr::MaxRead:
        into.maxRead = in.u64();
        return;
    case Attr::MaxWrite:
        into.maxWrite = in.u64();
        return;
    case Attr::Mode:
        into.mode = in.u32() & 07777;
        return;
    case Attr::NumLinks:
        into.links = in.u32();
        return;
    case Attr::Owner:
        into.owner = in.text(maximumOwner);
        return;
    case Attr::OwnerGroup:
        into.ownerGroup = in.text(maximumOwner);
        return;
    case Attr::RawDev:
        into.deviceMajor = in.u32();
        into.deviceMinor = in.u32();
        return;
    case Attr::SpaceAvail:
        into.spaceAvail = in.u64();
        return;
    case Attr::SpaceFree:
        into.spaceFree = in.u64();
        return;
    case Attr::SpaceTotal:
        into.spaceTotal = in.u64();
        return;
    case Attr::SpaceUsed:
        into.spaceUsed = in.u64();
        return;
    case Attr::TimeAccess:
        into.accessed = decodeTime(in);
        return;
    case Attr::TimeMetadata:
        into.statusChanged = decodeTime(in);
        return;
    case Attr::TimeModify:
        into.modified = decodeTime(in);
        return;
    case Attr::MountedOnFileId:
        into.mountedOnFileId = in.u64();
        return;
    case Attr::TimeAccessSet:
    case Attr::TimeModifySet:
        break;
    }
    // A value of unknown length: nothing behind it can be found.
    in.fail();
}

} // namespace

const AttrMask statAttributes{
    Attr::Type,      Attr::Change,     Attr::Size,         Attr::Fsid,       Attr::FileId,
    Attr::Mode,      Attr::NumLinks,   Attr::Owner,        Attr::OwnerGroup, Attr::RawDev,
    Attr::SpaceUsed, Attr::TimeAccess, Attr::TimeMetadata, Attr::TimeModify, Attr::MountedOnFileId};
const AttrMask entryAttributes{
    Attr::Type,       Attr::Change,         Attr::Size,      Attr::Fsid,       Attr::ReadDirError,
    Attr::FileHandle, Attr::FileId,         Attr::Mode,      Attr::NumLinks,   Attr::Owner,
    Attr::OwnerGroup, Attr::RawDev,         Attr::SpaceUsed, Attr::TimeAccess, Attr::TimeMetadata,
    Attr::TimeModify, Attr::MountedOnFileId};
const AttrMask fileSystemAttributes{
    Attr::LeaseTime, Attr::FilesAvail, Attr::FilesFree,  Attr::FilesTotal, Attr::MaxName,
    Attr::MaxRead,   Attr::MaxWrite,   Attr::SpaceAvail, Attr::SpaceFree,  Attr::SpaceTotal};

void AttrMask::encode(XdrWriter& out) const {
    const auto low = static_cast<std::uint32_t>(m_bits);
    const auto high = static_cast<std::uint32_t>(m_bits >> 32);
    out.u32(high ? 2 : 1);
    out.u32(low);
    if (high)
        out.u32(high);
}

AttrMask AttrMask::decode(XdrReader& in) {
    AttrMask mask;
    const std::uint32_t words = in.count(4);
    for (std::uint32_t index = 0; index < words; ++index) {
        const std::uint32_t word = in.u32();
        if (index < 2)
            mask.m_bits |= static_cast<std::uint64_t>(word) << (32 * index);
        else if (word != 0)
            in.fail();
    }
    return mask;
}

Attributes decodeAttributes(XdrReader& in) {
    Attributes found;
    found.present = AttrMask::decode(in);
    XdrReader values(in.opaque(in.remaining()));
    for (std::uint32_t number = 0; number < 64 && !values.failed(); ++number)
        if (found.present.has(static_cast<Attr>(number)))
            decodeValue(values, static_cast<Attr>(number), found);
    if (values.failed())
        in.fail();
    return found;
}

void AttributeChange::encode(XdrWriter& out) const {
    AttrMask mask;
    XdrWriter values;
    // In ascending order of the attributes' numbers, as fattr4 demands.
    if (size) {
        mask.add(Attr::Size);
        values.u64(*size);
    }
    if (mode) {
        mask.add(Attr::Mode);
        values.u32(*mode);
    }
    if (owner) {
        mask.add(Attr::Owner);
        values.text(*owner);
    }
    if (ownerGroup) {
        mask.add(Attr::OwnerGroup);
        values.text(*ownerGroup);
    }
    if (accessed) {
        mask.add(Attr::TimeAccessSet);
        encodeTime(values, *accessed);
    }
    if (modified) {
        mask.add(Attr::TimeModifySet);
        encodeTime(values, *modified);
    }
    mask.encode(out);
    out.opaque(values.take().bytes);
}

} // namespace harbrix::nfs
