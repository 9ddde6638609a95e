// Prints what the windows cost: first frame, a state change among 200 shares, memory, wakeups.
// Judges nothing.

#include "support/UiWorld.h"
#include "ui/WindowScenes.h"
#include "ui/main/MainWindowView.h"
#include "ui/widgets/Theme.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace harbrix {
namespace {

/// The sum of the proportional shares of all pages, MiB.
double proportionalSetSize() {
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    static const QRegularExpression line(QStringLiteral("^Pss:\\s+(\\d+) kB"),
                                         QRegularExpression::MultilineOption);
    return line.match(QString::fromLatin1(file.readAll())).captured(1).toDouble() / 1024;
}

/// How often this process has gone to sleep of its own will.
long voluntarySwitches() {
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    static const QRegularExpression line(QStringLiteral("^voluntary_ctxt_switches:\\s+(\\d+)"),
                                         QRegularExpression::MultilineOption);
    return line.match(QString::fromLatin1(file.readAll())).captured(1).toLong();
}

class PaintWatch final : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        painted = painted || event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }
    bool painted = false;
};

double firstFrame(WindowScenes& scenes) {
    PaintWatch watch;
    QElapsedTimer clock;
    clock.start();
    qApp->installEventFilter(&watch);
    scenes.open(QStringLiteral("main"));
    while (!watch.painted)
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    qApp->removeEventFilter(&watch);
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// What this thread has computed so far, milliseconds: unlike the clock on the wall it does not
/// count what else the machine does.
double computed() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

struct Figures {
    double median;
    double worst;
    double worstComputed;
};

/// One share after another changes its state; each change is told, laid out and painted.
Figures redraws(UiWorld& world) {
    std::vector<double> times;
    double worstComputed = 0;
    const std::vector<NASConfig> configs = world.automation.store.configs();
    for (const MountState::Kind kind : {MountState::Kind::mounting, MountState::Kind::mounted}) {
        for (const NASConfig& config : configs) {
            QElapsedTimer clock;
            clock.start();
            const double before = computed();
            std::optional<QUrl> mountPoint;
            if (kind == MountState::Kind::mounted)
                mountPoint = QUrl::fromLocalFile("/mnt/" + config.name);
            world.automation.appState.updateStatus(config.id, kind, mountPoint);
            QCoreApplication::processEvents();
            times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
            worstComputed = std::max(worstComputed, computed() - before);
        }
    }
    std::ranges::sort(times);
    return {times[times.size() / 2], times.back(), worstComputed};
}

double wakeupsPerSecond(int seconds) {
    const long before = voluntarySwitches();
    QTimer::singleShot(seconds * 1000, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    return double(voluntarySwitches() - before - 1) / seconds;
}

} // namespace
} // namespace harbrix

int main(int argc, char** argv) {
    using namespace harbrix;
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const Theme theme(application);
    UiWorld world;
    WindowScenes scenes(world.environment);
    std::printf("platform                         %s\n",
                qPrintable(QGuiApplication::platformName()));
    std::printf("PSS before a window              %.1f MiB\n", proportionalSetSize());
    std::printf("first frame of the main window   %.1f ms\n", firstFrame(scenes));
    std::printf("PSS with the main window         %.1f MiB\n", proportionalSetSize());
    for (int index = 0; index < 200; ++index)
        world.automation.add(QString("Share %1").arg(index));
    QWidget* window = scenes.window(QStringLiteral("main"));
    QCoreApplication::processEvents();
    const Figures figures = redraws(world);
    std::printf("state change among 200 shares    %.2f ms median, %.2f ms worst (%.2f ms of it "
                "computing)\n",
                figures.median, figures.worst, figures.worstComputed);
    std::printf("PSS with 200 mounted shares      %.1f MiB\n", proportionalSetSize());
    window->close();
    QCoreApplication::processEvents();
    std::printf("wakeups with all windows closed  %.2f a second\n", wakeupsPerSecond(5));
    return 0;
}
