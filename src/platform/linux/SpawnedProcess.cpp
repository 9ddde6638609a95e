#include "platform/linux/SpawnedProcess.h"

#include <QCoreApplication>
#include <QThread>

// glibc 2.36 forgets the linkage of this header.
extern "C" {
#include <sys/pidfd.h>
}
#include <poll.h>
#include <pthread.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>

namespace harbrix {

namespace {

/// Keeps a write to a pipe without reader from raising SIGPIPE in this thread.
class SigpipeBlocker {
public:
    SigpipeBlocker() {
        sigset_t pending;
        ::sigemptyset(&m_sigpipe);
        ::sigaddset(&m_sigpipe, SIGPIPE);
        ::sigpending(&pending);
        m_wasPending = ::sigismember(&pending, SIGPIPE) == 1;
        ::pthread_sigmask(SIG_BLOCK, &m_sigpipe, &m_before);
    }
    ~SigpipeBlocker() {
        const timespec atOnce = {};
        if (!m_wasPending)
            ::sigtimedwait(&m_sigpipe, nullptr, &atOnce);
        ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    SigpipeBlocker(const SigpipeBlocker&) = delete;
    SigpipeBlocker& operator=(const SigpipeBlocker&) = delete;

private:
    sigset_t m_sigpipe = {};
    sigset_t m_before = {};
    bool m_wasPending = false;
};

bool isReadable(int descriptor) {
    pollfd query = {descriptor, POLLIN, 0};
    return ::poll(&query, 1, 0) > 0;
}

/// Waits until the pipe takes more; false once the child has ended.
bool waitUntilWritable(int pipe, int pidfd) {
    pollfd query[] = {{pipe, POLLOUT, 0}, {pidfd, POLLIN, 0}};
    while (::poll(query, std::size(query), -1) < 0 && errno == EINTR) {
    }
    // A descendant may hold the pipe open for ever after the child itself has ended.
    return query[1].revents == 0;
}

QByteArray takeRest(UniqueDescriptor& pipe) {
    QByteArray rest;
    char buffer[64 * 1024];
    while (pipe) {
        const ssize_t count = ::read(pipe.get(), buffer, sizeof buffer);
        if (count > 0)
            rest.append(buffer, count);
        else if (count == 0 || errno != EINTR)
            pipe.reset();
    }
    return rest;
}

} // namespace

ChildExit::ChildExit(std::shared_ptr<const UniqueDescriptor> pidfd)
    : m_pidfd(std::move(pidfd)), m_notifier(m_pidfd->get(), QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &ChildExit::reap);
}

bool ChildExit::isRunning() const {
    // The notifier may not have had its turn yet.
    return !m_end && !isReadable(m_pidfd->get());
}

void ChildExit::signalChild(int signal) const {
    // A pidfd never means another process, so a child that has just ended is not a danger.
    if (!m_end)
        ::pidfd_send_signal(m_pidfd->get(), signal, nullptr, 0);
}

void ChildExit::setHandler(std::function<void(ChildProcess::End)> handler) {
    m_handler = std::move(handler);
    if (m_end)
        QMetaObject::invokeMethod(this, &ChildExit::tell, Qt::QueuedConnection);
}

void ChildExit::abandon() {
    if (QThread::currentThread() == thread())
        letGo();
    else
        QMetaObject::invokeMethod(this, &ChildExit::letGo, Qt::QueuedConnection);
}

void ChildExit::letGo() {
    m_handler = nullptr;
    if (m_end)
        deleteLater();
    else
        setParent(QCoreApplication::instance());
}

void ChildExit::reap() {
    siginfo_t info = {};
    const int waited =
        ::waitid(P_PIDFD, static_cast<id_t>(m_pidfd->get()), &info, WEXITED | WNOHANG);
    if (waited == 0 && info.si_pid == 0)
        return;
    m_notifier.setEnabled(false);
    using Reason = ChildProcess::End::Reason;
    // waitid fails only where something else in this process has reaped the child: its end is then
    // known, its status is not.
    const bool exited = waited != 0 || info.si_code == CLD_EXITED;
    m_end = ChildProcess::End{exited ? Reason::Exit : Reason::UncaughtSignal,
                              waited == 0 ? info.si_status : -1};
    m_pidfd.reset();
    if (parent())
        deleteLater();
    else
        tell();
}

void ChildExit::tell() {
    const auto handler = std::exchange(m_handler, nullptr);
    if (handler)
        handler(*m_end);
}

SpawnedProcess::SpawnedProcess(UniqueDescriptor pidfd, Pipes pipes)
    : m_pidfd(std::make_shared<UniqueDescriptor>(std::move(pidfd))), m_pipes(std::move(pipes)),
      m_exit(new ChildExit(m_pidfd)) {}

SpawnedProcess::~SpawnedProcess() {
    m_exit->abandon();
}

bool SpawnedProcess::isRunning() const {
    return m_exit->isRunning();
}

void SpawnedProcess::terminate() {
    m_exit->signalChild(SIGTERM);
}

void SpawnedProcess::setTerminationHandler(std::function<void(End)> handler) {
    m_exit->setHandler(std::move(handler));
}

void SpawnedProcess::writeInput(const QByteArray& data) {
    const SigpipeBlocker blocker;
    for (qsizetype done = 0; done < data.size() && m_pipes.input;) {
        const auto size = static_cast<std::size_t>(data.size() - done);
        const ssize_t count = ::write(m_pipes.input.get(), data.constData() + done, size);
        if (count >= 0)
            done += count;
        else if (errno == EAGAIN && waitUntilWritable(m_pipes.input.get(), m_pidfd->get()))
            continue;
        else if (errno != EINTR)
            break;
    }
    m_pipes.input.reset();
}

QByteArray SpawnedProcess::readOutput() {
    return takeRest(m_pipes.output);
}

QByteArray SpawnedProcess::readError() {
    return takeRest(m_pipes.error);
}

} // namespace harbrix
