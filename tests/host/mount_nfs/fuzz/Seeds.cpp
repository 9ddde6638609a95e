#include "Targets.h"
#include "mount_nfs/protocol/Attributes.h"
#include "mount_nfs/protocol/Nfs4.h"
#include "mount_nfs/protocol/Xdr.h"

#include <initializer_list>

namespace harbrix::nfs {

namespace {

void words(XdrWriter& out, std::initializer_list<std::uint32_t> values) {
    for (const std::uint32_t value : values)
        out.u32(value);
}

void times(XdrWriter& values) {
    for (int time = 0; time < 3; ++time) {
        values.u64(1'700'000'000);
        values.u32(5);
    }
    values.u64(3); // mounted on
}

void owners(XdrWriter& values) {
    values.text("1000");
    values.text("users@example.org");
    words(values, {8, 1}); // device
}

void fileAttributes(XdrWriter& out) {
    statAttributes.encode(out);
    XdrWriter values;
    values.u32(1);
    for (const std::uint64_t value : {7, 4096, 1, 2, 3}) // change, size, file system, file
        values.u64(value);
    words(values, {0644, 1});
    owners(values);
    values.u64(4096);
    times(values);
    out.opaque(values.take().bytes);
}

void entryAttributesOf(XdrWriter& out, std::uint32_t status) {
    entryAttributes.encode(out);
    XdrWriter values;
    values.u32(2);
    for (const std::uint64_t value : {7, 4096, 1, 2})
        values.u64(value);
    values.u32(status);
    values.opaque(FuzzInput(20, 4));
    values.u64(3);
    words(values, {0755, 2});
    owners(values);
    values.u64(4096);
    times(values);
    out.opaque(values.take().bytes);
}

void fileSystem(XdrWriter& out) {
    fileSystemAttributes.encode(out);
    XdrWriter values;
    values.u32(90);
    for (int count = 0; count < 3; ++count)
        values.u64(1'000'000);
    values.u32(255);
    for (int size = 0; size < 5; ++size)
        values.u64(1 << 20);
    out.opaque(values.take().bytes);
}

void begin(XdrWriter& out, Op op) {
    words(out, {static_cast<std::uint32_t>(op), 0});
}

void compoundOf(XdrWriter& out, std::uint32_t operations) {
    out.u32(0);
    out.text("");
    out.u32(operations);
}

void directory(XdrWriter& out) {
    begin(out, Op::ReadDir);
    out.u64(1);
    for (std::uint64_t cookie = 3; cookie < 6; ++cookie) {
        out.boolean(true);
        out.u64(cookie);
        out.text("name");
        entryAttributesOf(out, cookie == 5 ? 13 : 0);
    }
    out.boolean(false);
    out.boolean(true);
}

void sequence(XdrWriter& out) {
    begin(out, Op::Sequence);
    words(out, {1, 1, 1, 1, 1, 0, 15, 15, 0});
}

void open(XdrWriter& out, std::uint32_t delegation) {
    begin(out, Op::Open);
    words(out, {1, 2, 3, 4, 1, 0, 1, 0, 2, 4, 1, 0}); // stateid, change, flags, one word of bits
    out.u32(delegation);
    if (delegation == 1 || delegation == 2) {
        words(out, {1, 2, 3, 4, 0});
        if (delegation == 2)
            words(out, {1, 0, 4096});
        words(out, {0, 0, 3});
        out.text("EVERYONE@");
    } else if (delegation == 3) {
        words(out, {1, 1});
    }
}

FuzzInput setUp() {
    XdrWriter out;
    compoundOf(out, 3);
    begin(out, Op::ExchangeId);
    words(out, {0, 9, 1, 0x10001, 0, 0, 1});
    out.text("server");
    out.text("scope");
    out.u32(0);
    begin(out, Op::CreateSession);
    words(out, {1, 2, 3, 4, 1, 0, 0, 1 << 20, 1 << 20, 8192, 16, 16, 0});
    begin(out, Op::SetClientId);
    words(out, {0, 9, 1, 2});
    return out.take().bytes;
}

FuzzInput fileCalls() {
    XdrWriter out;
    compoundOf(out, 12);
    sequence(out);
    for (const std::uint32_t delegation : {0u, 1u, 2u, 3u})
        open(out, delegation);
    begin(out, Op::GetFh);
    out.opaque(FuzzInput(28, 9));
    begin(out, Op::GetAttr);
    fileAttributes(out);
    begin(out, Op::Read);
    out.boolean(true);
    out.opaque(FuzzInput(100, 5));
    begin(out, Op::Write);
    words(out, {100, 2, 1, 2});
    begin(out, Op::Commit);
    words(out, {1, 2});
    begin(out, Op::Close);
    words(out, {1, 2, 3, 4});
    begin(out, Op::Lock);
    words(out, {0, 0, 0, 10, 2, 0, 1});
    out.text("owner");
    return out.take().bytes;
}

FuzzInput nameCalls() {
    XdrWriter out;
    compoundOf(out, 8);
    sequence(out);
    begin(out, Op::Access);
    words(out, {63, 63});
    begin(out, Op::ReadLink);
    out.text("../target");
    begin(out, Op::Create);
    words(out, {1, 0, 1, 0, 2, 1, 0});
    begin(out, Op::Remove);
    words(out, {1, 0, 1, 0, 2});
    begin(out, Op::Rename);
    words(out, {1, 0, 1, 0, 2, 1, 0, 1, 0, 2});
    begin(out, Op::SetAttr);
    words(out, {2, 16, 2});
    directory(out);
    return out.take().bytes;
}

void record(XdrWriter& out, Bytes body, std::uint32_t mark) {
    out.u32(mark | static_cast<std::uint32_t>(body.size()));
    out.fixed(body);
}

FuzzInput reply(std::initializer_list<std::uint32_t> head) {
    XdrWriter out;
    words(out, head);
    return out.take().bytes;
}

FuzzInput preceded(std::uint8_t choice, FuzzInput data) {
    data.insert(data.begin(), choice);
    return data;
}

} // namespace

std::vector<FuzzInput> streamSeeds() {
    constexpr std::uint32_t last = 0x80000000;
    const FuzzInput whole = reply({7, 1, 0, 0, 0, 0, 1, 2, 3});
    XdrWriter sound, fragments, large;
    record(sound, whole, last);                              // accepted
    record(sound, reply({8, 1, 0, 1, 4, 9, 0, 0, 0}), last); // with a verifier
    record(sound, reply({9, 1, 1, 1, 5}), last);             // bad credentials
    record(sound, reply({10, 1, 1, 0, 2, 2}), last);         // another version
    record(fragments, Bytes(whole).first(12), 0);
    record(fragments, Bytes(whole).subspan(12), last);
    record(fragments, whole, last);
    FuzzInput bulk = whole; // large enough to be received in place
    bulk.resize(20'000);
    record(large, bulk, last);
    record(large, whole, last);
    return {preceded(5, sound.take().bytes), preceded(0, fragments.take().bytes),
            preceded(12, large.take().bytes)};
}

std::vector<FuzzInput> compoundSeeds() {
    return {setUp(), fileCalls(), nameCalls()};
}

std::vector<FuzzInput> attributeSeeds() {
    XdrWriter file, system, page;
    fileAttributes(file);
    fileSystem(system);
    compoundOf(page, 1);
    directory(page);
    return {preceded(1, file.take().bytes), preceded(1, system.take().bytes),
            preceded(0, page.take().bytes)};
}

} // namespace harbrix::nfs
