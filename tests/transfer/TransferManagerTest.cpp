#include "transfer/TransferManager.h"

#include "base/ManualScheduler.h"
#include "base/Worker.h"
#include "files/RecentFilesTracker.h"
#include "platform/UserDefaults.h"
#include "support/WaitUntil.h"
#include "transfer/FileCalls.h"
#include "transfer/PartFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace harbrix {
namespace {

using namespace std::chrono_literals;

constexpr qint64 chunk = TransferManager::chunkSize;
const QString endless = QStringLiteral("/dev/zero");

class TransferManagerTest : public testing::Test {
protected:
    TransferManagerTest() {
        QDir(root()).mkpath(QStringLiteral("share"));
        QDir(root()).mkpath(QStringLiteral("local"));
        QObject::connect(&manager, &TransferManager::changed, [this] { noteChanges(); });
    }

    [[nodiscard]] QString root() const { return m_folder.path(); }
    [[nodiscard]] QString share(const QString& name) const { return root() + "/share/" + name; }
    [[nodiscard]] QString local(const QString& name) const { return root() + "/local/" + name; }

    static QByteArray pattern(qint64 size) {
        QByteArray bytes(size, Qt::Uninitialized);
        for (qint64 place = 0; place < size; ++place)
            bytes[place] = static_cast<char>(place * 31 + place / chunk);
        return bytes;
    }
    static void write(const QString& path, const QByteArray& contents) {
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(contents), contents.size());
    }
    static std::optional<QByteArray> read(const QString& path) {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
    }

