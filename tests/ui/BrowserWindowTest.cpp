#include "BrowserFixture.h"

#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPdfWriter>
#include <QScrollBar>

namespace harbrix {
namespace {

using BrowserWindowTest = BrowserFixture;

TEST_F(BrowserWindowTest, WithoutAShareAHintStandsThere) {
    scenes.open("file-browser");
    EXPECT_EQ(window().size(), QSize(900, 600));
    EXPECT_EQ(window().minimumSize(), QSize(500, 300));
    EXPECT_TRUE(find("nothingMounted").isVisible());
    open();
    EXPECT_EQ(window().minimumSize(), QSize(700, 500));
    EXPECT_FALSE(find("nothingMounted").isVisible());
}

TEST_F(BrowserWindowTest, WalksThroughTheShare) {
    write(share("Films/2024/clip.mp4"), "x");
    write(share("notes 10.txt"), "x");
    write(share("notes 9.txt"), "x");
    open();
    EXPECT_EQ(names(), QStringList({"Films", "notes 9.txt", "notes 10.txt"}));
    EXPECT_FALSE(find("back").isEnabled());
    EXPECT_EQ(table().model()->index(0, 1).data().toString(), "--");

    doubleClick(0);
    ASSERT_TRUE(settleUntil([this] { return names() == QStringList("2024"); }));
    doubleClick(0);
    ASSERT_TRUE(settleUntil([this] { return names() == QStringList("clip.mp4"); }));
    QStringList crumbs;
    const auto buttons = find("pathBar").findChildren<QAbstractButton*>("crumb");
    for (const QAbstractButton* crumb : buttons)
        crumbs << crumb->text();
    EXPECT_EQ(crumbs, QStringList({"Media", "Films", "2024"}));
    EXPECT_TRUE(find("back").isEnabled());
    click("openInFinder");
    EXPECT_EQ(world.opened, std::vector{QUrl::fromLocalFile(share("Films/2024"))});

    QTest::mouseClick(buttons[1], Qt::LeftButton);
    ASSERT_TRUE(settleUntil([this] { return names() == QStringList("2024"); }));
    click("back");
    ASSERT_TRUE(settleUntil([this] { return names().size() == 3; }));
    EXPECT_FALSE(find("back").isEnabled());
    view().fsManager().launch(
        view().fsManager().navigateTo(QUrl::fromLocalFile(share("Films/2024"))));
    ASSERT_TRUE(settleUntil([this] { return names() == QStringList("clip.mp4"); }));
    click("home");
    EXPECT_TRUE(settleUntil([this] { return names().size() == 3; }));
}

TEST_F(BrowserWindowTest, AHeaderMovesTheIndicatorAndNoRow) {
    write(share("a"), "xx");
    write(share("b"), "x");
    open();
    QHeaderView* header = table().horizontalHeader();
    EXPECT_EQ(header->sortIndicatorSection(), 0);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(1) + 20, 8));
    EXPECT_EQ(header->sortIndicatorSection(), 1);
    EXPECT_EQ(names(), QStringList({"a", "b"}));
}

TEST_F(BrowserWindowTest, ASelectionLastsUntilTheNextListing) {
    write(share("a.txt"), "x");
    write(share("b.txt"), "x");
    open();
    EXPECT_FALSE(find("download").isEnabled());
    select(0);
    select(1, Qt::ControlModifier);
    EXPECT_EQ(view().selectedItems().size(), 2);
    EXPECT_TRUE(find("download").isEnabled());

    refresh();
    EXPECT_FALSE(table().selectionModel()->hasSelection());
    EXPECT_EQ(view().selectedItems().size(), 2);
    EXPECT_TRUE(find("download").isEnabled());
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_FALSE(view().quickLook().previewURL());
    click("download");
    ASSERT_TRUE(exists("savePanel"));
    find<QDialog>("savePanel").accept();
    EXPECT_TRUE(settleUntil([this] { return !exists("savePanel"); }));
    EXPECT_TRUE(tasks().empty());
}

TEST_F(BrowserWindowTest, ARefreshKeepsTheScrollPosition) {
    for (int number = 0; number < 200; ++number)
        write(share(QString::number(number)), "x");
    open();
    int resets = 0;
    QObject::connect(table().model(), &QAbstractItemModel::modelReset, [&resets] { ++resets; });
    table().verticalScrollBar()->setValue(700);
    refresh();
    EXPECT_EQ(resets, 0);
    EXPECT_EQ(table().verticalScrollBar()->value(), 700);
    write(share("new"), "x");
    refresh();
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(table().verticalScrollBar()->value(), 700);
}

