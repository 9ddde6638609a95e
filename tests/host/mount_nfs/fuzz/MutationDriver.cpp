#include "mount_nfs/protocol/Compound.h"
#include "mount_nfs/protocol/Rpc.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

// Runs the fuzz target without libFuzzer: sound answers with a few bytes changed, for some seconds
// (HARBRIX_FUZZ_SECONDS, 5 by default) and from one seed (HARBRIX_FUZZ_SEED), so that a fault comes
// again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

using namespace harbrix::nfs;

namespace {

using Input = std::vector<std::uint8_t>;

void attributes(XdrWriter& out) {
    statAttributes.encode(out);
    XdrWriter values;
    values.u32(1);                               // type
    values.u64(7);                               // change
    values.u64(4096);                            // size
    values.u64(1), values.u64(2), values.u64(3); // fsid, file id
    values.u32(0644), values.u32(1);             // mode, links
    values.text("1000"), values.text("users@example.org");
    values.u32(0), values.u32(0), values.u64(4096);
    for (int time = 0; time < 3; ++time)
        values.u64(1'700'000'000), values.u32(5);
    values.u64(3);
    out.opaque(values.take().bytes);
}

void result(XdrWriter& out, Op op) {
    out.u32(static_cast<std::uint32_t>(op));
    out.u32(0);
}

Input compound() {
    XdrWriter out;
    out.u32(0), out.text(""), out.u32(6);
    result(out, Op::Sequence);
    for (int word = 0; word < 9; ++word)
        out.u32(1);
    result(out, Op::GetFh);
    out.opaque(Input(28, 9));
    result(out, Op::GetAttr);
    attributes(out);
    result(out, Op::ReadDir);
    out.u64(1);
    for (std::uint64_t cookie = 3; cookie < 6; ++cookie) {
        out.boolean(true), out.u64(cookie), out.text("name");
        attributes(out);
    }
    out.boolean(false), out.boolean(true);
    result(out, Op::Read);
    out.boolean(true), out.opaque(Input(100, 5));
    result(out, Op::Open);
    for (int word = 0; word < 9; ++word)
        out.u32(0);
    out.u32(1), out.u32(1), out.u32(0), out.u32(0);
    return out.take().bytes;
}

std::vector<Input> seeds() {
    const Input plain = compound();
    Input direct{0};
    direct.insert(direct.end(), plain.begin(), plain.end());
    Input stream{1};
    for (int record = 0; record < 2; ++record) {
        const std::size_t size = plain.size() + 24;
        for (const std::uint32_t word :
             {0x80000000u | static_cast<std::uint32_t>(size), 7u, 1u, 0u, 0u, 0u, 0u})
            for (int shift = 24; shift >= 0; shift -= 8)
                stream.push_back(static_cast<std::uint8_t>(word >> shift));
        stream.insert(stream.end(), plain.begin(), plain.end());
    }
    return {direct, stream};
}

void mutate(Input& input, std::mt19937& random) {
    for (std::uint32_t change = random() % 6; change > 0 && !input.empty(); --change) {
        const std::size_t at = random() % input.size();
        switch (random() % 5) {
        case 0:
            input[at] ^= static_cast<std::uint8_t>(1u << random() % 8);
            break;
        case 1:
            input[at] = static_cast<std::uint8_t>(random());
            break;
        case 2:
            input[at] = 0xff;
            break;
        case 3:
            input.resize(at);
            break;
        default:
            input.insert(input.begin() + static_cast<std::ptrdiff_t>(at), random() % 9, 0x80);
        }
    }
}

unsigned setting(const char* name, unsigned fallback) {
    const char* text = std::getenv(name);
    return text ? static_cast<unsigned>(std::stoul(text)) : fallback;
}

} // namespace

int main() {
    std::mt19937 random(setting("HARBRIX_FUZZ_SEED", 1));
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(setting("HARBRIX_FUZZ_SECONDS", 5));
    const std::vector<Input> all = seeds();
    std::size_t runs = 0;
    for (; std::chrono::steady_clock::now() < end; ++runs) {
        Input input = all[random() % all.size()];
        mutate(input, random);
        (void) LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%zu inputs\n", runs);
    return 0;
}
