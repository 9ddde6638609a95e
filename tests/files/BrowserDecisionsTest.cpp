#include "CacheFixture.h"
#include "files/BrowserContents.h"
#include "files/DownloadPlan.h"
#include "files/FileBrowserState.h"
#include "files/FileConflict.h"
#include "files/FileItem.h"
#include "files/Preview.h"

namespace harbrix {
namespace {

using FileConflictTest = CacheFixture;

TEST_F(FileConflictTest, FindsFreeNamesWithoutStackingNumbers) {
    for (const QString name : {"a.txt", "a (1).txt", "README", ".profile", "x.tar.gz"})
        write(sharePath(name), "x");
    const QList<QPair<QByteArray, QByteArray>> rows = {
        {"a.txt", "a (2).txt"}, {"a (1).txt", "a (1) (1).txt"}, {"README", "README (1)"},
        {"new.txt", "new.txt"}, {".profile", ".profile (1)"},   {"x.tar.gz", "x.tar (1).gz"},
    };
    for (const auto& [name, free] : rows)
        EXPECT_EQ(freeName(shareUrl(""), name), free);
}

TEST_F(FileConflictTest, ADropUploadsWhatIsFreeAndKeepsTheLastClash) {
    QList<QUrl> dropped;
    for (const QString name : {"first", "clash 1", "second", "clash 2"}) {
        write(root() + "/local/" + name, "new");
        dropped << QUrl::fromLocalFile(root() + "/local/" + name);
    }
    QDir().mkpath(root() + "/local/folder");
    dropped << QUrl::fromLocalFile(root() + "/local/folder")
            << QUrl(QStringLiteral("https://example.com/page"));
    write(sharePath("clash 1"), "old");
    write(sharePath("clash 2"), "old");
    const DropPlan plan = planDrop(dropped, shareUrl(""));
    EXPECT_EQ(plan.uploads, (QList<QUrl>{dropped[0], dropped[2]}));
    ASSERT_TRUE(plan.conflict);
    EXPECT_EQ(plan.conflict->source, dropped[3]);
    EXPECT_EQ(plan.conflict->destination, shareUrl("clash 2"));

    EXPECT_FALSE(plan.conflict->isFolderInTheWay);
    EXPECT_TRUE(moveAside(*plan.conflict, shareUrl("")));
    EXPECT_EQ(read(sharePath("clash 2 (1)")), "old");
    EXPECT_FALSE(QFile::exists(sharePath("clash 2")));
    EXPECT_FALSE(moveAside(*plan.conflict, shareUrl("")));
}

TEST(DownloadPlan, FilesGoRightIntoThePlaceAndDirectoriesOneLevelDeeper) {
    const auto item = [](const char* name, bool isDirectory) {
        FileItem item;
        item.id = QUuid::createUuid();
        item.url = QUrl::fromLocalFile(QStringLiteral("/mnt/Media/") + name);
        item.isDirectory = isDirectory;
        return item;
    };
    const std::vector<FileItem> items{item("Films", true), item("a.txt", false),
                                      item("b.txt", false)};
    const QUrl place = QUrl::fromLocalFile(QStringLiteral("/home/anna/Downloads"));
    EXPECT_EQ(planDownload(items, {items[1].id, items[0].id, QUuid::createUuid()}, place),
              (std::vector<Download>{
                  {items[0].url, QUrl::fromLocalFile(QStringLiteral("/home/anna/Downloads/Films"))},
                  {items[1].url, place}}));
    EXPECT_TRUE(planDownload(items, {QUuid::createUuid()}, place).empty());
}

TEST(Preview, KindsFollowTypeAndSize) {
    const struct {
        const char* type;
        qint64 size;
        PreviewKind kind;
    } rows[] = {
        {"image/png", 10, PreviewKind::Image},
        {"text/x-csrc", 10, PreviewKind::Text},
        {"application/json", 10, PreviewKind::Text},
        {"application/pdf", maxPreviewedDocument, PreviewKind::Pdf},
        {"application/pdf", maxPreviewedDocument + 1, PreviewKind::Card},
        {"application/zip", 10, PreviewKind::Card},
        {"no/such-type", 10, PreviewKind::Card},
    };
    for (const auto& [type, size, kind] : rows)
        EXPECT_EQ(previewKind(QString::fromLatin1(type), size), kind) << type;
}

using PreviewTest = CacheFixture;

TEST_F(PreviewTest, ReadsNoMoreThanItShows) {
    write(sharePath("long.txt"), QByteArray(3 * maxPreviewedText, 'x'));
    EXPECT_EQ(readForPreview(shareUrl("long.txt")).bytes.size(), maxPreviewedText);
    write(sharePath("photo.png"), QByteArray::fromHex("89504e470d0a1a0a") + "more");
    EXPECT_EQ(readForPreview(shareUrl("photo.png")).kind, PreviewKind::Image);
    EXPECT_TRUE(readForPreview(shareUrl("photo.png")).bytes.isEmpty());
    const PreviewedFile gone = readForPreview(shareUrl("gone.txt"));
    EXPECT_EQ(gone.kind, PreviewKind::Card);
    EXPECT_EQ(gone.size, -1);
    EXPECT_TRUE(readForPreview(shareUrl("")).isDirectory);
}

TEST(Preview, TextsMayBeCutOrOfAnotherEncoding) {
    EXPECT_EQ(previewText("gr\xc3\xbc\xc3\x9f"), QString::fromUtf8("grüß"));
    EXPECT_EQ(previewText("gr\xc3\xbc\xc3"), QString::fromUtf8("grü"));
    EXPECT_EQ(previewText("gr\xfc\xdf und mehr"), QString::fromUtf8("grüß und mehr"));
    EXPECT_EQ(previewText({}), QString());
}

/// To lay out a line of 256 KiB takes seconds, in which the window is frozen.
TEST(Preview, LinesThatTakeLongToLayOutAreBroken) {
    const QString emoji = QString::fromUtf8("\xf0\x9f\x98\x80");
    const QString line(longestPreviewedLine, u'x');
    const QList<QPair<QString, QString>> rows = {
        {line, line},
        {line + "\nend", line + "\nend"},
        {line + line + "end", line + "\n" + line + "\nend"},
        {line.chopped(1) + emoji + "end", line.chopped(1) + emoji + "\nend"},
    };
    for (const auto& [text, shown] : rows)
        EXPECT_EQ(previewText(text.toUtf8()), shown);
}

TEST(BrowserContents, ATableStaysWhileItIsRefreshed) {
    EXPECT_EQ(contentsToShow(true, false), BrowserContents::Progress);
    EXPECT_EQ(contentsToShow(false, false), BrowserContents::EmptyFolder);
    EXPECT_EQ(contentsToShow(true, true), BrowserContents::Table);
    EXPECT_EQ(contentsToShow(false, true), BrowserContents::Table);
}

TEST(BrowserContents, CrumbsLeadFromTheShareToTheDirectory) {
    const QList<std::tuple<QString, QString, QStringList>> rows = {
        {"/mnt/nas/", "/mnt/nas", {"Home"}},    {"/mnt/nas/a/b", "/mnt/nas/", {"Home", "a", "b"}},
        {"/elsewhere/x", "/mnt/nas", {"Home"}}, {"/mnt/nas2/x", "/mnt/nas", {"Home", "nas2", "x"}},
        {"/a/b", "/", {"Home", "a", "b"}},
    };
    for (const auto& [path, mountPoint, titles] : rows) {
        const QUrl root = QUrl::fromLocalFile(mountPoint);
        QStringList shown;
        for (const Crumb& crumb : breadcrumbs(QUrl::fromLocalFile(path), root, "Home"))
            shown << crumb.title;
        EXPECT_EQ(shown, titles) << path.toStdString();
    }
    const auto crumbs =
        breadcrumbs(QUrl::fromLocalFile("/mnt/nas/a"), QUrl::fromLocalFile("/mnt/nas"), "Home");
    EXPECT_EQ(crumbs.back(), (Crumb{"a", QUrl::fromLocalFile("/mnt/nas/a")}));
    // Without a mount point there is nothing to walk up to.
    EXPECT_EQ(breadcrumbs(QUrl::fromLocalFile("/a"), QUrl(), "Home").size(), 2U);
}

TEST(BrowserContents, SizesAreShownWhereThereAreAny) {
    FileItem item;
    EXPECT_EQ(sizeText(item), "--");
    item.size = 0;
    EXPECT_EQ(sizeText(item, QLocale::c()), "Zero KB");
    item.isDirectory = true;
    EXPECT_EQ(sizeText(item), "--");
}

TEST(FileBrowserState, TellsWhichShareIsShown) {
    FileBrowserState state;
    EXPECT_FALSE(state.config());
    int changes = 0;
    QObject::connect(&state, &FileBrowserState::changed, [&] { ++changes; });
    const NASConfig config = NASConfig::blank();
    state.show(config, QUrl::fromLocalFile("/mnt/nas/"));
    EXPECT_EQ(state.config(), config);
    EXPECT_EQ(state.mountPoint(), QUrl::fromLocalFile("/mnt/nas/"));
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace harbrix
