#include "transfer/FileCopy.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/file.h>

namespace harbrix {
namespace {

TEST(FileCopyTest, StopsBeforeEveryChunkAndGoesOnFromThere) {
    const QTemporaryDir folder;
    const auto path = [&](const char* name) { return folder.filePath(name).toLocal8Bit(); };
    const QByteArray contents = "first.second.third.end";
    constexpr std::size_t size = 7;
    QFile source(folder.filePath("source"));
    ASSERT_TRUE(source.open(QFile::WriteOnly) && source.write(contents) == contents.size());
    source.close();
    for (qint64 stop = 0; stop <= contents.size(); stop += size) {
        const auto copy = FileCopy::open(path("source"), path("copy"));
        ASSERT_TRUE(copy);
        std::vector<qint64> asked;
        const auto upTo = [&](qint64 limit) {
            return [&asked, limit](qint64 copied) {
                asked.push_back(copied);
                return copied < limit;
            };
        };
        EXPECT_EQ((*copy)->run(size, upTo(stop)), false);
        QFile part(QString::fromLocal8Bit(partPath(path("copy"))));
        ASSERT_TRUE(part.open(QFile::ReadOnly));
        EXPECT_EQ(part.readAll(), contents.left(stop));
        EXPECT_EQ((*copy)->run(size, upTo(100)), true);
        EXPECT_EQ(QFile::exists(folder.filePath("copy")), stop > 0)
            << "in place before it is whole";
        ASSERT_TRUE((*copy)->sync() && (*copy)->finish());
        (*copy)->close();
        QFile copied(folder.filePath("copy"));
        EXPECT_EQ(copied.open(QFile::ReadOnly) ? copied.readAll() : "", contents);
        std::vector<qint64> expected{0, 7, 14, 21, 22};
        expected.insert(expected.begin() + stop / 7, stop);
        EXPECT_EQ(asked, expected) << stop;
    }
}

TEST(PartFileTest, ItsNameFitsWhereThatOfTheDestinationDoes) {
    const QByteArray han = "\u4e2d"; // three bytes each
    struct Row {
        QByteArray destination;
        QByteArray part;
    };
    const std::vector<Row> rows = {
        {"/a/b", "/a/.b.harbrix-part"},
        {"/.b", "/..b.harbrix-part"},
        {"/a/" + QByteArray(255, 'n'), "/a/." + QByteArray(241, 'n') + ".harbrix-part"},
        {"/a/" + han.repeated(85), "/a/." + han.repeated(80) + ".harbrix-part"},
    };
    for (const auto& [destination, part] : rows)
        EXPECT_EQ(partPath(destination), part);
}

TEST(PartFileTest, WhatAnotherPutInItsPlaceIsNotTakenForTheCopy) {
    const QTemporaryDir folder;
    const QByteArray destination = folder.filePath("file").toLocal8Bit();
    auto part = PartFile::create(destination);
    ASSERT_TRUE(part);
    EXPECT_EQ(PartFile::create(destination).error().code, EBUSY);
    ASSERT_TRUE(QFile::rename(QString::fromLocal8Bit(partPath(destination)), folder.filePath("x")));
    QFile other(QString::fromLocal8Bit(partPath(destination)));
    ASSERT_TRUE(other.open(QFile::WriteOnly));
    EXPECT_EQ(part->replaceDestination().error().code, ESTALE);
    EXPECT_FALSE(QFile::exists(folder.filePath("file")));
}

/// A second instance, or one on a display of its own, copies into the same folder.
TEST(PartFileTest, WhatAnotherProcessWritesStaysAndWhatACrashLeftGoes) {
    for (const bool isWritten : {true, false}) {
        const QTemporaryDir folder;
        const QString left = folder.filePath(".other.harbrix-part");
        QFile other(left);
        ASSERT_TRUE(other.open(QFile::WriteOnly));
        ASSERT_EQ(::flock(other.handle(), isWritten ? LOCK_EX : LOCK_UN), 0);
        EXPECT_TRUE(PartFile::create(folder.filePath("file").toLocal8Bit()));
        EXPECT_EQ(QFile::exists(left), isWritten);
        const auto same = PartFile::create(folder.filePath("other").toLocal8Bit());
        EXPECT_EQ(same ? 0 : same.error().code, isWritten ? EBUSY : 0);
    }
}

TEST(FileCopyTest, ACopyThatCannotTakeItsPlaceIsNotLeftBesideIt) {
    const QTemporaryDir folder;
    const QByteArray destination = folder.filePath("copy").toLocal8Bit();
    const auto copy = FileCopy::open("/dev/null", destination);
    ASSERT_TRUE(copy);
    ASSERT_TRUE(QDir(folder.path()).mkdir("copy"));
    EXPECT_EQ((*copy)->finish().error().code, EISDIR);
    (*copy)->close();
    EXPECT_FALSE(QFile::exists(QString::fromLocal8Bit(partPath(destination))));
}

} // namespace
} // namespace harbrix
