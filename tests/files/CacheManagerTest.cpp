#include "files/CacheManager.h"

#include "CacheFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace harbrix {
namespace {

using namespace std::chrono_literals;
using CacheManagerTest = CacheFixture;

TEST_F(CacheManagerTest, KeepsACopyInTheTreeOfTheShareAndSaysSoInTheIndex) {
    write(sharePath("docs/a.txt"), "hello");
    const auto cache = makeCache();
    EXPECT_TRUE(messages().isEmpty());
    const auto entry = cacheFile(*cache, "docs/a.txt");
    ASSERT_TRUE(entry);
    EXPECT_EQ(read(copyPath("docs/a.txt")), "hello");
    EXPECT_EQ(pathText(entry->localURL), copyPath("docs/a.txt"));
    EXPECT_EQ(decodeCacheIndex(*read(cachePath("cache-index.json"))), std::vector{*entry});
    EXPECT_EQ(cache->entries().front()->entry, *entry);
    EXPECT_EQ(cache->statistics(), (CacheStatistics{1, 5, CacheManager::defaultMaxSize, 0, 0}));
    EXPECT_FALSE(cache->isProcessing());
    EXPECT_EQ(messages(), QStringList{"Cached file: a.txt (5 bytes)"});
}

TEST_F(CacheManagerTest, OfferingAgainCountsAsAnAccessAndCopiesNothing) {
    write(sharePath("a"), "old");
    const auto cache = makeCache();
    const auto first = cacheFile(*cache, "a");
    write(sharePath("a"), "new contents");
    scheduler.advance(60s);
    const auto second = cacheFile(*cache, "a");
    ASSERT_TRUE(second);
    EXPECT_EQ(second->id, first->id);
    EXPECT_EQ(first->lastAccessedAt.secsTo(second->lastAccessedAt), 60);
    EXPECT_EQ(second->cachedAt, first->cachedAt);
    EXPECT_EQ(read(copyPath("a")), "old");
    EXPECT_EQ(decodeCacheIndex(*read(cachePath("cache-index.json"))), std::vector{*second});
}

TEST_F(CacheManagerTest, RefusesWhatIsTooLargeOrOutOfReach) {
    writeSparse(sharePath("fits"), CacheManager::maxSingleFileSize);
    writeSparse(sharePath("too large"), CacheManager::maxSingleFileSize + 1);
    ASSERT_EQ(::mkfifo(sharePath("pipe").toLocal8Bit().constData(), 0600), 0);
    const auto cache = makeCache();
    EXPECT_TRUE(cacheFile(*cache, "fits"));
    EXPECT_FALSE(cacheFile(*cache, "too large"));
    EXPECT_FALSE(cacheFile(*cache, "gone"));
    // Every listing offers it again, which is no news.
    for (int offers = 0; offers < 2; ++offers)
        EXPECT_FALSE(cacheFile(*cache, "pipe"));
    EXPECT_EQ(messages(),
              (QStringList{"Cached file: fits (52428800 bytes)",
                           "Skipping cache for large file (52428801 bytes): too large",
                           "Cannot read file attributes for caching: " + sharePath("gone"),
                           "Failed to cache file: Not a regular file"}));
}

TEST_F(CacheManagerTest, NeverWritesOutsideTheFolderOfTheConfiguration) {
    write(sharePath("evil"), "evil");
    write(root() + "/precious", "precious");
    const auto cache = makeCache();
    for (const QString& path : {QStringLiteral("../../../../precious"), QStringLiteral("a/../../b"),
                                root() + "/precious", QString(), QStringLiteral(".")})
        EXPECT_FALSE(run(cache->cacheFile(shareUrl("evil"), configID, path))) << path.toStdString();
    // A folder of the cache that has become a link leads nowhere either.
    QDir().mkpath(copyPath(""));
    ASSERT_TRUE(QFile::link(root(), copyPath("link")));
    EXPECT_FALSE(run(cache->cacheFile(shareUrl("evil"), configID, "link/precious")));
    EXPECT_EQ(read(root() + "/precious"), "precious");
    EXPECT_EQ(cache->index().size(), 0U);
}

TEST_F(CacheManagerTest, KeepsNamesThatAreNoText) {
    const QByteArray name = "caf\xe9\nmenu";
    const QUrl source = childUrl(shareUrl(""), name);
    QFile plain(sharePath("plain"));
    write(plain.fileName(), "x");
    ASSERT_EQ(::rename(plain.fileName().toLocal8Bit().constData(), nativePath(source).constData()),
              0);
    auto cache = makeCache();
    const auto entry = run(cache->cacheFile(source, configID, lastPathComponent(source)));
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->fileName, "caf%E9\nmenu");
    cache = makeCache();
    ASSERT_EQ(cache->index().size(), 1U);
    EXPECT_EQ(*cache->index().find(entry->id), *entry);
    // QTemporaryDir cannot name it.
    ::unlink(nativePath(source).constData());
}

