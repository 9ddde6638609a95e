#include "files/CacheDirectoryManager.h"

#include "CacheFixture.h"

namespace harbrix {
namespace {

using namespace std::chrono_literals;

class CacheDirectoryManagerTest : public CacheFixture {
protected:
    void fill(CacheManager& cache, const QStringList& names) {
        for (const QString& name : names) {
            write(sharePath(name), "x");
            ASSERT_TRUE(cacheFile(cache, name));
        }
    }
};

TEST_F(CacheDirectoryManagerTest, RemovesWhatIsTooOldOrGoneAndCountsEachOnce) {
    const auto cache = makeCache();
    CacheDirectoryManager upkeep(*cache, defaults, scheduler);
    fill(*cache, {"old", "old and gone"});
    scheduler.advance(1s);
    fill(*cache, {"as old as allowed", "gone", "fresh"});
    QFile::remove(copyPath("old and gone"));
    QFile::remove(copyPath("gone"));
    scheduler.advance(CacheDirectoryManager::defaultMaxEntryAge);
    EXPECT_EQ(run(upkeep.performCleanup()), 3);
    QStringList left = namesInIndex(*cache);
    left.sort();
    EXPECT_EQ(left, (QStringList{"as old as allowed", "fresh"}));
    EXPECT_FALSE(QFile::exists(copyPath("old")));
    EXPECT_EQ(upkeep.lastCleanupRemovedCount(), 3);
    EXPECT_EQ(messages().last(), "Cache cleanup completed: removed 3 entries");

    // What is evicted is not counted.
    defaults.set(CacheManager::maxCacheSizeKey, qint64(1));
    EXPECT_EQ(run(upkeep.performCleanup()), 0);
    EXPECT_EQ(cache->index().size(), 1U);
    EXPECT_EQ(decodeCacheIndex(*read(cachePath("cache-index.json")))->size(), 1U);
}

TEST_F(CacheDirectoryManagerTest, KeepsTheDateOfTheLastCleanup) {
    const auto cache = makeCache();
    {
        CacheDirectoryManager upkeep(*cache, defaults, scheduler);
        EXPECT_EQ(upkeep.lastCleanupDate(), std::nullopt);
        EXPECT_EQ(run(upkeep.performCleanup()), 0);
    }
    CacheDirectoryManager upkeep(*cache, defaults, scheduler);
    EXPECT_EQ(upkeep.lastCleanupDate(), scheduler.wallClock());
    EXPECT_EQ(upkeep.lastCleanupRemovedCount(), 0);
    defaults.set(CacheDirectoryManager::lastCleanupKey, QStringLiteral("yesterday"));
    CacheDirectoryManager mistaken(*cache, defaults, scheduler);
    EXPECT_EQ(mistaken.lastCleanupDate(), std::nullopt);
}

TEST_F(CacheDirectoryManagerTest, ReadsAgeAndIntervalAndFallsBackOnNonsense) {
    const QList<std::tuple<UserDefaults::Value, Seconds, QString>> rows = {
        {qint64(0), 6h, "6.0"},
        {-5.0, 6h, "6.0"},
        {qint64(5400), 90min, "1.5"},
        {360.0, 6min, "0.1"}};
    const auto cache = makeCache();
    for (const auto& [stored, interval, hours] : rows) {
        defaults.set(CacheDirectoryManager::cleanupIntervalKey, stored);
        defaults.set(CacheDirectoryManager::maxEntryAgeKey, stored);
        CacheDirectoryManager upkeep(*cache, defaults, scheduler);
        upkeep.startPeriodicCleanup();
        EXPECT_EQ(scheduler.untilNextAlarm(), toDuration(interval));
        EXPECT_EQ(messages().last(),
                  QStringLiteral("Periodic cache cleanup started (interval: %1h)").arg(hours));
    }
    fill(*cache, {"a"});
    CacheDirectoryManager upkeep(*cache, defaults, scheduler);
    scheduler.advance(361s);
    EXPECT_EQ(run(upkeep.performCleanup()), 1);
}

TEST_F(CacheDirectoryManagerTest, CleansOnItsTimerUntilItIsStoppedAndNeverTwiceAtOnce) {
    const auto cache = makeCache();
    CacheDirectoryManager upkeep(*cache, defaults, scheduler);
    upkeep.startPeriodicCleanup();
    scheduler.advance(CacheDirectoryManager::defaultCleanupInterval);
    EXPECT_TRUE(upkeep.isCleaningUp());
    EXPECT_EQ(run(upkeep.performCleanup()), 0);
    settleUntil([&] { return upkeep.lastCleanupDate().has_value(); });
    settleUntil([&] { return messages().last().startsWith("Cache cleanup completed"); });
    EXPECT_FALSE(upkeep.isCleaningUp());
    EXPECT_GT(upkeep.availableDiskSpace(), 0);
    upkeep.stopPeriodicCleanup();
    EXPECT_EQ(scheduler.untilNextAlarm(), std::nullopt);
    EXPECT_EQ(messages().last(), "Periodic cache cleanup stopped");
    EXPECT_EQ(messages().count("Cache cleanup completed: removed 0 entries"), 1);
}

TEST_F(CacheDirectoryManagerTest, StartsWithACleanup) {
    const auto cache = makeCache();
    CacheDirectoryManager upkeep(*cache, defaults, scheduler);
    run(upkeep.performStartupCleanup());
    EXPECT_EQ(messages(), (QStringList{"Performing startup cache cleanup...",
                                       "Cache cleanup completed: removed 0 entries"}));
}

} // namespace
} // namespace harbrix
