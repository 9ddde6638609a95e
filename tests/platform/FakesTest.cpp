#include "base/ManualScheduler.h"
#include "fakes/FakeMachineEvents.h"
#include "fakes/InMemorySecretStore.h"
#include "fakes/ScriptedFileSystem.h"
#include "fakes/ScriptedProcessLauncher.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

using namespace std::chrono_literals;

// Other rooms lean on the fakes behaving like the machine; these are the habits they lean on.

TEST(ScriptedProcessLauncherTest, TellsTheEndInALaterTurn) {
    ManualScheduler scheduler;
    ScriptedProcessLauncher launcher(scheduler);
    launcher.onLaunch = [](ScriptedChild& child) { child.exit(3, "out", "err"); };
    auto child = launcher.launch(QStringLiteral("/bin/x"), {QStringLiteral("-v")},
                                 ProcessLauncher::Input::Inherited);
    ASSERT_TRUE(child);
    std::optional<ChildProcess::End> end;
    (*child)->setTerminationHandler([&](ChildProcess::End how) { end = how; });
    EXPECT_FALSE(end);
    scheduler.settle();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 3);
    EXPECT_EQ((*child)->readOutput(), "out");
    EXPECT_EQ(launcher.commandLines(), QStringList(QStringLiteral("/bin/x -v")));
}

TEST(ScriptedProcessLauncherTest, TerminateEndsAChildOnlyIfItHeeds) {
    ManualScheduler scheduler;
    ScriptedProcessLauncher launcher(scheduler);
    auto child = launcher.launch(QStringLiteral("/bin/x"), {}, ProcessLauncher::Input::Inherited);
    launcher.latest().heedsTermination = false;
    launcher.latest().exitAfter(5s, 0);
    (*child)->terminate();
    EXPECT_TRUE((*child)->isRunning());
    scheduler.advance(5s);
    EXPECT_FALSE((*child)->isRunning());
    child->reset();
    EXPECT_TRUE(launcher.latest().isDropped());
}

TEST(ScriptedFileSystemTest, RemovesNothingButEmptyDirectories) {
    ScriptedFileSystem files;
    files.addFile(QStringLiteral("/a/b/file"));
    files.mount(QStringLiteral("/a/m"), QStringLiteral("smbfs"));
    const auto remove = [&](const char* path) {
        const auto done = files.removeEmptyDirectory(QString::fromLatin1(path));
        return done ? 0 : done.error().code;
    };
    EXPECT_EQ(remove("/a/b"), ENOTEMPTY);
    EXPECT_EQ(remove("/a/b/file"), ENOTDIR);
    EXPECT_EQ(remove("/a/m"), EBUSY);
    files.unmount(QStringLiteral("/a/m"));
    EXPECT_EQ(remove("/a/m"), 0);
    EXPECT_EQ(remove("/a/m"), ENOENT);
}

TEST(ScriptedFileSystemTest, ADeadMountHasNoTypeButStaysInTheTable) {
    ScriptedFileSystem files;
    files.mount(QStringLiteral("/m"), QStringLiteral("smbfs"));
    EXPECT_EQ(files.typeName(QStringLiteral("/m")), QStringLiteral("smbfs"));
    files.killMount(QStringLiteral("/m"));
    EXPECT_FALSE(files.typeName(QStringLiteral("/m")));
    EXPECT_EQ(files.kindOf(QStringLiteral("/m")), FileSystem::Kind::Missing);
    EXPECT_EQ(files.mountTable().size(), 1U);
}

} // namespace
} // namespace harbrix
