#include "mount_nfs/protocol/Compound.h"

#include <utility>

namespace harbrix::nfs {

namespace {
constexpr std::uint32_t claimNull = 0;
constexpr std::uint32_t claimPrevious = 1;
constexpr std::uint32_t claimByHandle = 4;
} // namespace

CompoundWriter::CompoundWriter(XdrWriter& out, std::uint32_t minorVersion) : m_out(out) {
    m_out.text(""); // tag
    m_out.u32(minorVersion);
    m_countAt = m_out.placeholder();
}

void CompoundWriter::begin(Op op) {
    m_out.patch(m_countAt, ++m_count);
    m_out.u32(static_cast<std::uint32_t>(op));
}

void CompoundWriter::stateid(const Stateid& stateid) {
    m_out.u32(stateid.sequence);
    m_out.fixed(stateid.other);
}

void CompoundWriter::owner(const OpenOwner& owner) {
    m_out.u64(owner.clientId);
    m_out.u32(8);
    m_out.u64(owner.owner);
}

void CompoundWriter::putFh(const FileHandle& handle) {
    begin(Op::PutFh);
    m_out.opaque(handle.bytes());
}

void CompoundWriter::lookup(std::string_view name) {
    begin(Op::Lookup);
    m_out.text(name);
}

void CompoundWriter::getAttr(const AttrMask& wanted) {
    begin(Op::GetAttr);
    wanted.encode(m_out);
}

void CompoundWriter::setAttr(const Stateid& state, const AttributeChange& change) {
    begin(Op::SetAttr);
    stateid(state);
    change.encode(m_out);
}

void CompoundWriter::access(std::uint32_t wanted) {
    begin(Op::Access);
    m_out.u32(wanted);
}

void CompoundWriter::create(FileType type, std::string_view name, const AttributeChange& attributes,
                            std::string_view linkTarget, std::uint32_t deviceMajor,
                            std::uint32_t deviceMinor) {
    begin(Op::Create);
    m_out.u32(static_cast<std::uint32_t>(type));
    if (type == FileType::Link) {
        m_out.text(linkTarget);
    } else if (type == FileType::Block || type == FileType::Character) {
        m_out.u32(deviceMajor);
        m_out.u32(deviceMinor);
    }
    m_out.text(name);
    attributes.encode(m_out);
}

void CompoundWriter::remove(std::string_view name) {
    begin(Op::Remove);
    m_out.text(name);
}

void CompoundWriter::rename(std::string_view from, std::string_view to) {
    begin(Op::Rename);
    m_out.text(from);
    m_out.text(to);
}

void CompoundWriter::link(std::string_view name) {
    begin(Op::Link);
    m_out.text(name);
}

void CompoundWriter::readDir(std::uint64_t cookie, const Verifier& verifier,
                             std::uint32_t maximumBytes, const AttrMask& wanted) {
    begin(Op::ReadDir);
    m_out.u64(cookie);
    m_out.fixed(verifier);
    m_out.u32(maximumBytes); // of names and cookies alone: a hint
    m_out.u32(maximumBytes);
    wanted.encode(m_out);
}

void CompoundWriter::openByName(const OpenOwner& openOwner, std::uint32_t sequence,
                                std::uint32_t access, std::string_view name, CreateMode mode,
                                const AttributeChange& attributes) {
    begin(Op::Open);
    m_out.u32(sequence);
    m_out.u32(access);
    m_out.u32(0); // denies nothing to others
    owner(openOwner);
    m_out.u32(mode == CreateMode::None ? 0 : 1);
    if (mode != CreateMode::None) {
        m_out.u32(mode == CreateMode::Guarded ? 1 : 0);
        attributes.encode(m_out);
    }
    m_out.u32(claimNull);
    m_out.text(name);
}

void CompoundWriter::openByHandle(const OpenOwner& openOwner, std::uint32_t access) {
    begin(Op::Open);
    m_out.u32(0);
    m_out.u32(access);
    m_out.u32(0);
    owner(openOwner);
    m_out.u32(0); // OPEN4_NOCREATE
    m_out.u32(claimByHandle);
}

void CompoundWriter::openReclaim(const OpenOwner& openOwner, std::uint32_t access) {
    begin(Op::Open);
    m_out.u32(0);
    m_out.u32(access);
    m_out.u32(0);
    owner(openOwner);
    m_out.u32(0); // OPEN4_NOCREATE
    m_out.u32(claimPrevious);
    m_out.u32(0); // no delegation was held
}

void CompoundWriter::openConfirm(const Stateid& state, std::uint32_t sequence) {
    begin(Op::OpenConfirm);
    stateid(state);
    m_out.u32(sequence);
}

void CompoundWriter::close(const Stateid& state, std::uint32_t sequence) {
    begin(Op::Close);
    m_out.u32(sequence);
    stateid(state);
}

void CompoundWriter::delegReturn(const Stateid& state) {
    begin(Op::DelegReturn);
    stateid(state);
}

void CompoundWriter::read(const Stateid& state, std::uint64_t offset, std::uint32_t count) {
    begin(Op::Read);
    stateid(state);
    m_out.u64(offset);
    m_out.u32(count);
}

void CompoundWriter::write(const Stateid& state, std::uint64_t offset, Stability stability,
                           Slice data) {
    begin(Op::Write);
    stateid(state);
    m_out.u64(offset);
    m_out.u32(static_cast<std::uint32_t>(stability));
    m_out.attach(std::move(data));
}

void CompoundWriter::commit(std::uint64_t offset, std::uint32_t count) {
    begin(Op::Commit);
    m_out.u64(offset);
    m_out.u32(count);
}

void CompoundWriter::lockFirst(LockType type, bool reclaim, const ByteRange& range,
                               const Stateid& open, const OpenOwner& lockOwner) {
    begin(Op::Lock);
    m_out.u32(static_cast<std::uint32_t>(type));
    m_out.boolean(reclaim);
    m_out.u64(range.offset);
    m_out.u64(range.length);
    m_out.boolean(true);
    m_out.u32(0);
    stateid(open);
    m_out.u32(0);
    owner(lockOwner);
}

void CompoundWriter::lockMore(LockType type, bool reclaim, const ByteRange& range,
                              const Stateid& lock) {
    begin(Op::Lock);
    m_out.u32(static_cast<std::uint32_t>(type));
    m_out.boolean(reclaim);
    m_out.u64(range.offset);
    m_out.u64(range.length);
    m_out.boolean(false);
    stateid(lock);
    m_out.u32(0);
}

void CompoundWriter::lockTest(LockType type, const ByteRange& range, const OpenOwner& lockOwner) {
    begin(Op::LockT);
    m_out.u32(static_cast<std::uint32_t>(type));
    m_out.u64(range.offset);
    m_out.u64(range.length);
    owner(lockOwner);
}

void CompoundWriter::unlock(LockType type, const ByteRange& range, const Stateid& lock) {
    begin(Op::LockU);
    m_out.u32(static_cast<std::uint32_t>(type));
    m_out.u32(0);
    stateid(lock);
    m_out.u64(range.offset);
    m_out.u64(range.length);
}

void CompoundWriter::freeStateid(const Stateid& state) {
    begin(Op::FreeStateid);
    stateid(state);
}

void CompoundWriter::exchangeId(const Verifier& boot, std::string_view clientName) {
    begin(Op::ExchangeId);
    m_out.fixed(boot);
    m_out.text(clientName);
    m_out.u32(0); // flags
    m_out.u32(0); // SP4_NONE
    m_out.u32(0); // no implementation id
}

void CompoundWriter::createSession(std::uint64_t clientId, std::uint32_t sequence,
                                   std::uint32_t maximumMessage, std::uint32_t slots) {
    constexpr std::uint32_t cachedReply = 8192;
    constexpr std::uint32_t operations = 16;
    begin(Op::CreateSession);
    m_out.u64(clientId);
    m_out.u32(sequence);
    m_out.u32(0); // neither persistent nor with a back channel
    m_out.u32(0); // header padding
    m_out.u32(maximumMessage);
    m_out.u32(maximumMessage);
    m_out.u32(cachedReply);
    m_out.u32(operations);
    m_out.u32(slots);
    m_out.u32(0); // no RDMA
    // The back channel's attributes must be sane though it is not used.
    for (const std::uint32_t value : {0u, 4096u, 4096u, 0u, 2u, 1u, 0u})
        m_out.u32(value);
    m_out.u32(0x40000000); // callback program, never called
    m_out.u32(1);
    m_out.u32(0); // AUTH_NONE
}

void CompoundWriter::sequence(const SessionId& session, std::uint32_t sequence, std::uint32_t slot,
                              std::uint32_t highestSlot, bool cacheReply) {
    begin(Op::Sequence);
    m_out.fixed(session);
    m_out.u32(sequence);
    m_out.u32(slot);
    m_out.u32(highestSlot);
    m_out.boolean(cacheReply);
}

void CompoundWriter::reclaimComplete() {
    begin(Op::ReclaimComplete);
    m_out.boolean(false); // for all file systems
}

void CompoundWriter::destroySession(const SessionId& session) {
    begin(Op::DestroySession);
    m_out.fixed(session);
}

void CompoundWriter::destroyClientId(std::uint64_t clientId) {
    begin(Op::DestroyClientId);
    m_out.u64(clientId);
}

void CompoundWriter::setClientId(const Verifier& boot, std::string_view clientName) {
    begin(Op::SetClientId);
    m_out.fixed(boot);
    m_out.text(clientName);
    m_out.u32(0x40000000); // an address nobody answers at: no callbacks, so no delegations
    m_out.text("tcp");
    m_out.text("0.0.0.0.0.0");
    m_out.u32(0);
}

void CompoundWriter::setClientIdConfirm(std::uint64_t clientId, const Verifier& confirm) {
    begin(Op::SetClientIdConfirm);
    m_out.u64(clientId);
    m_out.fixed(confirm);
}

} // namespace harbrix::nfs