TEST_F(BrowserWindowTest, ADropUploadsAndAsksAboutTheLastClash) {
    write(share("one.txt"), "old one");
    write(share("two.txt"), "old two");
    QList<QUrl> files;
    for (const QString name : {"one.txt", "two.txt", "three.txt"}) {
        write(local(name), "new " + name.toUtf8());
        files << QUrl::fromLocalFile(local(name));
    }
    open();
    drop(files);
    ASSERT_TRUE(settleUntil([this] { return exists("conflictSheet"); }));
    EXPECT_EQ(find<QLabel>("conflictMessage").text(),
              "\"two.txt\" already exists in this location.");
    ASSERT_TRUE(waitForTransfers(1));
    EXPECT_EQ(read(share("three.txt")), "new three.txt");

    click("rename");
    ASSERT_TRUE(waitForTransfers(2));
    EXPECT_FALSE(view().pendingConflict());
    EXPECT_EQ(read(share("two.txt")), "new two.txt");
    EXPECT_EQ(read(share("two (1).txt")), "old two");
    EXPECT_EQ(read(share("one.txt")), "old one");
    EXPECT_EQ(world.finishedTransfers, QStringList({"three.txt", "two.txt"}));
}

TEST_F(BrowserWindowTest, AConflictIsSettledAsTheUserSays) {
    write(local("a.txt"), "new");
    const struct {
        const char* button;
        const char* onShare;
        std::size_t transfers;
    } rows[] = {{"skip", "old", 0}, {"overwrite", "new", 1}};
    for (const auto& [button, onShare, transfers] : rows) {
        write(share("a.txt"), "old");
        open();
        drop({QUrl::fromLocalFile(local("a.txt"))});
        ASSERT_TRUE(settleUntil([this] { return exists("conflictSheet"); }));
        click(button);
        EXPECT_TRUE(settleUntil([this] { return !exists("conflictSheet"); }));
        EXPECT_TRUE(waitForTransfers(transfers));
        EXPECT_EQ(read(share("a.txt")), onShare);
    }
}

TEST_F(BrowserWindowTest, AFolderInTheWayOffersWhatCanBeDone) {
    write(local("a.txt"), "new");
    write(share("a.txt/inside"), "old");
    open();
    drop({QUrl::fromLocalFile(local("a.txt"))});
    ASSERT_TRUE(settleUntil([this] { return exists("conflictSheet"); }));
    EXPECT_FALSE(exists("overwrite"));
    click("rename");
    ASSERT_TRUE(waitForTransfers(1));
    EXPECT_EQ(read(share("a.txt")), "new");
    EXPECT_EQ(read(share("a (1).txt/inside")), "old");
}

TEST_F(BrowserWindowTest, ClosingAsksBeforeItStopsTransfers) {
    open();
    const auto startTransfer = [this] {
        view().transferManager().enqueueDownload(QUrl::fromLocalFile("/dev/zero"),
                                                 QUrl::fromLocalFile(local()));
        if (!settleUntil([this] { return !tasks().empty() && tasks()[0].bytesTransferred > 0; }))
            return false;
        view().transferManager().pause(tasks()[0].id);
        return settleUntil([this] { return tasks()[0].status == TransferStatus::paused; });
    };
    ASSERT_TRUE(startTransfer());
    EXPECT_FALSE(window().close());
    EXPECT_EQ(find<QMessageBox>("stopTransfers").text(), "Stop transfers?");
    click("goOnWithTransfers");
    EXPECT_TRUE(settleUntil([this] { return !exists("stopTransfers"); }));
    EXPECT_EQ(tasks()[0].status, TransferStatus::paused);

    window().close();
    click("confirmStop");
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(window().view(), nullptr);

    // Nobody is there to answer when the session ends.
    open();
    ASSERT_TRUE(startTransfer());
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(exists("stopTransfers"));
}

TEST_F(BrowserWindowTest, ColumnsLeaveTheNameItsMinimum) {
    write(share("a"), "x");
    open();
    QHeaderView* header = table().horizontalHeader();
    for (const int column : {1, 2}) {
        header->resizeSection(column, 5000);
        EXPECT_EQ(header->sectionSize(0), 150);
        header->resizeSection(column, 1);
        EXPECT_EQ(header->sectionSize(column), column == 1 ? 60 : 100);
    }
}

