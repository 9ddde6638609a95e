#include "EngineFixture.h"

#include <chrono>
#include <csignal>

namespace harbrix {
namespace {

/// The runner with real children and the real clock.
class ProcessRunnerTest : public EngineTest {
protected:
    using Outcome = Result<MountEngine::ProcessResult>;

    Outcome run(const QString& path, const QStringList& arguments, Seconds timeout = 20s,
                const std::optional<QByteArray>& input = std::nullopt) {
        const auto outcome = finish(runner.executeProcess(path, arguments, timeout, input));
        return outcome ? *outcome : std::unexpected(HarbrixError::unknown("did not end"));
    }
    Outcome shell(const QString& script, Seconds timeout = 20s,
                  const std::optional<QByteArray>& input = std::nullopt) {
        return run("/bin/sh", {"-c", script}, timeout, input);
    }

    RealScheduler clock;
    std::unique_ptr<ProcessLauncher> realLauncher = ProcessLauncher::create();
    MountEngine runner{keychain, store, appState, fileSystem, *realLauncher, clock, "/home/ann"};
};

TEST_F(ProcessRunnerTest, GivesCodeAndBothTexts) {
    const auto outcome = shell("echo out; echo err >&2; exit 3");
    ASSERT_TRUE(outcome.has_value());
    EXPECT_EQ(outcome->exitCode, 3);
    EXPECT_EQ(outcome->stdout_, "out\n");
    EXPECT_EQ(outcome->stderr_, "err\n");
}

TEST_F(ProcessRunnerTest, AToolThatCannotStart) {
    const auto outcome = run("/nonexistent/tool", {});
    ASSERT_FALSE(outcome.has_value());
    EXPECT_EQ(
        outcome.error(),
        HarbrixError::mountFailed("Failed to launch /nonexistent/tool: No such file or directory"));
}

TEST_F(ProcessRunnerTest, AnyDeathBySignalIsATimeOutWithTheWholeSeconds) {
    const auto timedOut = [](const QString& seconds) {
        return HarbrixError::timeout("Process /bin/sh timed out after " + seconds + "s");
    };
    EXPECT_EQ(shell("exec sleep 20", 0.2s).error(), timedOut("0"));
    EXPECT_EQ(shell("exec sleep 20", 0s).error(), timedOut("0"));
    EXPECT_EQ(shell("kill -KILL $$", 2.5s).error(), timedOut("2"));
    EXPECT_EQ(shell("kill -HUP $$", 5s).error(), timedOut("5"));
}

TEST_F(ProcessRunnerTest, InvalidUtf8EmptiesThatStreamOnly) {
    const auto outcome = shell(R"(printf 'good\377'; printf 'fine' >&2)");
    ASSERT_TRUE(outcome.has_value());
    EXPECT_EQ(outcome->stdout_, "");
    EXPECT_EQ(outcome->stderr_, "fine");
}

TEST_F(ProcessRunnerTest, PipesAreReadOnlyAfterTheEnd) {
    EXPECT_EQ(shell("head -c 1000000 /dev/zero; exit 0", 0.3s).error().kind(),
              HarbrixError::Case::timeout);
    // What fits is all there, and a descendant that keeps the pipe does not stall the read.
    const auto begun = std::chrono::steady_clock::now();
    const auto outcome = shell("head -c 60000 /dev/zero | tr '\\0' x; sleep 2 & exit 0");
    EXPECT_EQ(outcome->stdout_.size(), 60000);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 1900ms);
}

TEST_F(ProcessRunnerTest, Input) {
    EXPECT_EQ(shell("cat", 20s, "hello")->stdout_, "hello");
    EXPECT_EQ(shell("cat; echo end", 20s, QByteArray())->stdout_, "end\n");
    // A child that closes its input early, or is gone, ends the write.
    EXPECT_EQ(shell("exec 0<&-; exit 4", 20s, QByteArray(1'000'000, 'x'))->exitCode, 4);
}

TEST_F(ProcessRunnerTest, TheLimitRunsOnlyOnceTheInputIsWritten) {
    const auto outcome = shell("sleep 0.5; wc -c", 0.4s, QByteArray(1'000'000, 'x'));
    ASSERT_TRUE(outcome.has_value()) << outcome.error().payload().toStdString();
    EXPECT_EQ(outcome->stdout_.trimmed(), "1000000");
}

TEST_F(ProcessRunnerTest, ManyAtOnce) {
    std::vector<std::optional<Outcome>> outcomes(20);
    TaskScope scope;
    for (int i = 0; i < 20; ++i)
        scope.launch(keepResult(
            runner.executeProcess("/bin/sh", {"-c", QString("read x; echo $x; exit %1").arg(i)},
                                  20s, QByteArray::number(i) + '\n'),
            &outcomes[i]));
    ASSERT_TRUE(waitUntil([&] { return scope.running() == 0; }));
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ((*outcomes[i])->exitCode, i);
        EXPECT_EQ((*outcomes[i])->stdout_, QString::number(i) + '\n');
    }
}

TEST_F(ProcessRunnerTest, AnAbandonedCallLeavesItsChildAlone) {
    const QString witness = directory.filePath("witness");
    {
        TaskScope scope;
        std::optional<Outcome> outcome;
        scope.launch(
            keepResult(runner.executeProcess("/bin/sh", {"-c", "sleep 0.2; : > \"$0\"", witness},
                                             0.1s, QByteArray(100, 'x')),
                       &outcome));
    }
    EXPECT_TRUE(waitUntil([&] { return QFile::exists(witness); }));
}

} // namespace
} // namespace harbrix
