#include "common/Daemon.h"

#include "common/CommandLine.h"
#include "common/Pipe.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace harbrix {

namespace {

// The child's word: one byte of exit code, then the message until the end of the stream.
bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(fd, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

[[noreturn]] void waitForWord(int fd, pid_t child, std::string_view programName) {
    const std::string word = readToEnd(fd);
    if (!word.empty() && word[0] == ExitCode::success)
        ::_exit(ExitCode::success);
    std::string message = word.empty() ? std::string() : word.substr(1);
    const int code = word.empty() ? ExitCode::failure : static_cast<unsigned char>(word[0]);
    if (word.empty()) {
        int status = 0;
        ::waitpid(child, &status, 0);
        message = WIFSIGNALED(status)
                      ? std::string("ended by signal ") + std::to_string(WTERMSIG(status))
                      : std::string("ended without a word");
    }
    const std::string line = std::string(programName) + ": " + message + "\n";
    (void) writeAll(STDERR_FILENO, line);
    ::_exit(code);
}

void leaveTheCaller() {
    ::setsid();
    // A cast does not quiet the warning of a hardened build; there is no folder to fall back on.
    [[maybe_unused]] const int moved = ::chdir("/");
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (null < 0)
        return;
    for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(null, fd);
    if (null > STDERR_FILENO)
        ::close(null);
}

// Whatever else the caller left open (a pipe of its own, say) must not be held by a process that
// stays.
void closeForeignDescriptors(int keep) {
    if (keep > STDERR_FILENO + 1)
        ::close_range(STDERR_FILENO + 1, static_cast<unsigned>(keep) - 1, 0);
    ::close_range(static_cast<unsigned>(keep) + 1, ~0U, 0);
}

} // namespace

Daemon Daemon::detach(std::string_view programName) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        std::perror("pipe");
        std::exit(ExitCode::failure);
    }
    const pid_t child = ::fork();
    if (child < 0) {
        std::perror("fork");
        std::exit(ExitCode::failure);
    }
    if (child > 0) {
        ::close(ends[1]);
        waitForWord(ends[0], child, programName);
    }
    closeForeignDescriptors(ends[1]);
    std::signal(SIGPIPE, SIG_IGN);
    leaveTheCaller();
    return Daemon(UniqueDescriptor(ends[1]));
}

bool Daemon::ready() {
    const char word = ExitCode::success;
    const bool heard = writeAll(m_wordPipe.get(), std::string_view(&word, 1));
    m_wordPipe.reset();
    return heard;
}

void Daemon::fail(std::string_view message, int exitCode) {
    std::string word(1, static_cast<char>(exitCode));
    word += message;
    (void) writeAll(m_wordPipe.get(), word);
    ::_exit(exitCode);
}

} // namespace harbrix
