// Times how long the browser window takes to show folders of as many entries as the arguments say,
// and a refresh of them, and for how long its event loop serves nothing meanwhile. `ls -l` of the
// same folder stands beside it. Judges nothing.

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

void bench(int count) {
    UiWorld world;
    RealScheduler scheduler;
    // Nothing is to be copied into the cache meanwhile.
    world.automation.defaults.set(CacheManager::cacheLocationKey, QStringLiteral("/dev/null/none"));
    CacheManager cache(world.automation.defaults, scheduler, world.directory.path());
    const Environment environment{world.automation.appState,
                                  world.automation.store,
                                  world.language,
                                  world.automation.network,
                                  world.automation.strategy,
                                  world.automation.engine,
                                  world.saver,
                                  [](const QUrl&) {},
                                  [] {},
                                  {world.browserState, cache, world.recentFiles, scheduler,
                                   [](const QUrl&) {}, [](const QString&, TransferDirection) {}}};
    const QString folder = world.directory.filePath(QStringLiteral("share"));
    QDir().mkpath(folder);
    for (int number = 0; number < count; ++number)
        (void) QFile(QStringLiteral("%1/IMG_%2 of the holidays.jpg").arg(folder).arg(number))
            .open(QFile::WriteOnly);
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

} // namespace
} // namespace harbrix

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const harbrix::Theme theme(application);
    for (const QString& count : QCoreApplication::arguments().mid(1))
        harbrix::bench(count.toInt());
    return 0;
}
