// Times how long the browser window takes to show a folder, and a refresh of it, and for how long
// its event loop serves nothing meanwhile. `ls -l` of the same folder stands beside it. Judges
// nothing.
//
//     browser_bench COUNT...     folders of so many entries on the local disk
//     browser_bench --of DIR...  folders that are there

#include "base/Scheduler.h"
#include "support/UiWorld.h"
#include "ui/WindowScenes.h"
#include "ui/browser/FileBrowserView.h"
#include "ui/browser/FileBrowserWindow.h"
#include "ui/widgets/Theme.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace harbrix {
namespace {

struct Figures {
    double seconds;
    double stall; ///< milliseconds
};

/// Runs the event loop until the condition holds.
Figures runUntil(const std::function<bool()>& condition) {
    QTimer tick;
    tick.start(std::chrono::milliseconds(1));
    QElapsedTimer whole;
    QElapsedTimer sinceLast;
    whole.start();
    sinceLast.start();
    qint64 longest = 0;
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        longest = std::max(longest, sinceLast.nsecsElapsed());
        sinceLast.restart();
    }
    return {static_cast<double>(whole.nsecsElapsed()) / 1e9, static_cast<double>(longest) / 1e6};
}

double secondsOfLs(const QString& folder) {
    QElapsedTimer timer;
    timer.start();
    QProcess tool;
    tool.setStandardOutputFile(QProcess::nullDevice());
    tool.start(QStringLiteral("ls"), {QStringLiteral("-l"), folder});
    tool.waitForFinished(-1);
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

void bench(const QString& folder, int count) {
    UiWorld world;
    RealScheduler scheduler;
    // Nothing is to be copied into the cache meanwhile.
    world.automation.defaults.set(CacheManager::cacheLocationKey, QStringLiteral("/dev/null/none"));
    CacheManager cache(world.automation.defaults, scheduler, world.directory.path());
    const Environment environment = world.environmentWith(cache, scheduler);
    const double ls = std::min(secondsOfLs(folder), secondsOfLs(folder));

    WindowScenes scenes(environment);
    world.browserState.show(NASConfig::blank(), QUrl::fromLocalFile(folder));
    scenes.open(QStringLiteral("file-browser"));
    auto* window = qobject_cast<FileBrowserWindow*>(scenes.window(QStringLiteral("file-browser")));
    FileSystemManager& files = window->view()->fsManager();
    const auto* table = window->findChild<QTableView*>(QStringLiteral("fileTable"));
    const Figures shown =
        runUntil([&] { return table->isVisible() && table->model()->rowCount() == count; });
    const Figures offered = runUntil([&] { return !files.isLoading(); });
    files.launch(files.refresh());
    const Figures refreshed = runUntil([&] { return !files.isLoading(); });
    std::printf("%6d entries on screen after %.3f s (ls -l %.3f s), longest stall %.1f ms; "
                "refresh %.3f s, longest stall %.1f ms\n",
                count, shown.seconds, ls, std::max(shown.stall, offered.stall), refreshed.seconds,
                refreshed.stall);
}

void benchLocal(int count) {
    const QTemporaryDir folder;
    for (int number = 0; number < count; ++number)
        (void) QFile(folder.filePath(QStringLiteral("IMG_%1 of the holidays.jpg").arg(number)))
            .open(QFile::WriteOnly);
    bench(folder.path(), count);
}

} // namespace
} // namespace harbrix

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const harbrix::Theme theme(application);
    const QStringList words = QCoreApplication::arguments().mid(1);
    if (words.value(0) == QLatin1String("--of")) {
        for (const QString& folder : words.mid(1))
            harbrix::bench(folder, static_cast<int>(QDir(folder).count() - 2)); // less . and ..
    } else {
        for (const QString& count : words)
            harbrix::benchLocal(count.toInt());
    }
    return 0;
}
