#include "transfer/TransferTask.h"

#include <QTimeZone>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

using namespace std::chrono_literals;

const QDateTime start(QDate(2026, 3, 1), QTime(12, 0), QTimeZone::utc());

TransferTask task(TransferStatus status, qint64 done, qint64 total) {
    TransferTask made;
    made.status = status;
    made.bytesTransferred = done;
    made.totalBytes = total;
    made.startDate = start;
    return made;
}

TEST(TransferTask, TellsSpeedAndRemainingTime) {
    struct Row {
        TransferStatus status;
        qint64 done;
        qint64 total;
        double seconds;
        double speed;
        QString speedText;
        double eta;
        std::optional<QString> etaText;
    };
    const QList<Row> rows = {
        {TransferStatus::running, 2'000'000, 10'000'000, 2, 1e6, "1 MB/s", 8, "ETA: 8s"},
        {TransferStatus::running, 1'000, 3'661'000, 1, 1e3, "1 KB/s", 3660, "ETA: 1h 1m"},
        {TransferStatus::running, 1, 100, 2, 0.5, "--", 198, "ETA: 3m 18s"},
        {TransferStatus::running, 0, 100, 2, 0, "--", 0, {}},
        {TransferStatus::running, 5, 100, 0, 0, "--", 0, {}},
        {TransferStatus::running, 5, 100, -3, 0, "--", 0, {}},
        {TransferStatus::running, 5'000, 0, 1, 5e3, "5 KB/s", -1, {}},
        {TransferStatus::completed, 4'000, 4'000, 4, 1e3, "1 KB/s", 0, {}},
        {TransferStatus::paused, 4'000, 8'000, 4, 0, "--", 0, {}},
        {TransferStatus::failed, 4'000, 8'000, 4, 0, "--", 0, {}},
    };
    for (const Row& row : rows) {
        const TransferTask made = task(row.status, row.done, row.total);
        const QDateTime now = start.addMSecs(static_cast<qint64>(row.seconds * 1000));
        EXPECT_DOUBLE_EQ(made.speed(now), row.speed);
        EXPECT_EQ(made.speedText(now, QLocale::c()), row.speedText);
        EXPECT_DOUBLE_EQ(made.eta(now).count(), row.eta);
        EXPECT_EQ(etaText(made, now, QLocale(QLocale::English)), row.etaText);
    }
    TransferTask neverStarted = task(TransferStatus::running, 5, 10);
    neverStarted.startDate.reset();
    EXPECT_EQ(neverStarted.speed(start), 0.0);
}

TEST(TransferTask, ShowsItsStatus) {
    struct Row {
        TransferStatus status;
        qint64 done;
        qint64 total;
        QString text;
        bool active;
        bool finished;
        std::size_t actions;
    };
    const QList<Row> rows = {
        {TransferStatus::pending, 0, 10, "Queued", true, false, 0},
        {TransferStatus::running, 999, 1000, "99%", true, false, 2},
        {TransferStatus::running, 5, 0, "0%", true, false, 2},
        {TransferStatus::running, 20, 10, "100%", true, false, 2},
        {TransferStatus::paused, 5, 10, "Paused", false, false, 2},
        {TransferStatus::completed, 10, 10, "Done", false, true, 0},
        {TransferStatus::failed, 5, 10, "Failed", false, true, 2},
        {TransferStatus::cancelled, 5, 10, "Cancelled", false, true, 0},
    };
    for (const Row& row : rows) {
        const TransferTask made = task(row.status, row.done, row.total);
        EXPECT_EQ(statusText(made), row.text);
        EXPECT_EQ(isActive(made), row.active);
        EXPECT_EQ(isFinished(made), row.finished);
        EXPECT_EQ(availableActions(row.status).size(), row.actions);
    }
    EXPECT_EQ(sizesText(task(TransferStatus::running, 1'500'000, 3'000'000), QLocale::c()),
              "1.5 MB / 3 MB");
    EXPECT_EQ(availableActions(TransferStatus::failed).front(), TransferAction::retry);
}

} // namespace
} // namespace harbrix
