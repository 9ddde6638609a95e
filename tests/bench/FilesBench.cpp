// Times listing, prefetching and transfers against ls and cp in the same folder and run. Prints the
// ratios and never fails on them:
//
//     files_bench [--folder DIR] [--share DIR [--behind DIR]] [--runs N] listing COUNT...
//     files_bench [...] prefetch COUNT BYTES
//     files_bench [...] transfer BYTES
//
// Files are read from --share (a mounted share, say) and copied below --folder; both default to a
// temporary folder. They are made below --behind, the folder that the share shows, which is
// quicker. Each figure is the best of the runs, with the caches of the system warm.

#include "base/Scheduler.h"
#include "files/CacheManager.h"
#include "files/FileSystemManager.h"
#include "files/RecentFilesTracker.h"
#include "platform/UserDefaults.h"
#include "transfer/TransferManager.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace harbrix;

namespace {

struct Place {
    QString folder;
    QString share;
    QString behind; ///< the same folder as `share`, without the share in between
    int runs = 3;
};

void writeFile(const QString& path, qint64 size) {
    QFile file(path);
    if (!file.open(QFile::WriteOnly))
        qFatal("%s cannot be written", qPrintable(path));
    const QByteArray block(std::min<qint64>(size, 1 << 20), 'x');
    for (qint64 left = size; left > 0; left -= block.size())
        file.write(block.constData(), std::min<qint64>(left, block.size()));
}

void makeFiles(const QString& folder, int count, qint64 size) {
    QDir().mkpath(folder);
    for (int number = 0; number < count; ++number)
        writeFile(QStringLiteral("%1/IMG_%2 of the holidays.jpg").arg(folder).arg(number), size);
}

double secondsOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double secondsOfTool(const QString& program, const QStringList& arguments) {
    return secondsOf([&] {
        QProcess tool;
        tool.setStandardOutputFile(QProcess::nullDevice());
        tool.start(program, arguments);
        if (!tool.waitForFinished(-1) || tool.exitCode() != 0)
            qFatal("%s has failed", qPrintable(program));
    });
}

/// Runs the event loop until the condition holds. The result is the longest time, in milliseconds,
/// for which the loop served nothing.
double runUntil(const std::function<bool()>& condition) {
    QTimer tick;
    tick.start(std::chrono::milliseconds(1));
    QElapsedTimer sinceLast;
    sinceLast.start();
    qint64 longest = 0;
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        longest = std::max(longest, sinceLast.nsecsElapsed());
        sinceLast.restart();
    }
    return static_cast<double>(longest) / 1e6;
}

double best(int runs, const std::function<double()>& once) {
    double least = std::numeric_limits<double>::max();
    for (int run = 0; run < runs; ++run)
        least = std::min(least, once());
    return least;
}

void report(const char* what, double ours, const char* toolName, double tool) {
    std::printf("%-28s %8.3f s   %-8s %8.3f s   time ratio %.2f   rate %.0f %%\n", what, ours,
                toolName, tool, ours / tool, 100.0 * tool / ours);
}

void benchListing(const Place& place, int count) {
    const QString folder = place.share + QStringLiteral("/listing");
    makeFiles(place.behind + QStringLiteral("/listing"), count, 0);
    const double tool = best(place.runs, [&] {
        return secondsOfTool(QStringLiteral("ls"), {"-l", folder});
    });
    RealScheduler scheduler;
    UserDefaults defaults(place.folder + QStringLiteral("/defaults.json"));
    // Too small for the copies that the listing offers to the cache: they are timed elsewhere.
    defaults.set(CacheManager::cacheLocationKey, QStringLiteral("/dev/null/none"));
    double stall = 0;
    const double ours = best(place.runs, [&] {
        CacheManager cache(defaults, scheduler, place.folder);
        FileSystemManager files(QUrl::fromLocalFile(folder), QUuid::createUuid(), cache, scheduler);
        const auto loaded = cache.loaded();
        runUntil([&] { return loaded.await_ready(); });
        bool isListed = false;
        QObject::connect(&files, &FileSystemManager::itemsChanged, [&] { isListed = true; });
        double seconds = 0;
        seconds = secondsOf([&] {
            files.launch(files.refresh());
            stall = std::max(stall, runUntil([&] { return isListed; }));
        });
        // The offers to the cache come after the rows, and must not be felt either.
        stall = std::max(stall, runUntil([&] { return !files.isLoading(); }));
        return seconds;
    });
    report(qPrintable(QStringLiteral("listing %1").arg(count)), ours, "ls -l", tool);
    std::printf("    longest stall of the event loop %.1f ms\n", stall);
    QDir(place.behind + QStringLiteral("/listing")).removeRecursively();
}

