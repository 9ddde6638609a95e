#include "platform/linux/LogindSleepMonitor.h"

#include "platform/SystemLog.h"

namespace harbrix {

LogindSleepMonitor::LogindSleepMonitor(const BusAddress& systemBus, Scheduler& scheduler)
    : m_bus(systemBus, scheduler) {
    connect(&m_bus, &MessageBus::connected, this, &LogindSleepMonitor::subscribe);
    if (m_bus.connection().isConnected())
        subscribe();
}

void LogindSleepMonitor::subscribe() {
    QDBusConnection connection = m_bus.connection();
    // QtDBus follows the name's owner, so a logind that is started anew is heard too.
    const bool done = connection.connect(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
        SLOT(onPrepareForSleep(bool)));
    if (!done) {
        static const SystemLog logger(QStringLiteral("com.harbrix"), QStringLiteral("System"));
        logger.write(SystemLog::Type::Error, QStringLiteral("No news of sleep from logind"));
    }
}

void LogindSleepMonitor::onPrepareForSleep(bool starting) {
    if (starting)
        emit willSleep();
    else
        emit didWake();
}

std::unique_ptr<SleepMonitor> SleepMonitor::create(const BusAddress& systemBus,
                                                   Scheduler& scheduler) {
    return std::make_unique<LogindSleepMonitor>(systemBus, scheduler);
}

} // namespace harbrix
