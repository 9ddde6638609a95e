#include "Targets.h"

#include "mount_nfs/protocol/Compound.h"
#include "mount_nfs/protocol/Rpc.h"
#include "mount_nfs/transport/RecordReader.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace harbrix::nfs {

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

bool isWithin(Bytes part, Bytes whole) {
    return part.empty() || (part.data() >= whole.data() &&
                            part.data() + part.size() <= whole.data() + whole.size());
}

/// The record reader and, for each record, the head of the RPC reply. The first byte says in what
/// pieces the rest arrives.
void readStream(Bytes data) {
    constexpr std::size_t longest = 64 * 1024;
    if (data.empty())
        return;
    const std::size_t step = std::size_t{1} << data[0] % 16;
    data = data.subspan(1);
    BufferPool pool(1 << 20);
    RecordReader reader(pool, longest);
    while (!data.empty()) {
        const auto space = reader.space();
        const std::size_t part = std::min({space.size(), data.size(), step});
        require(part > 0);
        std::copy_n(data.begin(), part, space.begin());
        data = data.subspan(part);
        if (!reader.filled(part, [](const Record& record) {
                require(record.bytes.size() <= longest);
                require(isWithin(parseReply(record.bytes).results, record.bytes));
            }))
            return;
    }
}

void readAttributes(const Attributes& found) {
    require(found.accessed.nanoseconds < 1'000'000'000);
    require(found.handle.bytes().size() <= FileHandle::maximum);
    require(found.mode <= 07777);
}

void readDirectory(CompoundReader& results) {
    (void) results.verifier();
    DirectoryEntry entry;
    while (results.nextEntry(entry)) {
        require(entry.name.size() <= 4096);
        readAttributes(entry.attributes);
    }
    (void) results.endOfDirectory();
}

void readOpen(CompoundReader& results) {
    const OpenResult opened = results.open();
    require(!opened.delegation || opened.stateid.other.size() == 12);
}

void readResult(CompoundReader& results, Op op, Bytes data) {
    switch (op) {
    case Op::GetFh:
        return require(results.getFh().bytes().size() <= FileHandle::maximum);
    case Op::GetAttr:
        return readAttributes(results.getAttr());
    case Op::SetAttr:
        return results.setAttr();
    case Op::Access:
        return (void) results.access();
    case Op::ReadLink:
        return require(results.readLink().size() <= 65536);
    case Op::Create:
        return results.create();
    case Op::Remove:
    case Op::Link:
        return results.changeInfo();
    case Op::Rename:
        results.changeInfo();
        return results.changeInfo();
    case Op::Open:
        return readOpen(results);
    case Op::Close:
    case Op::OpenConfirm:
    case Op::LockU:
        return (void) results.stateid();
    case Op::Read:
        return require(isWithin(results.read().data, data));
    case Op::Write:
        return (void) results.write();
    case Op::Commit:
        return (void) results.verifier();
    case Op::SetClientId:
        (void) results.clientId();
        return (void) results.verifier();
    case Op::ExchangeId:
        return (void) results.exchangeId();
    case Op::CreateSession:
        return (void) results.createSession();
    case Op::Sequence:
        return (void) results.sequence();
    case Op::Lock:
        return (void) results.denied();
    case Op::ReadDir:
        return readDirectory(results);
    default:
        return; // a status and nothing else
    }
}

/// The results of COMPOUND, each taken for what its number says.
void readCompound(Bytes data) {
    CompoundReader results(data);
    for (int step = 0; step < 64; ++step) {
        bool found = false;
        for (std::uint32_t number = 3; number < 59 && !found; ++number) {
            CompoundReader attempt = results;
            found = attempt.next(static_cast<Op>(number));
            if (!found)
                continue;
            readResult(attempt, static_cast<Op>(number), data);
            results = attempt;
        }
        if (!found || results.malformed())
            return;
    }
}

/// The attributes of one file, or a page of a directory, as the first byte says.
void readNamesAndAttributes(Bytes data) {
    if (data.empty())
        return;
    if (data[0] & 1) {
        XdrReader in(data.subspan(1));
        readAttributes(decodeAttributes(in));
        return;
    }
    CompoundReader results(data.subspan(1));
    if (results.next(Op::ReadDir))
        readDirectory(results);
}

constexpr std::array targets{
    FuzzTarget{"stream", readStream, streamSeeds},
    FuzzTarget{"compound", readCompound, compoundSeeds},
    FuzzTarget{"attributes", readNamesAndAttributes, attributeSeeds},
};

} // namespace

std::span<const FuzzTarget> fuzzTargets() {
    return targets;
}

} // namespace harbrix::nfs
