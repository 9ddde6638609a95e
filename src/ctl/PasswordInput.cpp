#include "ctl/PasswordInput.h"

#include "base/Result.h"
#include "base/UniqueDescriptor.h"

#include <fcntl.h>
#include <termios.h>

#include <array>
#include <csignal>

namespace harbrix {
namespace {

constexpr qsizetype longestPassword = 64 * 1024;
constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

volatile std::sig_atomic_t caughtSignal = 0;

void noteSignal(int number) {
    caughtSignal = number;
}

/// Reads to the end, or to the end of the first line.
std::expected<QByteArray, QString> readFrom(int descriptor, bool oneLine) {
    QByteArray all;
    std::array<char, 4096> buffer{};
    while (all.size() <= longestPassword && !(oneLine && all.contains('\n'))) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR && !caughtSignal)
            continue;
        if (count < 0)
            return std::unexpected(systemError(errno).description);
        if (count == 0)
            break;
        all.append(buffer.data(), count);
    }
    return all;
}

/// Signals that would end the program are noted instead, so that the echo comes back first.
class HeldSignals {
public:
    HeldSignals() {
        struct sigaction note {};
        note.sa_handler = noteSignal; // without SA_RESTART: the read has to return
        for (std::size_t i = 0; i < endingSignals.size(); ++i)
            ::sigaction(endingSignals[i], &note, &m_before[i]);
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() {
        for (std::size_t i = 0; i < endingSignals.size(); ++i)
            ::sigaction(endingSignals[i], &m_before[i], nullptr);
        if (caughtSignal)
            ::raise(caughtSignal);
    }

private:
    std::array<struct sigaction, endingSignals.size()> m_before{};
};

class SilencedTerminal {
public:
    explicit SilencedTerminal(int descriptor) : m_descriptor(descriptor) {
        ::tcgetattr(m_descriptor, &m_before);
        termios silent = m_before;
        silent.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(m_descriptor, TCSAFLUSH, &silent);
    }
    SilencedTerminal(const SilencedTerminal&) = delete;
    SilencedTerminal& operator=(const SilencedTerminal&) = delete;
    ~SilencedTerminal() { ::tcsetattr(m_descriptor, TCSAFLUSH, &m_before); }

private:
    int m_descriptor;
    termios m_before{};
};

UniqueDescriptor openTerminal() {
    return UniqueDescriptor(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
}

void writeText(int descriptor, const QByteArray& text) {
    [[maybe_unused]] const ssize_t written = ::write(descriptor, text.constData(), text.size());
}

} // namespace

std::expected<QByteArray, QString> checkedPassword(QByteArray read) {
    if (read.endsWith('\n'))
        read.chop(1);
    if (read.endsWith('\r'))
        read.chop(1);
    if (read.isEmpty())
        return std::unexpected(QStringLiteral("the password is empty"));
    if (read.size() > longestPassword)
        return std::unexpected(QStringLiteral("the password is longer than 64 KiB"));
    if (read.contains('\n') || read.contains('\r') || read.contains('\0'))
        return std::unexpected(QStringLiteral("the password holds a line break or a NUL"));
    return read;
}

std::expected<QByteArray, QString> readPasswordFromStandardInput() {
    auto all = readFrom(STDIN_FILENO, false);
    if (!all)
        return all;
    return checkedPassword(std::move(*all));
}

bool hasTerminal() {
    return bool(openTerminal());
}

std::expected<QByteArray, QString> askPasswordOnTerminal(const QString& prompt) {
    const UniqueDescriptor terminal = openTerminal();
    if (!terminal)
        return std::unexpected(QStringLiteral("there is no terminal to ask on"));
    const HeldSignals held;
    const SilencedTerminal silenced(terminal.get()); // before anybody is asked to type
    writeText(terminal.get(), prompt.toUtf8());
    auto line = readFrom(terminal.get(), true);
    writeText(terminal.get(), "\n");
    if (!line)
        return std::unexpected(line.error());
    return checkedPassword(std::move(*line));
}

} // namespace harbrix
