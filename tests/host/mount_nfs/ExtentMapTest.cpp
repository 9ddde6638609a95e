#include "mount_nfs/files/ExtentMap.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

using namespace harbrix::nfs;

namespace {

std::map<std::uint64_t, std::uint8_t> contentOf(const ExtentMap& extents) {
    std::map<std::uint64_t, std::uint8_t> content;
    for (const auto& [offset, extent] : extents.all())
        for (std::uint64_t at = offset; at < extent.end(); ++at)
            EXPECT_TRUE(content.emplace(at, extent.slice().bytes[at - offset]).second)
                << "overlap at " << at;
    return content;
}

TEST(ExtentMap, EqualsAMapOfBytes) {
    std::mt19937 random(3);
    BufferPool pool(1 << 20);
    for (int round = 0; round < 50; ++round) {
        ExtentMap extents;
        std::map<std::uint64_t, std::uint8_t> model;
        for (int step = 0; step < 60; ++step) {
            const std::uint64_t from = random() % 200, length = random() % 40 + 1;
            auto buffer = pool.allocate(length);
            std::fill_n(buffer->data(), length, static_cast<std::uint8_t>(random()));
            const Extent extent{from, static_cast<std::uint32_t>(length), buffer, 0, nullptr};
            const std::uint32_t action = random() % 3;
            for (std::uint64_t at = from; at < from + length; ++at) {
                if (action == 0)
                    model[at] = buffer->data()[0];
                else if (action == 1)
                    model.emplace(at, buffer->data()[0]);
                else
                    model.erase(at);
            }
            if (action == 0)
                extents.put(extent);
            else if (action == 1)
                extents.putBelow(extent);
            else
                extents.cut(from, from + length);
            ASSERT_EQ(contentOf(extents), model);
            ASSERT_EQ(extents.bytes(), model.size());
            const bool any = model.lower_bound(100) != model.lower_bound(120);
            ASSERT_EQ(extents.overlaps(100, 120), any);
        }
    }
    EXPECT_EQ(pool.used(), 0u);
}

} // namespace
