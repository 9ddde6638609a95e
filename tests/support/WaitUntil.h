#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>

namespace harbrix {

/// Runs the event loop until the condition holds; whether it did within the limit. The condition
/// is looked at after every event, and now and then for what makes no event.
[[nodiscard]] inline bool waitUntil(const std::function<bool()>& condition,
                                    std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    QTimer tick;
    tick.start(std::chrono::milliseconds(5));
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace harbrix
