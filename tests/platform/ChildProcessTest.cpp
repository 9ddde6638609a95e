#include "platform/ChildProcess.h"

#include "support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <thread>

namespace harbrix {
namespace {

using namespace std::chrono_literals;
using Input = ProcessLauncher::Input;
using Reason = ChildProcess::End::Reason;

const QString shell = QStringLiteral("/bin/sh");

qsizetype openDescriptors() {
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

/// Children of this process in any state, zombies included.
bool hasChildren() {
    siginfo_t info = {};
    return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

class ChildProcessTest : public testing::Test {
protected:
    std::unique_ptr<ChildProcess> start(const QString& script, Input input = Input::Inherited) {
        auto child = launcher->launch(shell, {QStringLiteral("-c"), script}, input);
        EXPECT_TRUE(child) << (child ? "" : qPrintable(child.error().description));
        return child ? std::move(*child) : nullptr;
    }
    static std::optional<ChildProcess::End> endOf(ChildProcess& child,
                                                  std::chrono::milliseconds limit = 10s) {
        std::optional<ChildProcess::End> end;
        child.setTerminationHandler([&](ChildProcess::End how) { end = how; });
        return waitUntil([&] { return end.has_value(); }, limit) ? end : std::nullopt;
    }

    std::unique_ptr<ProcessLauncher> launcher = ProcessLauncher::create();
};

TEST_F(ChildProcessTest, TellsHowAChildEnded) {
    struct Case {
        const char* script;
        Reason reason;
        int status;
    };
    const Case cases[] = {
        {"exit 0", Reason::Exit, 0},
        {"exit 3", Reason::Exit, 3},
        {"exit 255", Reason::Exit, 255},
        {"kill -KILL $$", Reason::UncaughtSignal, SIGKILL},
        {"kill -SEGV $$", Reason::UncaughtSignal, SIGSEGV},
        // The shell reports its child's death in an exit code of its own: not our child's death.
        {"sh -c 'kill -TERM $$'; exit $?", Reason::Exit, 128 + SIGTERM},
    };
    for (const Case& row : cases) {
        const auto child = start(QString::fromLatin1(row.script));
        const auto end = endOf(*child);
        ASSERT_TRUE(end) << row.script;
        EXPECT_EQ(end->reason, row.reason) << row.script;
        EXPECT_EQ(end->status, row.status) << row.script;
        EXPECT_FALSE(child->isRunning());
    }
}

TEST_F(ChildProcessTest, SaysWhyAProgramCannotStartAndLeavesNothing) {
    QTemporaryDir directory;
    const auto makeFile = [&](const char* name, const char* text, QFile::Permissions mode) {
        QFile file(directory.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.setPermissions(mode);
        return file.fileName();
    };
    const auto executable = QFile::ReadOwner | QFile::ExeOwner;
    const std::pair<QString, int> cases[] = {
        {directory.filePath(QStringLiteral("missing")), ENOENT},
        {QString(), ENOENT},
        {directory.path(), EACCES},
        {makeFile("data", "#!/bin/sh\n", QFile::ReadOwner), EACCES},
        {makeFile("no interpreter", "#!/nowhere/sh\n", executable), ENOENT},
        {makeFile("no program", "text\n", executable), ENOEXEC},
        {QStringLiteral("/bin/sh/x"), ENOTDIR},
    };
    const auto before = openDescriptors();
    for (const auto& [path, code] : cases) {
        const auto child = launcher->launch(path, {}, Input::Piped);
        ASSERT_FALSE(child) << qPrintable(path);
        EXPECT_EQ(child.error().code, code) << qPrintable(path);
        EXPECT_FALSE(child.error().description.isEmpty());
    }
    const auto cut = launcher->launch(shell, {QStringLiteral("a") + QChar(0)}, Input::Inherited);
    EXPECT_EQ(cut.error().code, EINVAL);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

TEST_F(ChildProcessTest, PassesWordsAndStreamsUnchanged) {
    const QStringList words{QStringLiteral("-c"), QStringLiteral("cat; printf '%s|' \"$@\" >&2"),
                            QStringLiteral("sh"), QString(), QStringLiteral("a b\n\"$挂")};
    auto child = launcher->launch(shell, words, Input::Piped);
    ASSERT_TRUE(child);
    (*child)->writeInput(QByteArray("in\0put", 6));
    ASSERT_TRUE(endOf(**child));
    EXPECT_EQ((*child)->readOutput(), QByteArray("in\0put", 6));
    EXPECT_EQ((*child)->readError(), "|a b\n\"$挂|");
    EXPECT_EQ((*child)->readOutput(), QByteArray());
}

TEST_F(ChildProcessTest, EmptyInputIsAnEndOfInput) {
    const auto child = start(QStringLiteral("cat; echo end"), Input::Piped);
    child->writeInput({});
    ASSERT_TRUE(endOf(*child));
    EXPECT_EQ(child->readOutput(), "end\n");
}

TEST_F(ChildProcessTest, InputThatNobodyReadsEndsWithTheChild) {
    const QByteArray large(4 * 1024 * 1024, 'x');
    // A pipe that is closed, one that is never read, and one that a grandchild keeps open for
    // longer than this test lasts.
    for (const char* script : {"exec <&-; sleep 0.1", "sleep 0.1", "sleep 60 <&0 & sleep 0.1"}) {
        const auto child = start(QString::fromLatin1(script), Input::Piped);
        std::thread writer([&] { child->writeInput(large); });
        const auto end = endOf(*child);
        writer.join();
        ASSERT_TRUE(end) << script;
        EXPECT_EQ(end->status, 0) << script;
    }
}

TEST_F(ChildProcessTest, AFullPipeHoldsTheChildUntilItIsTerminated) {
    const auto child = start(QStringLiteral("exec head -c 1000000 /dev/zero"));
    EXPECT_FALSE(endOf(*child, 300ms));
    EXPECT_TRUE(child->isRunning());
    child->terminate();
    const auto end = endOf(*child);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::UncaughtSignal);
    EXPECT_EQ(end->status, SIGTERM);
    EXPECT_EQ(child->readOutput().size(), 65536);
}

TEST_F(ChildProcessTest, ADaemonThatHoldsThePipesDoesNotDelayTheRead) {
    const auto child = start(QStringLiteral("echo out; sleep 60 & echo $! >&2"));
    ASSERT_TRUE(endOf(*child, 5s));
    EXPECT_EQ(child->readOutput(), "out\n");
    const pid_t daemon = child->readError().trimmed().toInt();
    ASSERT_GT(daemon, 1);
    EXPECT_EQ(::kill(daemon, SIGKILL), 0);
}

TEST_F(ChildProcessTest, TheChildStartsWithDefaultSignalsAndNoForeignDescriptors) {
    ::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const int leaked = ::open("/dev/null", O_RDONLY); // without close-on-exec
    auto signalState = launcher->launch(QStringLiteral("/bin/grep"),
                                        {QStringLiteral("-E"), QStringLiteral("SigBlk|SigIgn"),
                                         QStringLiteral("/proc/self/status")},
                                        Input::Inherited);
    auto descriptors = launcher->launch(QStringLiteral("/bin/ls"),
                                        {QStringLiteral("/proc/self/fd")}, Input::Inherited);
    ::close(leaked);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    ASSERT_TRUE(signalState && descriptors);
    ASSERT_TRUE(endOf(**signalState) && endOf(**descriptors));
    const QList<QByteArray> lines = (*signalState)->readOutput().split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], "SigBlk:\t0000000000000000");
    // Signals 32 and 33 belong to the C library, which lets nobody change them.
    EXPECT_EQ(lines[1].split('\t').last().toULongLong(nullptr, 16) & ~0x180000000ULL, 0U);
    // The last one is the folder that ls itself reads.
    EXPECT_EQ((*descriptors)->readOutput().toStdString(), "0\n1\n2\n3\n");
}

TEST_F(ChildProcessTest, AHandlerThatIsSetLateIsCalledOnceInALaterTurn) {
    const auto child = start(QStringLiteral("exit 0"));
    ASSERT_TRUE(waitUntil([&] { return !child->isRunning(); }));
    QCoreApplication::processEvents();
    int calls = 0;
    child->setTerminationHandler([&](ChildProcess::End) { ++calls; });
    EXPECT_EQ(calls, 0);
    ASSERT_TRUE(waitUntil([&] { return calls > 0; }));
    child->terminate();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
}

TEST_F(ChildProcessTest, ManyChildrenLeaveNoDescriptorAndNoZombie) {
    const auto before = openDescriptors();
    for (int round = 0; round < 50; ++round) {
        const auto child = start(QStringLiteral("echo x"), Input::Piped);
        child->writeInput("y");
        ASSERT_TRUE(endOf(*child));
        EXPECT_EQ(child->readOutput(), "x\n");
    }
    // Dropped while they run, from this thread and from another.
    for (int round = 0; round < 10; ++round) {
        auto child = start(QStringLiteral("sleep 0.05"), Input::Piped);
        child->setTerminationHandler(
            [](ChildProcess::End) { FAIL() << "told of a dropped child"; });
        if (round % 2)
            std::thread([dropped = std::move(child)] {}).join();
    }
    EXPECT_TRUE(waitUntil([] { return !hasChildren(); }));
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() == before; }))
        << openDescriptors() << " instead of " << before;
}

} // namespace
} // namespace harbrix
