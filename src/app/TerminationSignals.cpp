#include "app/TerminationSignals.h"

#include <sys/eventfd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace harbrix {
namespace {

constexpr std::array endingSignals{SIGTERM, SIGINT, SIGHUP};
std::atomic<int> eventDescriptor = -1;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler reads it");

void onSignal(int) {
    const int interrupted = errno;
    [[maybe_unused]] const int written = ::eventfd_write(eventDescriptor, 1);
    errno = interrupted;
}

void handle(int signal) {
    struct sigaction present {};
    ::sigaction(signal, nullptr, &present);
    if (present.sa_handler == SIG_IGN)
        return;
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> callback)
    : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    eventDescriptor = m_event.get();
    m_notifier = std::make_unique<QSocketNotifier>(m_event.get(), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated,
                     [event = m_event.get(), callback = std::move(callback)] {
                         eventfd_t count = 0;
                         ::eventfd_read(event, &count);
                         callback();
                     });
    for (const int signal : endingSignals)
        handle(signal);
}

TerminationSignals::~TerminationSignals() {
    // From here on a signal has nobody to tell; the process is ending anyway.
    for (const int signal : endingSignals) {
        struct sigaction present {};
        ::sigaction(signal, nullptr, &present);
        if (present.sa_handler == onSignal)
            ::signal(signal, SIG_IGN);
    }
    eventDescriptor = -1;
}

} // namespace harbrix
