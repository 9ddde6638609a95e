#include "mount_nfs/protocol/Compound.h"
#include "mount_nfs/protocol/Rpc.h"
#include "mount_nfs/transport/RecordReader.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// Everything that reads bytes from a server. The first byte chooses the operation whose result
// follows.
using namespace harbrix::nfs;

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

void readResult(CompoundReader& results, Op op) {
    switch (op) {
    case Op::GetFh:
        require(results.getFh().bytes().size() <= FileHandle::maximum);
        break;
    case Op::GetAttr:
        require(results.getAttr().accessed.nanoseconds < 1'000'000'000);
        break;
    case Op::SetAttr:
        results.setAttr();
        break;
    case Op::Access:
        (void) results.access();
        break;
    case Op::ReadLink:
        require(results.readLink().size() <= 65536);
        break;
    case Op::Create:
        results.create();
        break;
    case Op::Remove:
        results.changeInfo();
        break;
    case Op::Open:
        (void) results.open();
        break;
    case Op::Close:
        (void) results.stateid();
        break;
    case Op::Read:
        (void) results.read();
        break;
    case Op::Write:
        (void) results.write();
        break;
    case Op::Commit:
        (void) results.verifier();
        break;
    case Op::ExchangeId:
        (void) results.exchangeId();
        break;
    case Op::CreateSession:
        (void) results.createSession();
        break;
    case Op::Sequence:
        (void) results.sequence();
        break;
    case Op::Lock:
        (void) results.denied();
        break;
    case Op::ReadDir: {
        (void) results.verifier();
        DirectoryEntry entry;
        while (results.nextEntry(entry))
            require(entry.name.size() <= 4096);
        (void) results.endOfDirectory();
        break;
    }
    default:
        break;
    }
}

void readCompound(Bytes data) {
    static constexpr Op operations[] = {
        Op::GetFh,  Op::GetAttr, Op::SetAttr,    Op::Access,        Op::ReadLink, Op::Create,
        Op::Remove, Op::Open,    Op::Close,      Op::Read,          Op::Write,    Op::Commit,
        Op::Lock,   Op::ReadDir, Op::ExchangeId, Op::CreateSession, Op::Sequence};
    // In the order of their numbers as the results ask for them, until one does not fit.
    CompoundReader results(data);
    for (int step = 0; step < 64 && !results.malformed(); ++step) {
        bool found = false;
        for (const Op op : operations) {
            CompoundReader attempt = results;
            if (!attempt.next(op))
                continue;
            readResult(attempt, op);
            results = attempt;
            found = true;
            break;
        }
        if (!found)
            return;
    }
}

void readStream(Bytes data) {
    BufferPool pool(1 << 20);
    RecordReader reader(pool, 4096);
    std::size_t step = data.empty() ? 1 : data[0] % 64 + 1;
    while (!data.empty()) {
        const auto space = reader.space();
        const std::size_t part = std::min({space.size(), data.size(), step});
        require(part > 0);
        std::copy_n(data.begin(), part, space.begin());
        data = data.subspan(part);
        if (!reader.filled(part, [](const Record& record) {
                require(record.bytes.size() <= 4096);
                const RpcReply reply = parseReply(record.bytes);
                if (reply.outcome == RpcOutcome::Success)
                    readCompound(reply.results);
            }))
            return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const Bytes rest(data + 1, size - 1);
    if (data[0] & 1)
        readStream(rest);
    else
        readCompound(rest);
    return 0;
}
