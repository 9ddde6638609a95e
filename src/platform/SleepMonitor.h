#pragma once

#include <QObject>

#include <memory>

namespace harbrix {

class BusAddress;
class Scheduler;

/// Tells of the machine's sleep. Main thread only.
class SleepMonitor : public QObject {
    Q_OBJECT

public:
    /// logind's PrepareForSleep signal. A system bus that is not there yet, or goes away, is tried
    /// again until it answers; what happens in between goes unnoticed.
    [[nodiscard]] static std::unique_ptr<SleepMonitor> create(const BusAddress& systemBus,
                                                              Scheduler& scheduler);

signals:
    void willSleep();
    void didWake();
};

} // namespace harbrix