    static QString part(const QString& destination) {
        return QString::fromLocal8Bit(partPath(destination.toLocal8Bit()));
    }
    void download(const QString& name) {
        manager.enqueueDownload(QUrl::fromLocalFile(share(name)), QUrl::fromLocalFile(local("")));
    }
    /// Of a source that comes to no end by itself, so that what is asked of the copy is in time.
    void downloadEndless() {
        manager.enqueueDownload(QUrl::fromLocalFile(endless), QUrl::fromLocalFile(local("")));
    }
    void settleUntil(const std::function<bool()>& condition) {
        ASSERT_TRUE(waitUntil([&] {
            scheduler.advance(100ms);
            return condition();
        }));
    }
    /// Until the workers have ended, with what the main thread hands them when their result comes.
    static void endWorkers() {
        for (int turn = 0; turn < 3; ++turn) {
            ASSERT_TRUE(workerPool().waitForDone(10'000));
            QCoreApplication::processEvents();
        }
    }
    /// Until this many tasks have arrived and nothing more happens.
    void finish(std::size_t count) {
        settleUntil([&] { return manager.tasks().size() == count && !manager.isProcessing(); });
    }
    [[nodiscard]] const TransferTask& task(std::size_t place = 0) const {
        return manager.tasks().at(place);
    }
    static QString shown(TransferStatus status) { return rawValue(status); }

    ManualScheduler scheduler;

private:
    QTemporaryDir m_folder;

protected:
    UserDefaults defaults{root() + "/defaults.json"};
    RecentFilesTracker recentFiles{defaults, scheduler};
    QStringList notifications;
    TransferManager manager{recentFiles, scheduler,
                            [this](const QString& name, TransferDirection direction) {
                                notifications << rawValue(direction) + " " + name;
                            }};
    /// The statuses of the first task.
    QStringList history;
    /// What to do once the first task runs and has come this far, or further.
    std::map<qint64, std::function<void()>> fromBytes;

private:
    void noteChanges() {
        if (manager.tasks().empty())
            return;
        const TransferTask now = manager.tasks().front();
        if (now.status != m_last) {
            m_last = now.status;
            history << rawValue(now.status);
        }
        if (now.status != TransferStatus::running)
            return;
        if (!fromBytes.empty() && fromBytes.begin()->first <= now.bytesTransferred)
            fromBytes.extract(fromBytes.begin()).mapped()();
    }
    std::optional<TransferStatus> m_last;
};

TEST_F(TransferManagerTest, CopiesBothWaysByteForByte) {
    const QList<qint64> sizes = {0, 1, chunk - 1, chunk, chunk + 1, 3 * chunk + 7};
    for (const qint64 size : sizes)
        write(share(QString::number(size)), pattern(size));
    write(local("up"), "up");
    for (const qint64 size : sizes)
        download(QString::number(size));
    manager.enqueueUpload(QUrl::fromLocalFile(local("up")),
                          QUrl::fromLocalFile(share("new/folder")));
    finish(7);
    qint64 total = 2;
    for (const qint64 size : sizes) {
        EXPECT_EQ(read(local(QString::number(size))), pattern(size));
        total += size;
    }
    EXPECT_EQ(read(share("new/folder/up")), "up");
    EXPECT_EQ(manager.totalBytesTransferred(), total);
    EXPECT_EQ(recentFiles.recentFiles().size(), 6U);
    EXPECT_EQ(recentFiles.recentFiles().front().url,
              QUrl::fromLocalFile(local(QString::number(sizes.back()))));
    EXPECT_EQ(notifications.first(), "download 0");
    EXPECT_EQ(notifications.last(), "upload up");
    for (const TransferTask& done : manager.tasks()) {
        EXPECT_EQ(done.status, TransferStatus::completed);
        EXPECT_EQ(done.bytesTransferred, done.totalBytes);
        EXPECT_TRUE(done.startDate && done.endDate && !done.errorMessage);
    }
}

TEST_F(TransferManagerTest, RunsOneAtATimeInOrderOfArrival) {
    QStringList order;
    std::vector<TransferStatus> seen(3, TransferStatus::pending);
    qsizetype mostRunning = 0;
    QObject::connect(&manager, &TransferManager::changed, [&] {
        qsizetype running = 0;
        for (std::size_t place = 0; place < manager.tasks().size(); ++place) {
            const TransferTask& now = task(place);
            running += now.status == TransferStatus::running;
            if (std::exchange(seen[place], now.status) != now.status)
                order << QStringLiteral("%1 %2").arg(place).arg(rawValue(now.status));
        }
        mostRunning = std::max(mostRunning, running);
    });
    for (const QString name : {"a", "b", "c"}) {
        write(share(name), pattern(2 * chunk));
        download(name);
    }
    finish(3);
    EXPECT_EQ(order, (QStringList{"0 running", "0 completed", "1 running", "1 completed",
                                  "2 running", "2 completed"}));
    EXPECT_EQ(mostRunning, 1);
}

TEST_F(TransferManagerTest, CancelsBetweenChunksAndLeavesTheFormerFile) {
    write(local("zero"), "former");
    downloadEndless();
    for (const qint64 from : {0 * chunk, chunk, 2 * chunk}) {
        fromBytes[from] = [this] { manager.cancel(task().id); };
        if (from > 0)
            manager.retry(task().id);
        finish(1);
        EXPECT_EQ(task().status, TransferStatus::cancelled);
        EXPECT_GE(task().bytesTransferred, from);
        EXPECT_EQ(task().bytesTransferred % chunk, 0);
        EXPECT_EQ(task().errorMessage, std::nullopt);
        EXPECT_FALSE(QFile::exists(part(local("zero"))));
        EXPECT_EQ(read(local("zero")), "former");
    }
    EXPECT_TRUE(notifications.isEmpty());
}

TEST_F(TransferManagerTest, PausesBetweenChunksAndGoesOnFromThere) {
    const auto isPaused = [this] {
        return !manager.tasks().empty() && task().status == TransferStatus::paused;
    };
    downloadEndless();
    qint64 former = 0;
    for (const qint64 more : {0 * chunk, chunk, chunk}) {
        history.clear();
        fromBytes[former + more] = [this] { manager.pause(task().id); };
        if (former > 0 || more > 0)
            manager.resume(task().id);
        settleUntil(isPaused);
        scheduler.advance(10s);
        EXPECT_EQ(QFileInfo(part(local("zero"))).size(), task().bytesTransferred);
        EXPECT_EQ(task().bytesTransferred % chunk, 0);
        EXPECT_GE(task().bytesTransferred, former + more);
        EXPECT_EQ(history.mid(history.size() - 3), (QStringList{"pending", "running", "paused"}));
        former = task().bytesTransferred;
    }
    manager.cancel(task().id);
    EXPECT_EQ(task().status, TransferStatus::paused);
    finish(1);
    EXPECT_EQ(task().status, TransferStatus::cancelled);
    EXPECT_FALSE(QFile::exists(part(local("zero"))));
}

TEST_F(TransferManagerTest, WhatWaitsIsCancelledAtOnceAndCannotBePaused) {
    fromBytes[0] = [this] { manager.pause(task().id); };
    for (const QString name : {"a", "b", "c"}) {
        write(share(name), pattern(2 * chunk));
        download(name);
    }
    settleUntil(
        [this] { return manager.tasks().size() == 3 && task().status == TransferStatus::paused; });
    manager.cancel(task(1).id);
    EXPECT_EQ(task(1).status, TransferStatus::cancelled);
    manager.pause(task(2).id);
    manager.resume(task().id);
    finish(3);
    EXPECT_EQ(task(0).status, TransferStatus::completed);
    EXPECT_EQ(task(1).startDate, std::nullopt);
    EXPECT_EQ(task(2).status, TransferStatus::completed);
    EXPECT_FALSE(QFile::exists(local("b")));
}

TEST_F(TransferManagerTest, AFailureKeepsWhatWasWrittenAndCanBeRetried) {
    write(share("a"), pattern(2 * chunk));
    write(root() + "/in the way", "a file");
    manager.enqueueDownload(QUrl::fromLocalFile(share("a")),
                            QUrl::fromLocalFile(root() + "/in the way"));
    QDir().mkpath(share("folder"));
    QDir().mkpath(local("taken/keep"));
    write(share("taken"), "x");
    write(local("folder"), "stays");
    for (const QString name : {"gone", "folder", "taken"})
        download(name);
    manager.enqueueUpload(QUrl::fromLocalFile(share("a")), QUrl::fromLocalFile(share("")));
    finish(5);
    QStringList errors;
    for (const TransferTask& failed : manager.tasks()) {
        EXPECT_EQ(failed.status, TransferStatus::failed);
        EXPECT_TRUE(failed.endDate);
        errors << failed.errorMessage.value_or("");
    }
    EXPECT_EQ(errors, (QStringList{"Not a directory", "No such file or directory", "Is a directory",
                                   "Is a directory", "Source and destination are the same file"}));
    EXPECT_EQ(task(1).totalBytes, 0);
    EXPECT_EQ(read(share("a")), pattern(2 * chunk));
    EXPECT_EQ(read(local("folder")), "stays");
    EXPECT_TRUE(QFile::exists(local("taken/keep")));

    write(share("gone"), "is back");
    manager.retry(task(1).id);
    finish(5);
    EXPECT_EQ(task(1).status, TransferStatus::completed);
    EXPECT_EQ(read(local("gone")), "is back");
    // The size was unknown at the start, and the count ends where it ends.
    EXPECT_EQ(task(1).bytesTransferred, 0);
    manager.clearCompleted();
    EXPECT_TRUE(manager.tasks().empty());
}

TEST_F(TransferManagerTest, AFullDiskFailsAndKeepsThePartUntilTheNextCopyThere) {
    const QByteArray directory = local("small").toLocal8Bit();
    QDir().mkpath(local("small"));
    if (::mount("none", directory.constData(), "tmpfs", 0, "size=2m") != 0)
        GTEST_SKIP() << "may not mount a small file system";
    write(share("a"), pattern(3 * chunk));
    manager.enqueueDownload(QUrl::fromLocalFile(share("a")), QUrl::fromLocalFile(local("small")));
    finish(1);
    EXPECT_EQ(task().status, TransferStatus::failed);
    EXPECT_EQ(task().errorMessage, "No space left on device");
    EXPECT_GT(QFileInfo(part(local("small/a"))).size(), 0);
    write(share("b"), "small");
    manager.enqueueDownload(QUrl::fromLocalFile(share("b")), QUrl::fromLocalFile(local("small")));
    finish(2);
    EXPECT_EQ(QDir(local("small")).entryList(QDir::Files | QDir::Hidden), QStringList{"b"});
    EXPECT_EQ(::umount2(directory.constData(), MNT_DETACH), 0);
}

TEST_F(TransferManagerTest, ASourceThatShrinksOrIsRemovedHarmsNothing) {
    const auto meanwhile = [this](const QString& name, const std::function<void()>& change) {
        manager.clearCompleted();
        write(share(name), pattern(3 * chunk));
        fromBytes[0] = [this] { manager.pause(task().id); };
        download(name);
        settleUntil(
            [this] { return !manager.tasks().empty() && task().status == TransferStatus::paused; });
        change();
        manager.resume(task().id);
        finish(1);
        EXPECT_EQ(task().status, TransferStatus::completed);
        EXPECT_EQ(task().bytesTransferred, 3 * chunk);
    };
    meanwhile(
        "a", [this] { ASSERT_EQ(::truncate(share("a").toLocal8Bit().constData(), chunk + 1), 0); });
    EXPECT_EQ(read(local("a")), pattern(chunk + 1));
    meanwhile("b", [this] { QFile::remove(share("b")); });
    EXPECT_EQ(read(local("b")), pattern(3 * chunk));
}

TEST_F(TransferManagerTest, RetryingACompletedTaskCountsItsBytesTwice) {
    write(share("a"), pattern(chunk));
    download("a");
    finish(1);
    write(share("a"), "changed");
    manager.retry(task().id);
    EXPECT_EQ(task().status, TransferStatus::pending);
    EXPECT_EQ(task().startDate, std::nullopt);
    finish(1);
    EXPECT_EQ(read(local("a")), "changed");
    EXPECT_EQ(manager.totalBytesTransferred(), 2 * chunk);
}

TEST_F(TransferManagerTest, BytesThatAreNotStoredAreAFailureAndTheFormerFileStays) {
    write(local("a"), "new");
    write(share("a"), "former");
    const FileCalls calls(share("").toLocal8Bit());
    FileCalls::failSync(ETIMEDOUT);
    manager.enqueueUpload(QUrl::fromLocalFile(local("a")), QUrl::fromLocalFile(share("")));
    finish(1);
    EXPECT_EQ(task().status, TransferStatus::failed);
    EXPECT_EQ(task().errorMessage, "Connection timed out");
    EXPECT_EQ(read(share("a")), "former");
    EXPECT_TRUE(notifications.isEmpty());
    FileCalls::failSync(0);
    manager.retry(task().id);
    finish(1);
    EXPECT_EQ(task().status, TransferStatus::completed);
    EXPECT_EQ(read(share("a")), "new");
    EXPECT_EQ(QDir(share("")).entryList(QDir::Files | QDir::Hidden), QStringList{"a"});
    EXPECT_GE(FileCalls::synced(), 2);
}

/// A server that has gone makes each of these calls last for seconds.
TEST_F(TransferManagerTest, NoFileIsClosedOnTheMainThreadOnAnyPath) {
    write(share("a"), pattern(chunk));
    const FileCalls calls(local("").toLocal8Bit());
    download("a");
    download("gone");
    finish(2);
    downloadEndless();
    settleUntil([this] { return manager.tasks().size() == 3 && task(2).bytesTransferred > 0; });
    manager.cancel(task(2).id);
    finish(3);
    for (const bool isOpen : {false, true}) {
        auto window = std::make_unique<TransferManager>(recentFiles, scheduler, nullptr);
        window->enqueueDownload(QUrl::fromLocalFile(endless), QUrl::fromLocalFile(local("")));
        settleUntil([&] {
            const auto& tasks = window->tasks();
            return !tasks.empty() && (isOpen ? tasks.front().bytesTransferred > 0
                                             : tasks.front().status == TransferStatus::running);
        });
        window.reset();
        endWorkers();
    }
    EXPECT_EQ(FileCalls::onMainThread(), 0);
}

/// The window closes while the worker still opens the files.
TEST_F(TransferManagerTest, AQueueThatGoesAwayAtOnceLeavesTheFormerFile) {
    write(local("zero"), "former");
    for (int round = 0; round < 8; ++round) {
        auto window = std::make_unique<TransferManager>(recentFiles, scheduler, nullptr);
        window->enqueueDownload(QUrl::fromLocalFile(endless), QUrl::fromLocalFile(local("")));
        settleUntil([&] {
            return !window->tasks().empty() &&
                   window->tasks().front().status == TransferStatus::running;
        });
        window.reset();
        endWorkers();
        EXPECT_EQ(read(local("zero")), "former");
        EXPECT_EQ(QDir(local("")).entryList(QDir::Files | QDir::Hidden), QStringList{"zero"});
    }
}

TEST_F(TransferManagerTest, AQueueThatGoesAwayEndsItsCopyAndLeavesNoPart) {
    auto window = std::make_unique<TransferManager>(recentFiles, scheduler, nullptr);
    window->enqueueDownload(QUrl::fromLocalFile(endless), QUrl::fromLocalFile(local("")));
    settleUntil([&] {
        return !window->tasks().empty() && window->tasks().front().bytesTransferred >= chunk;
    });
    window.reset();
    settleUntil([this] { return !QFile::exists(part(local("zero"))); });
    EXPECT_FALSE(QFile::exists(local("zero")));
    EXPECT_TRUE(workerPool().waitForDone(10'000)) << "it is copied on";
}

} // namespace
} // namespace harbrix
