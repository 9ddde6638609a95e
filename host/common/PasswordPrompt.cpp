#include "common/PasswordPrompt.h"

#include "base/UniqueDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>

namespace harbrix {

namespace {

volatile std::sig_atomic_t caughtSignal = 0;

void rememberSignal(int signal) {
    caughtSignal = signal;
}

// While it lives, the signals that would end the program only interrupt the read, so that the echo
// is restored first; afterwards the signal gets its due.
class SignalsHeldBack {
public:
    SignalsHeldBack() {
        caughtSignal = 0;
        struct sigaction action {};
        action.sa_handler = rememberSignal;
        for (std::size_t i = 0; i < signals.size(); ++i)
            ::sigaction(signals[i], &action, &m_old[i]);
    }
    ~SignalsHeldBack() {
        for (std::size_t i = 0; i < signals.size(); ++i)
            ::sigaction(signals[i], &m_old[i], nullptr);
        if (caughtSignal != 0)
            ::raise(caughtSignal);
    }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};
    std::array<struct sigaction, signals.size()> m_old{};
};

class EchoOff {
public:
    explicit EchoOff(int fd) : m_fd(fd) {
        termios settings{};
        if (::tcgetattr(fd, &settings) != 0)
            return;
        m_old = settings;
        settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        (void) ::tcsetattr(fd, TCSAFLUSH, &settings);
    }
    ~EchoOff() {
        if (m_old)
            (void) ::tcsetattr(m_fd, TCSANOW, &*m_old);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    int m_fd;
    std::optional<termios> m_old;
};

std::expected<Secret, std::string> readLine(int fd) {
    Secret secret;
    for (;;) {
        char c = 0;
        const ssize_t count = ::read(fd, &c, 1);
        if (count < 0 && errno == EINTR && caughtSignal == 0)
            continue;
        if (count < 0)
            return std::unexpected(std::string("the password could not be read"));
        if (count == 0 && secret.isEmpty())
            return std::unexpected(std::string("no password was given"));
        if (count == 0 || c == '\n')
            return secret;
        if (!secret.append(c))
            return std::unexpected(std::string("the password is too long"));
    }
}

bool standardInputCarriesData() {
    struct stat info {};
    return ::fstat(STDIN_FILENO, &info) == 0 &&
           (S_ISFIFO(info.st_mode) || S_ISSOCK(info.st_mode) || S_ISREG(info.st_mode));
}

void say(int fd, const std::string& text) {
    (void) !::write(fd, text.data(), text.size());
}

} // namespace

std::expected<Secret, std::string> readPassword(const std::string& prompt) {
    if (standardInputCarriesData()) {
        say(STDERR_FILENO, prompt);
        return readLine(STDIN_FILENO);
    }
    UniqueDescriptor terminal(::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!terminal && ::isatty(STDIN_FILENO))
        terminal.reset(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3));
    if (!terminal)
        return std::unexpected(std::string("there is no terminal to ask for the password"));
    const SignalsHeldBack signals;
    const EchoOff silence(terminal.get());
    // Only now: whoever answers by program must not have its answer echoed or flushed away.
    say(terminal.get(), prompt);
    auto secret = readLine(terminal.get());
    say(terminal.get(), "\n");
    return secret;
}

} // namespace harbrix
