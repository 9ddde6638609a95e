#pragma once

#include "platform/MessageBus.h"
#include "platform/SleepMonitor.h"

namespace harbrix {

/// org.freedesktop.login1.Manager, see org.freedesktop.login1(5).
class LogindSleepMonitor final : public SleepMonitor {
    Q_OBJECT

public:
    LogindSleepMonitor(const BusAddress& systemBus, Scheduler& scheduler);

private slots:
    void onPrepareForSleep(bool starting);

private:
    void subscribe();

    MessageBus m_bus;
};

} // namespace harbrix
