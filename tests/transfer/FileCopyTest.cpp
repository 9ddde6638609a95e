#include "transfer/FileCopy.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

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
        QFile part(folder.filePath("copy"));
        ASSERT_TRUE(part.open(QFile::ReadOnly));
        EXPECT_EQ(part.readAll(), contents.left(stop));
        EXPECT_EQ((*copy)->run(size, upTo(100)), true);
        ASSERT_TRUE((*copy)->close());
        EXPECT_EQ(part.seek(0) ? part.readAll() : "", contents);
        std::vector<qint64> expected{0, 7, 14, 21, 22};
        expected.insert(expected.begin() + stop / 7, stop);
        EXPECT_EQ(asked, expected) << stop;
    }
}

} // namespace
} // namespace harbrix
