#include "CacheFixture.h"
#include "files/FileItem.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QProcess>
#include <QRandomGenerator>

namespace harbrix {
namespace {

using CacheKillTest = CacheFixture;

QByteArray contentsOf(int number) {
    return QByteArray(number * 137 % 20'000, static_cast<char>('a' + number % 26));
}

/// Every file below the folder with its contents, as one digest.
QByteArray fingerprint(const QString& folder) {
    QStringList paths;
    for (QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories); files.hasNext();)
        paths << files.next();
    paths.sort();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString& path : paths) {
        QFile file(path);
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        hash.addData(path.toUtf8());
        hash.addData(file.readAll());
    }
    return hash.result();
}

TEST_F(CacheKillTest, AKilledProgramLeavesAnIndexThatLoadsAndNoFileHarmed) {
    for (int number = 0; number < 100; ++number)
        write(sharePath(QString::number(number)), contentsOf(number));
    const QByteArray before = fingerprint(sharePath(""));
    std::size_t mostEntries = 0;
    for (int round = 0; round < 100; ++round) {
        QProcess program;
        program.setStandardErrorFile(QProcess::nullDevice());
        program.start(QStringLiteral(FILL_CACHE_PROGRAM),
                      {sharePath(""), root() + QStringLiteral("/caches")});
        ASSERT_TRUE(program.waitForStarted());
        // Half of the rounds may end while the program still reads its index.
        if (round % 2 == 0) {
            ASSERT_TRUE(program.waitForReadyRead());
        }
        program.waitForFinished(QRandomGenerator::global()->bounded(1, 60));
        program.kill();
        ASSERT_TRUE(program.waitForFinished());
        ASSERT_EQ(program.exitStatus(), QProcess::CrashExit) << "it must run until it is killed";

        const auto index = read(cachePath("cache-index.json"));
        if (!index)
            continue;
        const auto stored = decodeCacheIndex(*index);
        ASSERT_TRUE(stored) << "round " << round << ": "
                            << stored.error().description.toStdString();
        mostEntries = std::max(mostEntries, stored->size());
        if (round % 10 != 0)
            continue;
        const auto cache = makeCache();
        for (const auto& record : cache->entries()) {
            const CacheEntry& entry = record->entry;
            ASSERT_EQ(read(pathText(entry.localURL)), contentsOf(entry.fileName.toInt()));
        }
        run(cache->saveIndex());
        ASSERT_EQ(QDir(cachePath()).entryList({"cache-index.json*"}).size(), 1);
    }
    EXPECT_GT(mostEntries, 10U);
    EXPECT_EQ(fingerprint(sharePath("")), before);
}

} // namespace
} // namespace harbrix