void benchPrefetch(const Place& place, int count, qint64 size) {
    const QString share = place.share + QStringLiteral("/prefetch");
    makeFiles(place.behind + QStringLiteral("/prefetch"), count, size);
    const QString copies = place.folder + QStringLiteral("/copies");
    QDir().mkpath(copies);
    const double tool = best(place.runs, [&] {
        const QString target = copies + QStringLiteral("/cp");
        const double seconds = secondsOfTool(QStringLiteral("cp"), {"-r", share, target});
        QDir(target).removeRecursively();
        return seconds;
    });
    RealScheduler scheduler;
    UserDefaults defaults(place.folder + QStringLiteral("/defaults.json"));
    defaults.set(CacheManager::cacheLocationKey, copies + QStringLiteral("/cache"));
    double stall = 0;
    const double ours = best(place.runs, [&] {
        CacheManager cache(defaults, scheduler, place.folder);
        FileSystemManager files(QUrl::fromLocalFile(share), QUuid::createUuid(), cache, scheduler);
        const double seconds = secondsOf([&] {
            files.launch(files.refresh());
            stall = std::max(stall, runUntil([&] {
                                 return cache.entries().size() == static_cast<std::size_t>(count);
                             }));
        });
        QDir(copies + QStringLiteral("/cache")).removeRecursively();
        return seconds;
    });
    report(qPrintable(QStringLiteral("prefetching %1 of %2").arg(count).arg(size)), ours, "cp -r",
           tool);
    std::printf("    longest stall of the event loop %.1f ms\n", stall);
    QDir(place.behind + QStringLiteral("/prefetch")).removeRecursively();
}

void benchTransfer(const Place& place, qint64 size) {
    const QString source = place.share + QStringLiteral("/transfer");
    writeFile(place.behind + QStringLiteral("/transfer"), size);
    const QString target = place.folder + QStringLiteral("/target");
    QDir().mkpath(target);
    const QString copy = target + QStringLiteral("/transfer");
    RealScheduler scheduler;
    UserDefaults defaults(place.folder + QStringLiteral("/defaults.json"));
    RecentFilesTracker recentFiles(defaults, scheduler);
    double tool = std::numeric_limits<double>::max();
    double readWrite = tool;
    double ours = tool;
    double stall = 0;
    // In turns, so that what the disk does meanwhile meets all of them.
    for (int run = 0; run < place.runs; ++run) {
        tool = std::min(tool, secondsOfTool(QStringLiteral("cp"), {source, copy}));
        QFile::remove(copy);
        readWrite = std::min(readWrite,
                             secondsOfTool(QStringLiteral("dd"),
                                           {"if=" + source, "of=" + copy, "bs=1M", "status=none"}));
        QFile::remove(copy);
        TransferManager manager(recentFiles, scheduler, nullptr);
        ours = std::min(
            ours, secondsOf([&] {
                manager.enqueueDownload(QUrl::fromLocalFile(source), QUrl::fromLocalFile(target));
                stall = std::max(stall, runUntil([&] {
                                     return !manager.tasks().empty() && !manager.isProcessing();
                                 }));
            }));
        if (manager.tasks().front().status != TransferStatus::completed)
            qFatal("the transfer has failed");
        QFile::remove(copy);
    }
    report(qPrintable(QStringLiteral("transfer of %1").arg(size)), ours, "cp", tool);
    report("    the same against dd", ours, "dd bs=1M", readWrite);
    std::printf("    longest stall of the event loop %.1f ms\n", stall);
    QFile::remove(place.behind + QStringLiteral("/transfer"));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{QStringLiteral("folder"), QStringLiteral("where copies go"), "dir"},
                       {QStringLiteral("share"), QStringLiteral("where files are read"), "dir"},
                       {QStringLiteral("behind"), QStringLiteral("where they are made"), "dir"},
                       {QStringLiteral("runs"), QStringLiteral("runs of each"), "n", "3"}});
    parser.addPositionalArgument(QStringLiteral("what"),
                                 QStringLiteral("listing, prefetch or transfer, and its numbers"));
    parser.process(application);
    const QTemporaryDir temporary;
    const auto folderOf = [&](const QString& option) {
        return parser.isSet(option) ? parser.value(option) : temporary.path();
    };
    const QString share = folderOf(QStringLiteral("share"));
    const QString behind = QStringLiteral("behind");
    const Place place{folderOf(QStringLiteral("folder")), share,
                      parser.isSet(behind) ? parser.value(behind) : share,
                      parser.value(QStringLiteral("runs")).toInt()};
    const QStringList words = parser.positionalArguments();
    if (words.value(0) == QLatin1String("listing")) {
        for (const QString& count : words.mid(1))
            benchListing(place, count.toInt());
    } else if (words.value(0) == QLatin1String("prefetch") && words.size() == 3) {
        benchPrefetch(place, words[1].toInt(), words[2].toLongLong());
    } else if (words.value(0) == QLatin1String("transfer") && words.size() == 2) {
        benchTransfer(place, words[1].toLongLong());
    } else {
        parser.showHelp(1);
    }
    return 0;
}
