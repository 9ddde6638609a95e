#include "BrowserFixture.h"
#include "ui/transfer/TransferQueueView.h"
#include "ui/transfer/TransferRow.h"

#include <QTextDocumentFragment>

namespace harbrix {
namespace {

using TransferQueueTest = BrowserFixture;

TEST_F(TransferQueueTest, FoldsToItsHeader) {
    open();
    auto& queue = find<TransferQueueView>("transferQueue");
    EXPECT_TRUE(queue.isExpanded());
    EXPECT_GE(queue.height(), 180);
    EXPECT_LE(queue.height(), 280);
    EXPECT_TRUE(find("noTransfers").isVisible());
    EXPECT_FALSE(find("clearCompleted").isVisible());
    click("foldTransfers");
    EXPECT_TRUE(settleUntil([&queue] { return queue.height() == 36; }));
    click("foldTransfers");
    EXPECT_TRUE(settleUntil([&queue] { return queue.height() >= 180; }));
}

TEST_F(TransferQueueTest, ShowsOneRowForEachTaskAndClearsThoseThatEnded) {
    QList<QUrl> files;
    for (int number = 0; number < 3; ++number) {
        write(local(QString::number(number)), "x");
        files << QUrl::fromLocalFile(local(QString::number(number)));
    }
    open();
    drop(files);
    ASSERT_TRUE(waitForTransfers(3));
    ASSERT_TRUE(settleUntil([this] {
        return window().findChildren<TransferRow*>("transferRow").size() == 3 &&
               find("clearCompleted").isVisible();
    }));
    // What is shown of a running task follows it by a moment.
    EXPECT_TRUE(settleUntil([this] { return !find("activeTransfers").isVisible(); }));
    for (const TransferRow* row : window().findChildren<TransferRow*>("transferRow"))
        EXPECT_TRUE(settleUntil([row] { return row->status() == "Done"; }));
    click("clearCompleted");
    EXPECT_TRUE(settleUntil(
        [this] { return find("noTransfers").isVisible() && !find("clearCompleted").isVisible(); }));
}

TEST_F(TransferQueueTest, TipsShowNamesThatLookLikeMarkupAsTheyAre) {
    const QString name = "<b>a<i>b";
    write(local(name), "x");
    open();
    drop({QUrl::fromLocalFile(local(name))});
    ASSERT_TRUE(settleUntil([this] { return exists("transferRow"); }));
    EXPECT_EQ(QTextDocumentFragment::fromHtml(find("transferRow").toolTip()).toPlainText(), name);
    ASSERT_TRUE(waitForTransfers(1));
}

TEST_F(TransferQueueTest, OnlyRowsInSightExist) {
    QList<QUrl> files;
    for (int number = 0; number < 300; ++number) {
        write(local(QString::number(number)), "x");
        files << QUrl::fromLocalFile(local(QString::number(number)));
    }
    open();
    drop(files);
    ASSERT_TRUE(waitForTransfers(300));
    ASSERT_TRUE(settleUntil([this] { return find("clearCompleted").isVisible(); }));
    const auto rows = window().findChildren<TransferRow*>("transferRow").size();
    EXPECT_GT(rows, 1);
    EXPECT_LT(rows, 20);
}

TransferTask taskOf(TransferStatus status) {
    TransferTask task;
    task.id = QUuid::createUuid();
    task.sourceURL = QUrl::fromLocalFile("/mnt/Media/film.mp4");
    task.direction = TransferDirection::download;
    task.totalBytes = 4'000'000;
    task.bytesTransferred = 1'000'000;
    task.status = status;
    task.startDate = QDateTime::fromSecsSinceEpoch(1000, Qt::UTC);
    return task;
}

TEST(TransferRow, OffersWhatTheStatusAllows) {
    const struct {
        TransferStatus status;
        QString shown;
        QStringList buttons;
    } rows[] = {
        {TransferStatus::pending, "Queued", {}},
        {TransferStatus::running, "25%", {"pauseTransfer", "cancelTransfer"}},
        {TransferStatus::paused, "Paused", {"resumeTransfer", "cancelTransfer"}},
        {TransferStatus::failed, "Failed", {"retryTransfer", "cancelTransfer"}},
        {TransferStatus::completed, "Done", {}},
        {TransferStatus::cancelled, "Cancelled", {}},
    };
    UserDefaults defaults(QDir::tempPath() + "/no-such-folder/defaults.json");
    LanguageManager language(defaults);
    language.setSelectedLanguage(AppLanguage::english);
    QStringList done;
    const TransferRow::Actions actions{
        [&done] { done << "cancelTransfer"; }, [&done] { done << "pauseTransfer"; },
        [&done] { done << "resumeTransfer"; }, [&done] { done << "retryTransfer"; }};
    QWidget parent;
    TransferRow row(actions, &parent);
    parent.show();
    for (const auto& [status, shown, buttons] : rows) {
        row.setTask(taskOf(status), QDateTime::fromSecsSinceEpoch(1002, Qt::UTC),
                    language.locale());
        EXPECT_EQ(row.status(), shown);
        EXPECT_EQ(row.details(), status == TransferStatus::running
                                     ? "1 MB / 4 MB   500 KB/s   ETA: 6s"
                                     : "1 MB / 4 MB");
        done.clear();
        for (auto* button : row.findChildren<QAbstractButton*>())
            if (button->isVisible())
                button->click();
        EXPECT_EQ(done, buttons);
    }
    TransferTask failed = taskOf(TransferStatus::failed);
    failed.errorMessage = "No space left on device";
    EXPECT_GT(TransferRow::heightFor(failed),
              TransferRow::heightFor(taskOf(TransferStatus::failed)));
}

} // namespace
} // namespace harbrix
