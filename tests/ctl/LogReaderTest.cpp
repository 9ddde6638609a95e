#include "ctl/LogReader.h"

#include "ctl/OutputFile.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace harbrix {
namespace {

QString line(const char* label, const char* message) {
    return QString("[2026-03-01 14:05:09.417] [%1] [Mount] A.cpp:8 f() - %2").arg(label, message);
}

TEST(LogFilter, AMessageOfSeveralLinesIsAdmittedAsAWhole) {
    const QStringList log{"a line before any message", line("DEBUG", "one"),  line("WARN", "two"),
                          "its second line [ERROR] [", line("INFO", "three"), "its second line",
                          line("CRIT", "four")};
    LogFilter filter(2);
    QStringList admitted;
    for (const QString& each : log)
        if (filter.admits(each))
            admitted << each;
    EXPECT_EQ(admitted, (QStringList{log[0], log[2], log[3], log[6]}));
}

class LogReaderTest : public testing::Test {
protected:
    QTemporaryDir folder;
    const QString path = folder.filePath("Harbrix.log");
    LogReader reader{path};

    void append(const QByteArray& text) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(text);
    }
};

TEST_F(LogReaderTest, GoesOnThroughRotationAndRemoval) {
    EXPECT_EQ(reader.newLines(), QStringList());
    append("one\ntw");
    EXPECT_EQ(reader.newLines(), QStringList{"one"});
    append("o\n");
    EXPECT_EQ(reader.newLines(), QStringList{"two"});
    append("three\n");
    ASSERT_TRUE(QFile::rename(path, path + ".1"));
    append("four\n");
    EXPECT_EQ(reader.newLines(), (QStringList{"three", "four"}));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(reader.newLines(), QStringList());
    append("five\n");
    EXPECT_EQ(reader.newLines(), QStringList{"five"});
}

TEST(OutputFile, IsPrivateWholeAndReplacesNothingUnasked) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("shares.json");
    ASSERT_TRUE(writeFile(path, "one", ExistingFile::Kept));
    const auto refused = writeFile(path, "two", ExistingFile::Kept);
    ASSERT_FALSE(refused);
    EXPECT_TRUE(refused.error().contains("--force"));
    EXPECT_EQ(readInput(path), QByteArray("one"));
    ASSERT_TRUE(writeFile(path, "two", ExistingFile::Replaced));
    EXPECT_EQ(readInput(path), QByteArray("two"));
    struct stat status {};
    ASSERT_EQ(::stat(path.toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);

    EXPECT_FALSE(writeFile(folder.filePath("none/shares.json"), "x", ExistingFile::Kept));
    EXPECT_FALSE(writeFile(folder.path(), "x", ExistingFile::Replaced));
    EXPECT_FALSE(readInput(folder.filePath("none")));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{"shares.json"});
}

} // namespace
} // namespace harbrix
