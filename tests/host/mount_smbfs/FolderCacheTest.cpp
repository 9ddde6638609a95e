#include "mount_smbfs/FolderCache.h"

#include <gtest/gtest.h>

#include <functional>

namespace harbrix {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using Knowledge = FolderCache::Knowledge;

constexpr NodeTable::Number folder = 7;

// A listing that was asked for and answered so long ago.
ListingPointer listing(const std::vector<std::string>& names, steady_clock::duration age = 0s,
                       steady_clock::duration cost = 1ms) {
    const auto made = std::make_shared<FolderListing>();
    made->answeredAt = steady_clock::now() - age;
    made->askedAt = made->answeredAt - cost;
    for (const std::string& name : names) {
        made->entries.push_back({name, {}});
        made->entries.back().attributes.st_size = static_cast<off_t>(name.size());
    }
    return made;
}

class FolderCacheTest : public testing::Test {
protected:
    Knowledge find(const std::string& name) { return m_cache.find(folder, name, m_answer); }

    Watchdog m_watchdog;
    FolderCache m_cache{m_watchdog};
    Answer m_answer{};
};

TEST_F(FolderCacheTest, KnowsNothingRatherThanSomethingWrong) {
    m_cache.store(folder, listing({"Report.txt", "\xc3\x89tat", "plain"}));
    const struct {
        std::string name;
        Knowledge expected;
    } cases[] = {
        {"plain", Knowledge::present},       {"none", Knowledge::absent},
        {"report.TXT", Knowledge::unknown},  {"\xc3\xa9tat", Knowledge::unknown},
        {"\xc3\x89tat", Knowledge::present}, {"REPORT~1.TXT", Knowledge::unknown},
        {".zfs", Knowledge::unknown},        {"@GMT-2026.01.01-00.00.00", Knowledge::unknown},
    };
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(find(name), expected) << name;
    EXPECT_EQ(find("plain"), Knowledge::present);
    EXPECT_EQ(m_answer.attributes.st_size, 5);
    EXPECT_GT(m_answer.remaining().count(), 0.5);
}

TEST_F(FolderCacheTest, ALinkIsLeftToTheServer) {
    const auto made = std::make_shared<FolderListing>(*listing({"link"}));
    made->entries.front().isLink = true;
    m_cache.store(folder, made);
    EXPECT_EQ(find("link"), Knowledge::unknown);
}

TEST_F(FolderCacheTest, AnAnswerNeverOutlivesASecond) {
    m_cache.store(folder, listing({"f"}, 700ms));
    EXPECT_EQ(find("f"), Knowledge::present);
    EXPECT_LE(m_answer.remaining().count(), 0.3);
    m_cache.store(folder, listing({"f"}, 1100ms));
    EXPECT_EQ(find("f"), Knowledge::present) << "an older listing does not displace a newer one";
    m_cache.store(folder + 1, listing({"f"}, 1100ms));
    EXPECT_EQ(m_cache.find(folder + 1, "f", m_answer), Knowledge::unknown);
}

TEST_F(FolderCacheTest, ChangesFromHereAreSeenAtOnce) {
    const auto before = listing({"made", "Gone", "other"});
    m_cache.store(folder, before);
    m_cache.noteChange(folder, "made");
    m_cache.noteRemoval(folder, "gone");
    EXPECT_EQ(find("made"), Knowledge::unknown);
    EXPECT_EQ(find("Gone"), Knowledge::unknown) << "the server may have taken one for the other";
    EXPECT_EQ(find("other"), Knowledge::present);
    // A listing that was under way meanwhile may or may not hold the change.
    m_cache.store(folder, listing({"made", "other"}, 0s, 10s));
    EXPECT_EQ(find("made"), Knowledge::unknown);

    EXPECT_TRUE(m_cache.wasRemovedSince(folder, "gone", before->askedAt));
    EXPECT_FALSE(m_cache.wasRemovedSince(folder, "Gone", before->askedAt));
    EXPECT_TRUE(m_cache.wasChangedSince(folder, "Gone", before->askedAt));
    EXPECT_FALSE(m_cache.wasChangedSince(folder, "made", steady_clock::now() + 1s));
    m_cache.noteChange(folder, "gone");
    EXPECT_FALSE(m_cache.wasRemovedSince(folder, "gone", before->askedAt)) << "made again";
}

TEST_F(FolderCacheTest, AFolderIsListedOnceThatPays) {
    const auto missesUntilListing = [&](steady_clock::duration cost, int most) {
        for (int count = 1; count <= most; ++count) {
            if (m_cache.noteMiss(folder, cost))
                return count;
        }
        return 0;
    };
    EXPECT_GT(missesUntilListing(1ms, 1000), 8) << "its size is unknown";
    EXPECT_EQ(missesUntilListing(1ms, 1000), 0) << "one is under way";
    m_cache.noteNoListing(folder);
    m_cache.store(folder, listing({"f"}, 1100ms, 50ms));
    EXPECT_EQ(missesUntilListing(1ms, 1000), 50) << "as long as the listing takes";
    m_cache.store(folder, listing({"f"}, 0s, 10ms));
    for (int hits = 0; hits < 20; ++hits)
        EXPECT_EQ(find("f"), Knowledge::present);
    EXPECT_EQ(missesUntilListing(1ms, 1000), 1) << "the last one has paid";
    m_cache.store(folder, listing({"f"}, 0s, 5s));
    EXPECT_EQ(missesUntilListing(1ms, 100'000), 0) << "it would be too old when it comes";
}

} // namespace
} // namespace harbrix