TEST_F(CacheManagerTest, EvictsTheOldestUntilTheNewOneFits) {
    defaults.set(CacheManager::maxCacheSizeKey, qint64(30));
    const auto cache = makeCache();
    for (const QString name : {"first", "second", "third"}) {
        write(sharePath(name), QByteArray(10, 'x'));
        scheduler.advance(1s);
        ASSERT_TRUE(cacheFile(*cache, name));
    }
    // Exactly at the limit nothing goes.
    EXPECT_EQ(namesInIndex(*cache), (QStringList{"third", "second", "first"}));
    write(sharePath("fourth"), QByteArray(11, 'x'));
    scheduler.advance(1s);
    ASSERT_TRUE(cacheFile(*cache, "fourth"));
    EXPECT_EQ(namesInIndex(*cache), (QStringList{"fourth", "third"}));
    EXPECT_FALSE(QFile::exists(copyPath("first")));
    EXPECT_EQ(messages().mid(3, 4),
              (QStringList{"Evicted cache entry (LRU): first", "Evicted cache entry (LRU): second",
                           "LRU eviction: removed 2 entries", "Cached file: fourth (11 bytes)"}));
    // One that is larger than the limit empties the cache and is kept all the same.
    write(sharePath("huge"), QByteArray(31, 'x'));
    ASSERT_TRUE(cacheFile(*cache, "huge"));
    EXPECT_EQ(namesInIndex(*cache), QStringList{"huge"});
    run(cache->evictIfNeeded(0));
    EXPECT_EQ(cache->statistics().entryCount, 0);
    // The configuration's folder went with its last file.
    EXPECT_EQ(QDir(cachePath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{"cache-index.json"});
}

TEST_F(CacheManagerTest, ReadsTheLimitAnewAndTakesItAsItStands) {
    const auto cache = makeCache();
    const QList<QPair<UserDefaults::Value, qint64>> rows = {
        {qint64(-1), -1}, {qint64(0), 0}, {500.0, 500}, {QStringLiteral("7"), 524'288'000}};
    for (const auto& [stored, limit] : rows) {
        defaults.set(CacheManager::maxCacheSizeKey, stored);
        cache->updateStatistics();
        EXPECT_EQ(cache->statistics().maxSize, limit);
    }
}

TEST_F(CacheManagerTest, DropsEntriesWithoutACopyOnLoad) {
    write(sharePath("a"), "a");
    write(sharePath("b"), "b");
    auto cache = makeCache();
    cacheFile(*cache, "a");
    cacheFile(*cache, "b");
    QFile::remove(copyPath("a"));
    cache = makeCache();
    EXPECT_EQ(namesInIndex(*cache), QStringList{"b"});
    EXPECT_EQ(messages().last(), "Removed 1 stale cache entries on load");
    bool isSaved = false;
    TaskScope scope;
    scope.launch(noteEnd(cache->saveIndex(), &isSaved));
    settleUntil([&isSaved] { return isSaved; });
    EXPECT_EQ(decodeCacheIndex(*read(cachePath("cache-index.json")))->size(), 1U);
}

TEST_F(CacheManagerTest, ADamagedIndexIsAnEmptyOneAndStaysUntilTheNextSave) {
    const QByteArray halfAnIndex = "[\n    {\n        \"cachedAt\": 7946";
    write(cachePath("cache-index.json"), halfAnIndex);
    write(cachePath("cache-index.json.AbCdEf"), "left by a save that was killed");
    const auto cache = makeCache();
    EXPECT_EQ(cache->index().size(), 0U);
    EXPECT_TRUE(messages().first().startsWith("Failed to load cache index: "));
    EXPECT_EQ(read(cachePath("cache-index.json")), halfAnIndex);
    EXPECT_FALSE(QFile::exists(cachePath("cache-index.json.AbCdEf")));
    write(sharePath("a"), "a");
    ASSERT_TRUE(cacheFile(*cache, "a"));
    EXPECT_EQ(decodeCacheIndex(*read(cachePath("cache-index.json")))->size(), 1U);
}

TEST_F(CacheManagerTest, RemovesNothingThatAnIndexOnlyClaims) {
    write(sharePath("precious"), "precious");
    write(root() + "/home/precious", "precious");
    CacheEntry claim{QUuid::createUuid(),
                     configID,
                     "precious",
                     shareUrl("precious"),
                     8,
                     false,
                     "precious",
                     scheduler.wallClock(),
                     scheduler.wallClock(),
                     std::nullopt};
    CacheEntry other = claim;
    other.id = QUuid::createUuid();
    other.localURL = QUrl::fromLocalFile(root() + "/home/precious");
    write(cachePath("cache-index.json"),
          "[" + encodeCacheEntry(claim) + "," + encodeCacheEntry(other) + "]");
    const auto cache = makeCache();
    EXPECT_EQ(cache->index().size(), 2U);
    run(cache->removeEntry(claim.id));
    defaults.set(CacheManager::maxCacheSizeKey, qint64(0));
    run(cache->evictIfNeeded(0));
    EXPECT_EQ(cache->index().size(), 0U);
    EXPECT_EQ(read(sharePath("precious")), "precious");
    EXPECT_EQ(read(root() + "/home/precious"), "precious");
}

TEST_F(CacheManagerTest, ClearsItsDirectoryButNotTheUsersOwn) {
    write(sharePath("a"), "a");
    const auto cache = makeCache();
    cacheFile(*cache, "a");
    write(cachePath("ORPHAN00/x"), "x");
    run(cache->clearAllCache());
    EXPECT_EQ(QDir(cachePath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{"cache-index.json"});
    EXPECT_EQ(read(cachePath("cache-index.json")), QJsonDocument(QJsonArray()).toJson());
    EXPECT_EQ(messages().last(), "Cleared all cache");

    defaults.set(CacheManager::cacheLocationKey, root() + "/elsewhere");
    write(root() + "/elsewhere/thesis.txt", "years of work");
    write(root() + "/elsewhere/DEADBEEF/thesis.txt", "years of work");
    QDir().mkpath(root() + "/elsewhere/empty");
    cacheFile(*cache, "a");
    EXPECT_EQ(read(root() + "/elsewhere/0ABC1234/a"), "a");
    const auto left = [this] {
        return QDir(root() + "/elsewhere").entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    };
    const QStringList foreign{"cache-index.json", "DEADBEEF", "empty", "thesis.txt"};
    run(cache->clearAllCache());
    EXPECT_EQ(left(), foreign);
    cacheFile(*cache, "a");
    defaults.set(CacheManager::maxCacheSizeKey, qint64(0));
    run(cache->evictIfNeeded(0));
    EXPECT_EQ(left(), foreign);
    EXPECT_EQ(read(root() + "/elsewhere/DEADBEEF/thesis.txt"), "years of work");
}

TEST_F(CacheManagerTest, EntriesOfAFormerLocationKeepWorking) {
    write(sharePath("a"), "a");
    write(sharePath("b"), "b");
    const auto cache = makeCache();
    const auto a = cacheFile(*cache, "a");
    defaults.set(CacheManager::cacheLocationKey, root() + "/elsewhere");
    cacheFile(*cache, "b");
    EXPECT_EQ(decodeCacheIndex(*read(root() + "/elsewhere/cache-index.json"))->size(), 2U);
    EXPECT_EQ(decodeCacheIndex(*read(cachePath("cache-index.json")))->size(), 1U);
    run(cache->removeEntry(a->id));
    EXPECT_FALSE(QFile::exists(copyPath("a")));
}

TEST_F(CacheManagerTest, ALocationThatChangesDuringACopyDoesNotLoseTheCopy) {
    write(sharePath("a"), "a");
    const auto cache = makeCache();
    QObject::connect(cache.get(), &CacheManager::changed, [&] {
        if (cache->isProcessing())
            defaults.set(CacheManager::cacheLocationKey, root() + "/elsewhere");
    });
    const auto entry = cacheFile(*cache, "a");
    ASSERT_TRUE(entry);
    EXPECT_EQ(read(pathText(entry->localURL)), "a");
}

TEST_F(CacheManagerTest, AFileInPlaceOfItsDirectoryStopsNothingElse) {
    write(sharePath("a"), "a");
    write(root() + "/caches/Harbrix", "a file");
    const auto cache = makeCache();
    EXPECT_FALSE(cacheFile(*cache, "a"));
    run(cache->saveIndex());
    const QStringList lines = messages();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith("Failed to load cache index: ")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].startsWith("Failed to cache file: "));
    EXPECT_TRUE(lines[2].startsWith("Failed to save cache index: "));
    EXPECT_TRUE(cache->entries().empty());
}

