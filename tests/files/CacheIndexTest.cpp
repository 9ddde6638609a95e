#include "files/CacheIndex.h"

#include "base/Json.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

const QUuid config(QStringLiteral("{0abc1234-0000-4000-8000-000000000001}"));

CacheEntry entry(const QString& name, double accessed, qint64 size = 10) {
    const auto date = fromReferenceDate(accessed).value();
    return {QUuid::createUuid(),
            config,
            QStringLiteral("docs/") + name,
            QUrl::fromLocalFile(QStringLiteral("/cache/0ABC1234/docs/") + name),
            size,
            false,
            name,
            date,
            date,
            std::nullopt};
}

QStringList namesOf(const CacheIndex& index) {
    QStringList names;
    for (const auto& record : index.snapshot())
        names << record->entry.fileName;
    return names;
}

QStringList namesOf(const std::vector<CacheEntry>& entries) {
    QStringList names;
    for (const CacheEntry& entry : entries)
        names << entry.fileName;
    return names;
}

TEST(CacheIndex, KeepsTheMostRecentFirstAndEqualsInOrderOfArrival) {
    CacheIndex index({entry("b", 20), entry("a", 10), entry("c", 20)});
    EXPECT_EQ(namesOf(index), (QStringList{"b", "c", "a"}));
    index.insert(entry("new", 30));
    index.insert(entry("as new", 30));
    index.insert(entry("between", 15));
    EXPECT_EQ(namesOf(index), (QStringList{"new", "as new", "b", "c", "between", "a"}));
}

TEST(CacheIndex, AnAccessMovesAnEntryOnlyAtTheNextInsertion) {
    const CacheEntry old = entry("old", 10);
    CacheIndex index({entry("b", 20), old});
    const auto touched = index.touch(old.id, fromReferenceDate(50).value());
    ASSERT_TRUE(touched);
    EXPECT_EQ(touched->cachedAt, old.cachedAt);
    EXPECT_EQ(namesOf(index), (QStringList{"b", "old"}));
    EXPECT_EQ(decodeCacheIndex(encodeCacheIndex(index.snapshot()))->back(), *touched);
    index.insert(entry("c", 40));
    EXPECT_EQ(namesOf(index), (QStringList{"old", "c", "b"}));
}

TEST(CacheIndex, ChoosesTheOldestUntilEnoughIsFreed) {
    const CacheIndex index({entry("newest", 30, 5), entry("tie first", 10, 5),
                            entry("tie second", 10, 5), entry("middle", 20, 0)});
    const QList<QPair<qint64, QStringList>> rows = {
        {-1, {}},
        {0, {}},
        {1, {"tie first"}},
        {5, {"tie first"}},
        {6, {"tie first", "tie second"}},
        {11, {"tie first", "tie second", "middle", "newest"}},
        {1000, {"tie first", "tie second", "middle", "newest"}},
    };
    for (const auto& [bytes, names] : rows)
        EXPECT_EQ(namesOf(index.oldest(bytes)), names) << bytes;
}

TEST(CacheIndex, FindsTheFirstOfSeveralEntriesForOnePath) {
    const CacheEntry first = entry("x", 20);
    const CacheEntry second = entry("x", 10);
    CacheIndex index({second, first});
    EXPECT_EQ(index.find(config, "docs/x")->id, first.id);
    EXPECT_EQ(index.copiesOf(config, "docs/x").size(), 2U);
    EXPECT_EQ(index.find(config, "docs/X"), nullptr);
    EXPECT_EQ(index.find(QUuid::createUuid(), "docs/x"), nullptr);
    index.remove(first.id);
    EXPECT_EQ(index.find(config, "docs/x")->id, second.id);
    index.remove(second.id);
    EXPECT_EQ(index.find(config, "docs/x"), nullptr);
    EXPECT_FALSE(index.remove(second.id));
    EXPECT_EQ(index.totalSize(), 0);
}

