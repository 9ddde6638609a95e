#include "common/Daemon.h"

#include "common/CommandLine.h"
#include "common/MountClaim.h"
#include "common/PasswordPrompt.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

namespace harbrix {
namespace {

struct Ended {
    int code;
    std::string said;
};

std::string readToEnd(int fd) {
    std::string text;
    std::array<char, 256> buffer;
    for (ssize_t count = 0; (count = ::read(fd, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return text;
}

// Runs a tool's main function in a process of its own, and returns when its output is at its end.
Ended runTool(const std::function<void()>& tool) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], STDERR_FILENO);
        ::dup2(ends[1], STDOUT_FILENO);
        tool();
        ::_exit(99);
    }
    ::close(ends[1]);
    const std::string said = readToEnd(ends[0]);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, said};
}

TEST(Daemon, TheCallerHearsHowItWent) {
    const Ended failed = runTool([] {
        Daemon daemon = Daemon::detach("tool");
        daemon.fail("no such share", ExitCode::usage);
    });
    EXPECT_EQ(failed.code, ExitCode::usage);
    EXPECT_EQ(failed.said, "tool: no such share\n");
    const Ended crashed = runTool([] {
        const Daemon daemon = Daemon::detach("tool");
        ::raise(SIGKILL);
    });
    EXPECT_EQ(crashed.code, ExitCode::failure);
    EXPECT_EQ(crashed.said, "tool: ended by signal 9\n");
}

TEST(Daemon, ALiveOneHoldsNothingOfTheCaller) {
    char path[] = "/tmp/harbrix-daemon-XXXXXX";
    ::close(::mkstemp(path));
    const Ended ended = runTool([&] {
        const int kept = ::dup(STDERR_FILENO);
        Daemon daemon = Daemon::detach("tool");
        std::ofstream(path) << ::getpid() << ' ' << ::getsid(0) << ' ' << ::fcntl(kept, F_GETFD);
        (void) daemon.ready();
        ::pause();
    });
    // The output is at its end, and yet the daemon lives.
    EXPECT_EQ(ended.code, ExitCode::success);
    EXPECT_EQ(ended.said, "");
    pid_t process = -1;
    pid_t session = -1;
    int foreignDescriptor = 0;
    std::ifstream(path) >> process >> session >> foreignDescriptor;
    ASSERT_GT(process, 0);
    EXPECT_EQ(::kill(process, SIGKILL), 0);
    EXPECT_EQ(session, process);
    EXPECT_EQ(foreignDescriptor, -1);
    ::unlink(path);
}

TEST(MountClaim, NamesALiveHolderOnly) {
    char folder[] = "/tmp/harbrix-claim-XXXXXX";
    ASSERT_TRUE(::mkdtemp(folder));
    ::setenv("XDG_RUNTIME_DIR", folder, 1);
    MountEntry entry;
    entry.deviceMinor = 4'000'000 + static_cast<unsigned>(::getpid());
    EXPECT_FALSE(MountClaim::holder(entry));
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const MountClaim claim = MountClaim::take(entry);
        (void) !::write(ready[1], "x", 1);
        ::pause();
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_EQ(MountClaim::holder(entry), child);
    MountEntry other = entry;
    other.deviceMinor += 1;
    EXPECT_FALSE(MountClaim::holder(other));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_FALSE(MountClaim::holder(entry));
    const MountClaim again = MountClaim::take(entry);
}

TEST(PasswordPrompt, AsksOnTheTerminalWithoutEcho) {
    int master = -1;
    const pid_t child = ::forkpty(&master, nullptr, nullptr, nullptr);
    ASSERT_GE(child, 0);
    if (child == 0) {
        const auto secret = readPassword("Password for nas: ");
        ::_exit(secret && secret->view() == "se cret\303\244" ? 0 : 1);
    }
    std::string seen;
    char byte = 0;
    while (!seen.ends_with("Password for nas: ") && ::read(master, &byte, 1) == 1)
        seen += byte;
    constexpr std::string_view answer = "se cret\303\244\r";
    ASSERT_EQ(::write(master, answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
    // A terminal's reading end fails with EIO when the last writer has gone.
    seen += readToEnd(master);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(seen.find("cret"), std::string::npos) << seen;
    ::close(master);
}

TEST(PasswordPrompt, ReadsALineFromAPipe) {
    struct Case {
        std::string input;
        int expected;
    };
    const Case cases[] = {{"pw\nrest", 2},
                          {"pw", 2},
                          {"\n", 0},
                          {"", -1},
                          {std::string(Secret::capacity, 'x') + "\n", Secret::capacity},
                          {std::string(Secret::capacity + 1, 'x') + "\n", -1}};
    for (const Case& c : cases) {
        const Ended ended = runTool([&] {
            int ends[2];
            (void) !::pipe(ends);
            (void) !::write(ends[1], c.input.data(), c.input.size());
            ::close(ends[1]);
            ::dup2(ends[0], STDIN_FILENO);
            const auto secret = readPassword("? ");
            const int size = secret ? static_cast<int>(secret->view().size()) : -1;
            ::_exit(size == c.expected ? 0 : 1);
        });
        EXPECT_EQ(ended.code, 0) << c.input.size();
    }
}

TEST(Secret, IsWipedAndMoves) {
    Secret secret;
    for (char c : std::string_view("word"))
        ASSERT_TRUE(secret.append(c));
    const char* where = secret.view().data();
    Secret moved = std::move(secret);
    EXPECT_EQ(moved.view(), "word");
    moved.clear();
    EXPECT_EQ(std::string_view(where, 4), std::string_view("\0\0\0\0", 4));
    EXPECT_TRUE(moved.isEmpty());
}

} // namespace
} // namespace harbrix
