#include "files/FileSystemManager.h"

#include "CacheFixture.h"

#include <unistd.h>

namespace harbrix {
namespace {

using namespace std::chrono_literals;

class FileSystemManagerTest : public CacheFixture {
protected:
    [[nodiscard]] std::unique_ptr<FileSystemManager> makeManager() {
        return std::make_unique<FileSystemManager>(shareUrl(""), configID, *cache, scheduler);
    }
    static QStringList namesOf(const FileSystemManager& manager) {
        QStringList names;
        for (const FileItem& item : *manager.currentItems())
            names << item.name;
        return names;
    }
    void settlePrefetch(std::size_t entryCount) {
        settleUntil([&] { return cache->entries().size() == entryCount; });
    }
    void unmountShare() { ASSERT_TRUE(QDir(root()).rename("share", "gone")); }
    void remountShare() { ASSERT_TRUE(QDir(root()).rename("gone", "share")); }

    std::unique_ptr<CacheManager> cache = makeCache();
};

TEST_F(FileSystemManagerTest, ListsDirectoriesFirstAndCountsInNames) {
    for (const QString name : {"file 10", "File 9", "b", ".hidden", "A", "caf\u00e9", "cafe"})
        write(sharePath(name), "12345");
    for (const QString name : {"zoo", "Folder 2", "folder 10"})
        QDir().mkpath(sharePath(name));
    ASSERT_TRUE(QFile::link("zoo", sharePath("way to the zoo")));
    ASSERT_TRUE(QFile::link("nowhere", sharePath("way to nowhere")));
    const auto manager = makeManager();
    run(manager->refresh());
    EXPECT_EQ(namesOf(*manager),
              (QStringList{"Folder 2", "folder 10", "way to the zoo", "zoo", "A", "b", "cafe",
                           "caf\u00e9", "File 9", "file 10", "way to nowhere"}));
    const FileItem& file = (*manager->currentItems())[4];
    EXPECT_EQ(file.url, shareUrl("A"));
    EXPECT_EQ(file.size, 5);
    EXPECT_FALSE(file.isDirectory);
    EXPECT_LT(file.modificationDate.secsTo(QDateTime::currentDateTimeUtc()), 60);
    EXPECT_EQ(file.id.version(), QUuid::Random);
    const QUuid id = file.id;
    run(manager->refresh());
    EXPECT_NE((*manager->currentItems())[4].id, id);
    EXPECT_FALSE(manager->isLoading());
    EXPECT_FALSE(manager->isOfflineMode());
    EXPECT_EQ(manager->lastError(), std::nullopt);
}

TEST_F(FileSystemManagerTest, NamesThatCompareTheSameKeepTheirOrder) {
    std::vector<FileItem> items;
    for (const QString name : {"B", "a", "b", "A", "01", "1"})
        items.push_back({QUuid(), QUrl(), name, 1, QDateTime(), false, false});
    sortForListing(items, NaturalCompare(QLocale(QLocale::English)));
    QStringList names;
    for (const FileItem& item : items)
        names << item.name;
    EXPECT_EQ(names, (QStringList{"01", "1", "a", "A", "B", "b"}));
}

TEST_F(FileSystemManagerTest, GoesOfflineForGoodAndShowsWhatWasCached) {
    write(sharePath("docs/a"), "a");
    write(sharePath("docs/deeper/b"), "b");
    write(sharePath("top"), "top");
    const auto manager = makeManager();
    run(manager->refresh());
    run(manager->navigateTo(shareUrl("docs/deeper")));
    run(manager->navigateTo(shareUrl("docs")));
    settlePrefetch(3);
    unmountShare();
    run(manager->refresh());
    EXPECT_TRUE(manager->isOfflineMode());
    ASSERT_EQ(namesOf(*manager), QStringList{"a"});
    const FileItem& item = manager->currentItems()->front();
    EXPECT_EQ(pathText(item.url), copyPath("docs/a"));
    EXPECT_EQ(item.modificationDate, scheduler.wallClock());
    EXPECT_EQ(manager->lastError(), std::nullopt);
    EXPECT_EQ(messages().last(), "Loaded 1 cached entries for offline browsing");

    run(manager->navigateUp());
    EXPECT_EQ(namesOf(*manager), QStringList{"top"});
    // A path outside the share counts as its top level.
    run(manager->navigateTo(QUrl::fromLocalFile("/elsewhere")));
    EXPECT_EQ(namesOf(*manager), QStringList{"top"});
    run(manager->navigateTo(shareUrl("never seen")));
    EXPECT_EQ(namesOf(*manager), QStringList{});
    EXPECT_EQ(manager->lastError(), QStringLiteral("NAS 已断开连接。此目录没有缓存的文件。"));

    remountShare();
    write(sharePath("new"), "new");
    run(manager->navigateTo(shareUrl("")));
    EXPECT_EQ(namesOf(*manager), QStringList{"top"});
    EXPECT_EQ(manager->lastError(), std::nullopt);
    const auto fresh = makeManager();
    run(fresh->refresh());
    EXPECT_EQ(namesOf(*fresh), (QStringList{"docs", "new", "top"}));
}

TEST_F(FileSystemManagerTest, AFolderThatHasVanishedIsListedFromTheCache) {
    write(sharePath("docs/a"), "a");
    const auto manager = makeManager();
    run(manager->navigateTo(shareUrl("docs")));
    settlePrefetch(1);
    ASSERT_TRUE(QDir(sharePath("docs")).removeRecursively());
    run(manager->refresh());
    EXPECT_TRUE(manager->isOfflineMode());
    EXPECT_EQ(namesOf(*manager), QStringList{"a"});
    EXPECT_EQ(
        messages().mid(1, 1),
        QStringList{"Live directory listing failed: No such file or directory. Trying cache."});
}

TEST_F(FileSystemManagerTest, AnEmptyShareIsNoError) {
    write(sharePath(".hidden"), "x");
    const auto manager = makeManager();
    run(manager->refresh());
    EXPECT_TRUE(manager->currentItems()->empty());
    EXPECT_FALSE(manager->isOfflineMode());
    EXPECT_EQ(manager->lastError(), std::nullopt);
}

TEST_F(FileSystemManagerTest, OffersOnlyWhatTheCacheDoesNotHold) {
    write(sharePath("docs/a"), "a");
    write(sharePath("docs/caf\u00e9 \n1"), "b");
    const auto manager = makeManager();
    run(manager->navigateTo(shareUrl("docs")));
    settlePrefetch(2);
    EXPECT_EQ(read(copyPath("docs/caf\u00e9 \n1")), "b");
    scheduler.advance(60s);
    run(manager->refresh());
    run(cache->evictIfNeeded(0));
    const CacheEntry* entry = cache->index().find(configID, "docs/a");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->lastAccessedAt, entry->cachedAt);
    // One whose copy has gone is offered, which counts as an access and brings nothing back.
    QFile::remove(copyPath("docs/a"));
    run(manager->refresh());
    settleUntil([&] {
        entry = cache->index().find(configID, "docs/a");
        return entry->lastAccessedAt == scheduler.wallClock();
    });
    EXPECT_FALSE(QFile::exists(copyPath("docs/a")));
}

TEST_F(FileSystemManagerTest, WalksUpToTheMountPoint) {
    QDir().mkpath(sharePath("a/b"));
    const auto manager = makeManager();
    EXPECT_TRUE(manager->isAtRoot());
    run(manager->navigateTo(shareUrl("a/b")));
    QStringList path;
    for (int step = 0; step < 3; ++step) {
        EXPECT_EQ(manager->isAtRoot(), step == 2);
        run(manager->navigateUp());
        path << manager->relativePath(*manager->currentPath());
    }
    EXPECT_EQ(path, (QStringList{"a", "", ""}));
    EXPECT_TRUE(manager->isAtRoot());
    run(manager->navigateTo(QUrl::fromLocalFile("/")));
    run(manager->navigateUp());
    EXPECT_TRUE(manager->isAtRoot());
}

/// One is a name that is no UTF-8, the other a text that looks like how the first one is shown.
TEST_F(FileSystemManagerTest, NamesThatReadAlikeHaveCopiesOfTheirOwn) {
    write(sharePath("caf%E9"), "text");
    write(sharePath("plain"), "bytes");
    const QByteArray bytes = nativePath(childUrl(shareUrl(""), "caf\xe9"));
    ASSERT_EQ(::rename(sharePath("plain").toLocal8Bit().constData(), bytes.constData()), 0);
    const auto manager = makeManager();
    run(manager->refresh());
    settlePrefetch(2);
    QStringList contents;
    for (const auto& record : cache->entries())
        contents << QString::fromLatin1(*read(pathText(record->entry.localURL)));
    contents.sort();
    EXPECT_EQ(contents, (QStringList{"bytes", "text"}));
    ::unlink(bytes.constData()); // QTemporaryDir cannot name it
}

TEST_F(FileSystemManagerTest, TellsPathsBelowTheMountPoint) {
    const auto manager = makeManager();
    const QString share = sharePath("");
    const QList<QPair<QString, QString>> rows = {
        {share, ""},
        {share.chopped(1), ""},
        {share + "a/b", "a/b"},
        {share.chopped(1) + "2/x", "2/x"},
        {"/elsewhere", ""},
    };
    for (const auto& [path, relative] : rows)
        EXPECT_EQ(manager->relativePath(QUrl::fromLocalFile(path)), relative) << path.toStdString();
}

TEST_F(FileSystemManagerTest, RefreshesOnItsTimer) {
    const auto manager = makeManager();
    manager->startAutoRefresh(5s);
    write(sharePath("new"), "x");
    scheduler.advance(4.9s);
    EXPECT_FALSE(manager->isLoading());
    scheduler.advance(0.1s);
    EXPECT_TRUE(manager->isLoading());
    settleUntil([&] { return !manager->isLoading(); });
    EXPECT_EQ(namesOf(*manager), QStringList{"new"});
    manager->stopAutoRefresh();
    EXPECT_EQ(scheduler.untilNextAlarm(), std::nullopt);
}

TEST_F(FileSystemManagerTest, ALoadThatANavigationOvertookShowsNothing) {
    write(sharePath("a/in a"), "x");
    write(sharePath("b/in b"), "x");
    const auto manager = makeManager();
    int listings = 0;
    QObject::connect(manager.get(), &FileSystemManager::itemsChanged, [&] { ++listings; });
    manager->launch(manager->navigateTo(shareUrl("a")));
    run(manager->navigateTo(shareUrl("b")));
    settlePrefetch(1);
    EXPECT_EQ(namesOf(*manager), QStringList{"in b"});
    EXPECT_EQ(listings, 1);
    EXPECT_TRUE(cache->index().find(configID, "b/in b"));
}

TEST(FileItem, HasASymbolForItsKind) {
    const QList<std::tuple<QString, bool, QString>> rows = {
        {"a.JPG", false, "photo"},        {"a.mkv", false, "film"},
        {"a.flac", false, "music.note"},  {"a.pdf", false, "doc.text"},
        {"a.md", false, "doc.plaintext"}, {"a.tar.gz", false, "doc.zipper"},
        {"a.xyz", false, "doc"},          {"pdf", false, "doc"},
        {"a.jpg", true, "folder"},
    };
    for (const auto& [name, isDirectory, symbol] : rows) {
        FileItem item;
        item.url = QUrl::fromLocalFile("/mnt/" + name);
        item.isDirectory = isDirectory;
        EXPECT_EQ(item.iconName(), symbol) << name.toStdString();
    }
}

} // namespace
} // namespace harbrix