TEST_F(BrowserWindowTest, DownloadsGoToTheChosenPlace) {
    write(share("a.txt"), "a");
    write(share("Folder/b.txt"), "b");
    open();
    table().selectAll();
    click("download");
    auto& panel = find<QFileDialog>("savePanel");
    EXPECT_EQ(QFileInfo(panel.selectedFiles().value(0)).fileName(), "Downloads");
    // The user takes the time that a listing takes.
    FileSystemManager& files = view().fsManager();
    files.launch(files.refresh());
    ASSERT_TRUE(settleUntil([&files] { return !files.isLoading(); }));
    panel.setDirectory(local());
    panel.selectFile("Downloads");
    // That it is there already makes no difference.
    QDir(local()).mkpath("Downloads");
    QTest::keyClick(panel.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
    ASSERT_TRUE(waitForTransfers(2));
    EXPECT_EQ(read(local("Downloads/a.txt")), "a");
    EXPECT_EQ(tasks()[1].status, TransferStatus::completed);
    EXPECT_EQ(tasks()[0].destinationURL, QUrl::fromLocalFile(local("Downloads/Folder/Folder")));
    EXPECT_EQ(tasks()[0].status, TransferStatus::failed);
    EXPECT_EQ(world.recentFiles.recentFiles().at(0).name, "a.txt");
}

TEST_F(BrowserWindowTest, RowsHaveAMenuAndThePlatformAnother) {
    write(share("a.txt"), "a");
    open();
    emit table().customContextMenuRequested(placeOf(0));
    auto& menu = find<QMenu>("rowMenu");
    EXPECT_EQ(menu.actions().at(0)->text(), "Open");
    EXPECT_TRUE(menu.actions().at(1)->isSeparator());
    menu.actions().at(2)->trigger();
    EXPECT_EQ(world.shownInFileViewer, std::vector{QUrl::fromLocalFile(share("a.txt"))});

    const FileItem item = view().fsManager().currentItems()->front();
    const auto handed = find<FileListView>("fileList").onContextMenu(item);
    QStringList titles;
    for (const QAction* action : handed->actions())
        titles << action->text();
    EXPECT_EQ(titles, QStringList({"Open", "", "Download...", "Show in File Manager", "Preview"}));
    EXPECT_EQ(handed->actions().back()->data().toUuid(), item.id);
    EXPECT_EQ(handed->actions().back()->shortcut(), QKeySequence(Qt::Key_Space));
}

TEST_F(BrowserWindowTest, PreviewsWhatItCanAndTellsOfTheRest) {
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(share("1.png")));
    write(share("2.txt"), "Grüße");
    {
        QPdfWriter pdf(share("3.pdf"));
        QPainter(&pdf).drawText(200, 200, "Hello");
    }
    write(share("4.pdf"), "%PDF-1.4 broken");
    write(share("5.bin"), QByteArray(2000, '\0'));
    write(share("6.png"), "no picture");
    open();
    const char* const pages[] = {"previewPicture", "previewText", "previewDocument",
                                 "previewCard",    "previewCard", "previewCard"};
    for (int row = 0; row < 6; ++row) {
        doubleClick(row);
        EXPECT_TRUE(settleUntil([&] { return find(pages[row]).isVisible(); })) << pages[row];
    }
    EXPECT_TRUE(view().quickLook().isPresenting());
    EXPECT_EQ(view().quickLook().previewURL(), QUrl::fromLocalFile(share("6.png")));
    EXPECT_EQ(find<QLabel>("previewName").text(), "6.png");
    EXPECT_THAT(find<QLabel>("previewDetails").text().toStdString(),
                testing::HasSubstr("10 bytes"));
    QTest::keyClick(&find("previewPanel"), Qt::Key_Escape);
    EXPECT_FALSE(find("previewPanel").isVisible());
}

TEST_F(BrowserWindowTest, AShareThatHasGoneIsListedFromTheCacheForGood) {
    write(share("a.txt"), "a");
    open();
    ASSERT_TRUE(settleUntil([this] { return world.cache.entries().size() == 1; }));
    ASSERT_TRUE(QDir(root()).rename("share", "elsewhere"));
    world.automation.scheduler.advance(FileBrowserView::refreshInterval);
    ASSERT_TRUE(settleUntil([this] { return view().fsManager().isOfflineMode(); }));
    ASSERT_TRUE(settleUntil([this] { return !view().fsManager().isLoading(); }));
    EXPECT_EQ(names(), QStringList("a.txt"));

    ASSERT_TRUE(QDir(root()).rename("elsewhere", "share"));
    write(share("b.txt"), "b");
    open();
    EXPECT_TRUE(view().fsManager().isOfflineMode());
    window().close();
    EXPECT_EQ(window().view(), nullptr);
    open();
    EXPECT_FALSE(view().fsManager().isOfflineMode());
    EXPECT_EQ(names(), QStringList({"a.txt", "b.txt"}));
}

TEST_F(BrowserWindowTest, AnEmptyFolderTakesDrops) {
    write(local("a.txt"), "a");
    open();
    EXPECT_TRUE(find("emptyFolder").isVisible());
    drop({QUrl::fromLocalFile(local("a.txt"))});
    ASSERT_TRUE(waitForTransfers(1));
    refresh();
    EXPECT_FALSE(find("emptyFolder").isVisible());
    EXPECT_EQ(names(), QStringList("a.txt"));
}

} // namespace
} // namespace harbrix