TEST_F(CacheManagerTest, AFullDiskLeavesNoHalfCopy) {
    const QByteArray directory = (root() + "/small").toLocal8Bit();
    QDir().mkpath(root() + "/small");
    if (::mount("none", directory.constData(), "tmpfs", 0, "size=256k") != 0)
        GTEST_SKIP() << "may not mount a small file system";
    defaults.set(CacheManager::cacheLocationKey, QString::fromLocal8Bit(directory));
    write(sharePath("fits"), QByteArray(50'000, 'x'));
    write(sharePath("does not"), QByteArray(500'000, 'x'));
    {
        const auto cache = makeCache();
        EXPECT_TRUE(cacheFile(*cache, "fits"));
        EXPECT_FALSE(cacheFile(*cache, "does not"));
        EXPECT_EQ(messages().last(), "Failed to cache file: No space left on device");
        EXPECT_FALSE(cache->isProcessing());
        EXPECT_EQ(QDir(root() + "/small/0ABC1234").entryList(QDir::Files), QStringList{"fits"});
    }
    ASSERT_EQ(::umount2(directory.constData(), MNT_DETACH), 0);
}

TEST_F(CacheManagerTest, ServesOffersOneByOneAndTakesNoneTwice) {
    QStringList expected;
    for (int number = 0; number < 50; ++number) {
        const QString name = QString::number(number);
        write(sharePath(name), name.toLatin1());
        expected << QStringLiteral("Cached file: %1 (%2 bytes)").arg(name).arg(name.size());
    }
    const auto cache = makeCache();
    for (int round = 0; round < 2; ++round) {
        for (int number = 0; number < 50; ++number)
            cache->offer(shareUrl(QString::number(number)), configID, QString::number(number));
    }
    run(cache->evictIfNeeded(0));
    settleUntil([&] { return cache->index().size() == 50; });
    run(cache->saveIndex());
    EXPECT_EQ(messages(), expected);
    EXPECT_EQ(decodeCacheIndex(*read(cachePath("cache-index.json")))->size(), 50U);
}

TEST_F(CacheManagerTest, TwoOffersOfOnePathMakeOneEntry) {
    write(sharePath("a"), "a");
    const auto cache = makeCache();
    std::optional<std::optional<CacheEntry>> first;
    std::optional<std::optional<CacheEntry>> second;
    TaskScope scope;
    scope.launch(keepResult(cache->cacheFile(shareUrl("a"), configID, "a"), &first));
    scope.launch(keepResult(cache->cacheFile(shareUrl("a"), configID, "a"), &second));
    settleUntil([&] { return first && second; });
    EXPECT_EQ(first->value().id, second->value().id);
    EXPECT_EQ(cache->index().size(), 1U);
}

} // namespace
} // namespace harbrix
