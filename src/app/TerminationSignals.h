#pragma once

#include "base/UniqueDescriptor.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace harbrix {

/// Turns the signals that ask a process to end (SIGTERM, SIGINT, SIGHUP) into a call on the main
/// thread. SIGHUP is one of them since a program that was started in a terminal ends with it; what
/// was set to be ignored when the process began (nohup(1), a shell's "&") stays ignored.
/// One instance at a time.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> onSignal);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    UniqueDescriptor m_event;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace harbrix
