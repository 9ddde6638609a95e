#include "platform/SystemLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace harbrix {
namespace {

const SystemLog logger(QStringLiteral("com.harbrix"), QStringLiteral("Mount"));

/// Mounts can be kept apart only where "/" is one itself.
bool canHaveAPrivateRun() {
    struct statx root {};
    return ::geteuid() == 0 && ::statx(AT_FDCWD, "/", 0, STATX_MODE, &root) == 0 &&
           (root.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

/// Puts an empty /run in front of this process alone, with a journal socket in it if asked for.
int enterPrivateRun(bool withJournal) {
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, "") != 0 ||
        ::mount("none", "/run", "tmpfs", 0, "") != 0)
        ::_exit(77);
    if (!withJournal)
        return -1;
    sockaddr_un address = {AF_UNIX, "/run/systemd/journal/socket"};
    const int journal = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (::mkdir("/run/systemd", 0755) != 0 || ::mkdir("/run/systemd/journal", 0755) != 0 ||
        ::bind(journal, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        ::_exit(78);
    return journal;
}

[[noreturn]] void printWhatTheJournalGets() {
    const int journal = enterPrivateRun(true);
    logger.write(SystemLog::Type::Error, QStringLiteral("two\nlines 挂"));
    char datagram[4096];
    const ssize_t size = ::recv(journal, datagram, sizeof datagram, MSG_DONTWAIT);
    if (size <= 0 || ::write(STDERR_FILENO, datagram, static_cast<std::size_t>(size)) != size)
        ::_exit(79);
    ::_exit(0);
}

[[noreturn]] void logWithoutJournal() {
    enterPrivateRun(false);
    logger.write(SystemLog::Type::Fault, QStringLiteral("text"));
    ::close(STDERR_FILENO);
    ::_exit(logger.isEnabled(SystemLog::Type::Fault) ? 80 : 0);
}

TEST(SystemLogTest, WritesAllFieldsToTheJournal) {
    if (!canHaveAPrivateRun())
        GTEST_SKIP() << "needs root, outside of a chroot, for a journal socket of its own";
    // A value with a line break is sent with its length, which stands in the way of one pattern.
    EXPECT_EXIT(
        printWhatTheJournalGets(), testing::ExitedWithCode(0),
        testing::AllOf(
            testing::HasSubstr("MESSAGE\n"), testing::HasSubstr("two\nlines 挂\n"),
            testing::HasSubstr("PRIORITY=3\n"), testing::HasSubstr("SYSLOG_IDENTIFIER=harbrix\n"),
            testing::HasSubstr("SUBSYSTEM=com.harbrix\n"), testing::HasSubstr("CATEGORY=Mount\n"),
            testing::HasSubstr("SystemLogTest.cpp\nCODE_LINE="),
            testing::HasSubstr("printWhatTheJournalGets()\n")));
}

TEST(SystemLogTest, WithoutJournalWritesOneLineToStandardError) {
    if (!canHaveAPrivateRun())
        GTEST_SKIP() << "needs root, outside of a chroot, to hide the journal";
    EXPECT_EXIT(logWithoutJournal(), testing::ExitedWithCode(0),
                testing::Eq("com.harbrix [Mount] fault: text\n"));
}

} // namespace
} // namespace harbrix
