#include "mount_nfs/protocol/Compound.h"

#include <algorithm>

namespace harbrix::nfs {

namespace {
constexpr std::size_t maximumTag = 1024;
constexpr std::size_t maximumOpaque = 1024; // NFS4_OPAQUE_LIMIT
constexpr std::size_t maximumTarget = 65536;
constexpr std::size_t maximumName = 4096;
constexpr std::size_t maximumPrincipal = 4096;
} // namespace

CompoundReader::CompoundReader(Bytes results) : m_in(results) {
    const auto status = static_cast<Status>(m_in.u32());
    (void) m_in.opaque(maximumTag);
    m_left = m_in.count(8);
    if (!m_in.failed())
        m_status = status;
}

bool CompoundReader::next(Op op) {
    if (m_in.failed() || m_left == 0) {
        m_last = m_status == Status::Ok ? Status::LocalMalformed : m_status;
        return false;
    }
    --m_left;
    const auto found = static_cast<Op>(m_in.u32());
    m_last = static_cast<Status>(m_in.u32());
    if (found != op || m_in.failed()) {
        m_in.fail();
        m_last = Status::LocalMalformed;
    }
    return m_last == Status::Ok;
}

template <std::size_t Size>
std::array<std::uint8_t, Size> CompoundReader::array() {
    std::array<std::uint8_t, Size> value{};
    const Bytes found = m_in.fixed(Size);
    std::copy(found.begin(), found.end(), value.begin());
    return value;
}

FileHandle CompoundReader::getFh() {
    return FileHandle(m_in.opaque(FileHandle::maximum));
}

std::uint32_t CompoundReader::access() {
    (void) m_in.u32(); // which bits the server can tell
    return m_in.u32();
}

std::string_view CompoundReader::readLink() {
    return m_in.text(maximumTarget);
}

void CompoundReader::changeInfo() {
    (void) m_in.boolean();
    (void) m_in.u64();
    (void) m_in.u64();
}

void CompoundReader::create() {
    changeInfo();
    (void) AttrMask::decode(m_in);
}

Stateid CompoundReader::stateid() {
    Stateid value;
    value.sequence = m_in.u32();
    value.other = array<12>();
    return value;
}

OpenResult CompoundReader::open() {
    OpenResult result;
    result.stateid = stateid();
    changeInfo();
    result.flags = m_in.u32();
    (void) AttrMask::decode(m_in);
    const std::uint32_t delegation = m_in.u32();
    if (delegation == 1 || delegation == 2) {
        result.delegation = stateid();
        (void) m_in.boolean(); // recalled already
        if (delegation == 2)
            (void) m_in.fixed(12); // the space limit: a tag and a size, or a tag and two counts
        for (int word = 0; word < 3; ++word)
            (void) m_in.u32();
        (void) m_in.text(maximumPrincipal);
    } else if (delegation == 3) {
        const std::uint32_t why = m_in.u32();
        if (why == 1 || why == 2)
            (void) m_in.boolean();
    } else if (delegation != 0) {
        m_in.fail();
    }
    return result;
}

ReadResult CompoundReader::read() {
    ReadResult result;
    result.endOfFile = m_in.boolean();
    result.data = m_in.opaque(m_in.remaining());
    return result;
}

WriteResult CompoundReader::write() {
    WriteResult result;
    result.count = m_in.u32();
    result.committed = static_cast<Stability>(std::min(m_in.u32(), 2u));
    result.verifier = verifier();
    return result;
}

Verifier CompoundReader::verifier() {
    return array<8>();
}

ExchangeIdResult CompoundReader::exchangeId() {
    ExchangeIdResult result;
    result.clientId = m_in.u64();
    result.sequence = m_in.u32();
    result.flags = m_in.u32();
    if (m_in.u32() != 0) // any protection but SP4_NONE was not asked for
        m_in.fail();
    (void) m_in.u64(); // server owner, minor
    (void) m_in.opaque(maximumOpaque);
    (void) m_in.opaque(maximumOpaque);
    return result; // what follows, the server's own name, is of no use
}

CreateSessionResult CompoundReader::createSession() {
    CreateSessionResult result;
    result.session = array<16>();
    (void) m_in.u32(); // sequence
    (void) m_in.u32(); // flags
    (void) m_in.u32(); // header padding
    result.maximumRequest = m_in.u32();
    result.maximumResponse = m_in.u32();
    (void) m_in.u32(); // largest cached reply
    result.maximumOperations = m_in.u32();
    result.slots = m_in.u32();
    return result;
}

SequenceResult CompoundReader::sequence() {
    SequenceResult result;
    result.session = array<16>();
    result.sequence = m_in.u32();
    result.slot = m_in.u32();
    (void) m_in.u32(); // highest slot the server keeps
    result.targetHighestSlot = m_in.u32();
    result.statusFlags = m_in.u32();
    return result;
}

bool CompoundReader::nextEntry(DirectoryEntry& entry) {
    if (!m_in.boolean())
        return false;
    entry.cookie = m_in.u64();
    entry.name = m_in.text(maximumName);
    entry.attributes = decodeAttributes(m_in);
    return !m_in.failed();
}

CompoundReader::Denied CompoundReader::denied() {
    Denied result;
    result.range.offset = m_in.u64();
    result.range.length = m_in.u64();
    result.type = m_in.u32() == 1 ? LockType::Read : LockType::Write;
    (void) m_in.u64();
    (void) m_in.opaque(maximumOpaque);
    return result;
}

} // namespace harbrix::nfs
