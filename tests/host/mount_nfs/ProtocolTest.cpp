#include "mount_nfs/protocol/Compound.h"
#include "mount_nfs/protocol/Rpc.h"
#include "mount_nfs/transport/RecordReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace harbrix::nfs;

namespace {

using Data = std::vector<std::uint8_t>;

TEST(Xdr, LengthsAreNeverTrusted) {
    struct Case {
        const char* what;
        Data bytes;
        std::size_t maximum;
        bool fails;
    };
    const Case cases[] = {
        {"sound", {0, 0, 0, 3, 1, 2, 3, 0}, 8, false},
        {"last padding cut off", {0, 0, 0, 3, 1, 2, 3}, 8, false},
        {"longer than the data", {0, 0, 0, 4, 1, 2, 3}, 8, true},
        {"longer than allowed", {0, 0, 0, 3, 1, 2, 3, 0}, 2, true},
        {"4 GiB", {0xff, 0xff, 0xff, 0xff, 1, 2, 3, 0}, ~std::size_t{0}, true},
        {"no length", {0, 0, 0}, 8, true},
    };
    for (const Case& each : cases) {
        XdrReader in(each.bytes);
        EXPECT_EQ(in.opaque(each.maximum).size(), each.fails ? 0u : 3u) << each.what;
        EXPECT_EQ(in.failed(), each.fails) << each.what;
    }
    const Data hugeCount{0x7f, 0xff, 0xff, 0xff, 0, 0, 0, 0};
    XdrReader in(hugeCount);
    EXPECT_EQ(in.count(8), 0u);
    EXPECT_TRUE(in.failed());
}

TEST(Xdr, AttachedDataStandsWhereItWasPut) {
    BufferPool pool(1 << 20);
    auto buffer = pool.allocate(5);
    std::copy_n("hello", 5, buffer->data());
    XdrWriter out;
    out.u32(1);
    out.attach({buffer, {buffer->data(), 5}});
    out.u64(0x0102030405060708);
    const Message message = out.take();
    const Data expected{0,   0, 0, 1, 0, 0, 0, 5, 'h', 'e', 'l', 'l',
                        'o', 0, 0, 0, 1, 2, 3, 4, 5,   6,   7,   8};
    EXPECT_EQ(message.flattened(), expected);
    EXPECT_EQ(message.size(), expected.size());
}

TEST(RecordReader, PutsFragmentsTogetherHoweverTheyArrive) {
    const Data stream{0, 0, 0, 2, 'a', 'b', 0x80, 0, 0, 3, 'c', 'd', 'e', 0x80, 0, 0, 1, 'f'};
    for (std::size_t step = 1; step <= stream.size(); ++step) {
        BufferPool pool(1 << 20);
        RecordReader reader(pool, 100);
        std::vector<std::string> records;
        for (std::size_t at = 0; at < stream.size(); at += step) {
            const std::size_t part = std::min(step, stream.size() - at);
            std::copy_n(stream.begin() + static_cast<std::ptrdiff_t>(at), part,
                        reader.space().begin());
            ASSERT_TRUE(reader.filled(part, [&](const Record& record) {
                records.emplace_back(record.bytes.begin(), record.bytes.end());
            }));
        }
        EXPECT_EQ(records, (std::vector<std::string>{"abcde", "f"})) << step;
    }
}

TEST(RecordReader, RefusesWhatWouldNeverEnd) {
    for (const Data& stream : {Data{0xff, 0xff, 0xff, 0xff}, Data{0, 0, 0, 0},
                               Data{0x80, 0, 0, 101}, Data{0, 0, 0, 1, 'a', 0x80, 0, 0, 100}}) {
        BufferPool pool(1 << 20);
        RecordReader reader(pool, 100);
        std::copy(stream.begin(), stream.end(), reader.space().begin());
        EXPECT_FALSE(reader.filled(stream.size(), [](const Record&) {}));
    }
}

TEST(Attributes, UnknownOnesMakeTheAnswerMalformed) {
    struct Case {
        const char* what;
        Data bytes;
        bool fails;
    };
    const Case cases[] = {
        {"size", {0, 0, 0, 1, 0, 0, 0, 0x10, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 9}, false},
        {"value cut", {0, 0, 0, 1, 0, 0, 0, 0x10, 0, 0, 0, 4, 0, 0, 0, 9}, true},
        {"an ACL, whose length is unknown",
         {0, 0, 0, 1, 0, 0, 0x10, 0, 0, 0, 0, 4, 0, 0, 0, 0},
         true},
        {"a third word", {0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}, true},
        {"an empty third word",
         {0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         false},
    };
    for (const Case& each : cases) {
        XdrReader in(each.bytes);
        (void) decodeAttributes(in);
        EXPECT_EQ(in.failed(), each.fails) << each.what;
    }
}

TEST(Attributes, AChangeIsEncodedInTheOrderOfNumbers) {
    AttributeChange change;
    change.modified = AttributeChange::TimeChange{AttributeChange::TimeSource::Client, {-1, 5}};
    change.size = 3;
    XdrWriter out;
    change.encode(out);
    const Data expected{0,    0,    0,    2,    0,    0,    0,    0x10, 0, 0x40, 0, 0, 0, 0,
                        0,    24,   0,    0,    0,    0,    0,    0,    0, 3,    0, 0, 0, 1,
                        0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0, 0,    0, 5};
    EXPECT_EQ(out.take().bytes, expected);
}

TEST(Rpc, RepliesAreToldApart) {
    struct Case {
        const char* what;
        Data bytes;
        RpcOutcome outcome;
    };
    const Case cases[] = {
        {"success",
         {0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         RpcOutcome::Success},
        {"port refused",
         {0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 5},
         RpcOutcome::AuthError},
        {"a call", {0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 0, 2}, RpcOutcome::Malformed},
        {"another version",
         {0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2},
         RpcOutcome::Rejected},
        {"cut", {0, 0, 0, 9, 0, 0}, RpcOutcome::Malformed},
    };
    for (const Case& each : cases)
        EXPECT_EQ(parseReply(each.bytes).outcome, each.outcome) << each.what;
}

TEST(Compound, AnotherOperationThanAskedForIsMalformed) {
    const Data answer{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 10, 0, 0, 0, 0};
    CompoundReader results{answer};
    EXPECT_FALSE(results.next(Op::Read));
    EXPECT_TRUE(results.malformed());
}

} // namespace
