#include "services/CrashHandlers.h"

#include "services/CrashReport.h"
#include "services/FrameSymbols.h"

#include <QFile>

#include <cxxabi.h>
#include <execinfo.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <map>
#include <typeinfo>
#include <vector>

namespace harbrix {
namespace {

constexpr int exceptionStatus = 6;
constexpr int mostFrames = 64;
/// Seconds after which a process that is stuck in its handler is ended.
constexpr unsigned patience = 10;
constexpr std::size_t alternateStackSize = 256 << 10;
constexpr std::array reportedSignals{SIGABRT, SIGILL, SIGSEGV, SIGBUS, SIGTRAP, SIGPIPE};

// Reachable from the handlers, which have no object to hold on to.
std::atomic_flag isHandlingCrash = ATOMIC_FLAG_INIT;
std::map<int, struct sigaction> previousSignalHandlers;
QString reportDirectory;
QString homeDirectory;

QString signalName(int number) {
    switch (number) {
    case SIGILL:
        return QStringLiteral("SIGILL");
    case SIGTRAP:
        return QStringLiteral("SIGTRAP");
    case SIGABRT:
        return QStringLiteral("SIGABRT");
    case SIGBUS:
        return QStringLiteral("SIGBUS");
    case SIGSEGV:
        return QStringLiteral("SIGSEGV");
    case SIGPIPE:
        return QStringLiteral("SIGPIPE");
    default:
        return QStringLiteral("SIGUNKNOWN(%1)").arg(number);
    }
}

QStringList stackTrace() {
    std::array<void*, mostFrames> addresses{};
    const int count = ::backtrace(addresses.data(), mostFrames);
    char** const symbols = ::backtrace_symbols(addresses.data(), count);
    QStringList frames;
    for (int i = 0; symbols && i < count; ++i)
        frames << withoutHome(QFile::decodeName(symbols[i]), homeDirectory);
    std::free(symbols); // NOLINT: the caller's, by backtrace(3)
    return frames;
}

void save(const CrashReport& report) {
    QFile file(crashReportPath(reportDirectory, report.id));
    if (file.open(QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner))
        file.write(encodeCrashReport(report));
}

void handleSignal(int number) {
    if (isHandlingCrash.test_and_set())
        return;
    ::alarm(patience);
    CrashReport report = CrashReport::ofThisProgram();
    const QString name = signalName(number);
    report.exceptionType = QStringLiteral("Signal");
    report.exceptionName = name;
    report.reason = QStringLiteral("Fatal signal %1 received").arg(name);
    report.stackTrace = stackTrace();
    save(report);

    const auto previous = previousSignalHandlers.find(number);
    if (previous != previousSignalHandlers.end()) {
        const auto handler = previous->second.sa_handler;
        const bool takesOneArgument = (previous->second.sa_flags & SA_SIGINFO) == 0;
        if (takesOneArgument && handler != SIG_DFL && handler != SIG_IGN)
            handler(number);
    }
    ::_exit(number);
}

QString typeName(const std::type_info& type) {
    int status = 0;
    char* const plain = abi::__cxa_demangle(type.name(), nullptr, nullptr, &status);
    const QString name = QString::fromLatin1(plain ? plain : type.name());
    std::free(plain); // NOLINT: the caller's, by the C++ ABI
    return name;
}

[[noreturn]] void handleUncaughtError() {
    if (isHandlingCrash.test_and_set())
        ::_exit(exceptionStatus);
    ::alarm(patience);
    CrashReport report = CrashReport::ofThisProgram();
    report.exceptionType = QStringLiteral("NSException");
    report.stackTrace = stackTrace();
    if (const std::type_info* type = abi::__cxa_current_exception_type())
        report.exceptionName = typeName(*type);
    if (const std::exception_ptr error = std::current_exception()) {
        try {
            std::rethrow_exception(error);
        } catch (const std::exception& described) {
            report.reason = QString::fromUtf8(described.what());
        } catch (...) { // it has no more to say
        }
    }
    save(report);
    ::_exit(exceptionStatus);
}

/// A stack that has run over leaves no room for a handler of its own.
void provideAlternateStack() {
    static std::vector<char> memory(alternateStackSize);
    const stack_t stack{.ss_sp = memory.data(), .ss_flags = 0, .ss_size = memory.size()};
    ::sigaltstack(&stack, nullptr);
}

} // namespace

QString crashReportPath(const QString& directory, const QString& id) {
    return directory + u'/' + id + u'.' + QLatin1String(crashReportFileExtension);
}

void installCrashHandlers(const QString& directory, const QString& home) {
    reportDirectory = directory;
    homeDirectory = home;
    // The first call loads a library, which a dying process had better not do.
    std::array<void*, 1> address{};
    ::backtrace(address.data(), 1);

    std::set_terminate(handleUncaughtError);
    provideAlternateStack();
    for (const int number : reportedSignals) {
        struct sigaction action {};
        action.sa_handler = handleSignal;
        action.sa_flags = SA_ONSTACK;
        ::sigaction(number, &action, &previousSignalHandlers[number]);
    }
}

} // namespace harbrix
