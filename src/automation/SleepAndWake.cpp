#include "automation/AutoMountStrategy.h"
#include "platform/SleepMonitor.h"

namespace harbrix {

void AutoMountStrategy::observeSleep() {
    connect(&m_sleepMonitor, &SleepMonitor::willSleep, this, &AutoMountStrategy::handleSystemSleep);
    connect(&m_sleepMonitor, &SleepMonitor::didWake, this, &AutoMountStrategy::handleSystemWake);
}

void AutoMountStrategy::handleSystemSleep() {
    cancelAllRetries();
    m_healthCheck.cancel();
}

void AutoMountStrategy::handleSystemWake() {
    startHealthCheckTimer();
    later(wakeDelay, [this] { startDebounce(); });
}

} // namespace harbrix
