#include "app/DebugInfo.h"
#include "app/HarbrixApp.h"
#include "app/ProgramOptions.h"
#include "base/TaskScope.h"

#include <QApplication>
#include <QLoggingCategory>

#include <langinfo.h>
#include <sys/resource.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace harbrix;

namespace {

constexpr int wrongUsage = 64;

void write(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

/// The language that the environment names for texts; empty if it names none.
QByteArray namedLanguage() {
    for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QByteArray named = qgetenv(variable);
        if (!named.isEmpty())
            return named.split('.').front();
    }
    return {};
}

/// Qt warns about every other character set, and the tools that are run need one that holds all
/// names. A locale that is named but not installed still tells the language.
void ensureUtf8() {
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") == 0)
        return;
    const QByteArray language = namedLanguage();
    if (!language.isEmpty() && language != "C" && language != "POSIX")
        ::setenv("LANGUAGE", language.constData(), 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
}

/// No core file may hold a password. The limit is inherited by the tools, of which expect holds one
/// too, and of all limits the value 1 also stops a core that is piped to a collector (core(5),
/// do_coredump() in the kernel). PR_SET_DUMPABLE does neither for the tools, and it hides
/// /proc/self from the desktop portals, which then refuse to serve this process.
void forbidCoreFiles() {
    const rlimit limit{1, 1};
    ::setrlimit(RLIMIT_CORE, &limit);
}

/// The platforms that Qt may try for the displays that the environment names, the best one first.
QByteArrayList platformsForDisplay() {
    QByteArrayList platforms;
    if (qEnvironmentVariableIsSet("DISPLAY"))
        platforms << "xcb";
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
        // GNOME draws no frames for Wayland clients that bring none: there X comes first, as in Qt.
        const bool isGnome = qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains("GNOME");
        platforms.insert(isGnome ? platforms.size() : 0, "wayland");
    }
    return platforms;
}

/// An application for windows where a display is named. One that cannot be reached must not end a
/// program that works without: then it is an application for windows that nobody sees.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv) {
    const bool isChosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    const QByteArrayList platforms = platformsForDisplay();
    if (!isChosen && platforms.isEmpty())
        return std::make_unique<QCoreApplication>(argc, argv);
    if (!isChosen) {
        ::setenv("QT_QPA_PLATFORM", (platforms + QByteArrayList{"offscreen"}).join(';').constData(),
                 1);
        QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.*=false"));
    }
    auto application = std::make_unique<QApplication>(argc, argv);
    if (!isChosen) {
        // Nothing that this process starts shall take over what was tried here.
        ::unsetenv("QT_QPA_PLATFORM");
        QLoggingCategory::setFilterRules({});
    }
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}

/// Whether windows were meant to be seen and will not be.
bool lacksNamedDisplay() {
    return QGuiApplication::platformName() == "offscreen" && !platformsForDisplay().isEmpty();
}

Task<void> printDebugInfo(DebugInfo* info) {
    auto collecting = info->collect();
    const QString text = co_await collecting;
    write(stdout, text);
    QCoreApplication::quit();
}

int showDebugInfo(int& argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const UserDefaults defaults(HarbrixApp::defaultsPath(AppDirectories::ofThisUser()),
                                UserDefaults::Access::ReadOnly);
    const auto fileSystem = FileSystem::create();
    const auto launcher = ProcessLauncher::create();
    RealScheduler scheduler;
    DebugInfo info(defaults, *fileSystem, *launcher, scheduler);
    TaskScope scope;
    scheduler.post([&] { scope.launch(printDebugInfo(&info)); });
    return QCoreApplication::exec();
}

[[noreturn]] void runProgram(int& argc, char** argv) {
    const auto application = makeApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Harbrix"));
    QCoreApplication::setApplicationVersion(QStringLiteral(HARBRIX_VERSION));
    QGuiApplication::setDesktopFileName(QLatin1String(AppDelegate::applicationIdentifier));
    auto harbrix = std::make_unique<HarbrixApp>();
    if (lacksNamedDisplay())
        log(LogLevel::warning,
            QStringLiteral("The display cannot be reached; running without windows"),
            LogCategory::ui);
    const int exitCode = harbrix->run();
    // A flow or a worker in the middle of a call (on a dead server, say) still uses the services,
    // and a quit does not wait for it: then they go with the process instead of before it.
    if (!harbrix->isBusy())
        harbrix.reset();
    // Qt's bus thread may still take messages while static objects are destroyed.
    std::_Exit(exitCode);
}

} // namespace

int main(int argc, char** argv) {
    ensureUtf8();
    forbidCoreFiles();
    std::signal(SIGPIPE, SIG_IGN);

    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const auto action = parseOptions(arguments);
    if (!action) {
        write(stderr, QStringLiteral("harbrix: %1\n").arg(action.error()));
        return wrongUsage;
    }
    switch (*action) {
    case ProgramAction::ShowVersion:
        write(stdout, QStringLiteral("harbrix " HARBRIX_VERSION "\n"));
        return EXIT_SUCCESS;
    case ProgramAction::ShowHelp:
        write(stdout, helpText());
        return EXIT_SUCCESS;
    case ProgramAction::ShowDebugInfo:
        return showDebugInfo(argc, argv);
    case ProgramAction::Run:
        runProgram(argc, argv);
    }
    return EXIT_FAILURE;
}