TEST(CacheIndex, WritesWhatAJsonLibraryWrites) {
    for (const int count : {0, 1, 3}) {
        CacheIndex index;
        QJsonArray array;
        for (int number = count; number > 0; --number) {
            CacheEntry added =
                entry(QStringLiteral("ü \"%1\"\n").arg(number), 700'000'000.25 - number);
            if (number == 2)
                added.contentHash = QStringLiteral("f00d");
            array.prepend(QJsonDocument::fromJson(encodeCacheEntry(added)).object());
            index.insert(added);
        }
        EXPECT_EQ(encodeCacheIndex(index.snapshot()), QJsonDocument(array).toJson());
    }
    const QByteArray text = encodeCacheEntry(entry("a b.txt", 1.5, 7));
    for (const char* part :
         {"\"cachedAt\": 1.5,", "\"configID\": \"0ABC1234-0000-4000-8000-000000000001\",",
          "\"fileName\": \"a b.txt\",", "\"fileSize\": 7,", "\"isDirectory\": false,",
          "\"localURL\": \"file:///cache/0ABC1234/docs/a%20b.txt\",",
          "\"relativePath\": \"docs/a b.txt\"\n"})
        EXPECT_TRUE(text.contains(part)) << part << " in " << text.constData();
    EXPECT_FALSE(text.contains("contentHash"));
}

TEST(CacheIndex, RefusesWhatIsNoIndex) {
    const QByteArray good = "[" + encodeCacheEntry(entry("a", 10)) + "]";
    ASSERT_TRUE(decodeCacheIndex(good));
    const QList<QPair<QByteArray, QByteArray>> replacements = {
        {"]", ""},
        {"\"fileSize\": 10", "\"fileSize\": \"10\""},
        {"\"fileSize\": 10", "\"fileSize\": -10"},
        {"\"fileSize\": 10", "\"fileSize\": 9e18"},
        {"\"isDirectory\": false", "\"isDirectory\": 0"},
        {"\"fileName\": \"a\",", ""},
        {"\"cachedAt\": 10", "\"cachedAt\": \"2001-01-01\""},
        {"\"cachedAt\": 10", "\"cachedAt\": 1e300"},
        {"0ABC1234-0000", "0ABC1234_0000"},
        {"file:///cache", "http://["},
    };
    for (const auto& [from, to] : replacements) {
        QByteArray damaged = good;
        damaged.replace(from, to);
        ASSERT_NE(damaged, good);
        EXPECT_FALSE(decodeCacheIndex(damaged)) << damaged.toStdString();
    }
    for (const QByteArray text : {"", "null", "{}", "[1]", "[[]]"})
        EXPECT_FALSE(decodeCacheIndex(text)) << text.toStdString();
}

TEST(CacheEntry, OwnsOnlyACopyInItsPlace) {
    const QList<std::tuple<QString, QByteArray, bool>> rows = {
        {"docs/a", "file:///cache/0ABC1234/docs/a", true},
        {"docs/a", "file:///other/place/0ABC1234/docs/a", true},
        {"docs/a", "file:///cache/docs/a", false},
        {"docs/a", "file:///cache/x0ABC1234/docs/a", false},
        {"docs/a", "https://host/0ABC1234/docs/a", false},
        {"../a", "file:///cache/0ABC1234/../a", false},
        {"docs/../../a", "file:///cache/0ABC1234/docs/../../a", false},
        {"/a", "file:///cache/0ABC1234//a", false},
        {"", "file:///cache/0ABC1234/", false},
        {".", "file:///cache/0ABC1234/.", false},
        {"a//b", "file:///cache/0ABC1234/a//b", false},
        {"a/", "file:///cache/0ABC1234/a/", false},
        {QStringLiteral("a") + QChar(0), "file:///cache/0ABC1234/a", false},
        {"..a/b..", "file:///cache/0ABC1234/..a/b..", true},
    };
    for (const auto& [path, url, isOwn] : rows) {
        CacheEntry candidate = entry("a", 10);
        candidate.relativePath = path;
        candidate.localURL = QUrl::fromEncoded(url);
        EXPECT_EQ(ownsItsCopy(candidate), isOwn) << path.toStdString() << " " << url.toStdString();
    }
}

} // namespace
} // namespace harbrix
