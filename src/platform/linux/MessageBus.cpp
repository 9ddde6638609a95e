#include "platform/MessageBus.h"

#include <algorithm>
#include <atomic>

namespace harbrix {

using namespace std::chrono_literals;

namespace {

constexpr Seconds firstRetryDelay = 1s;
constexpr Seconds longestRetryDelay = 30s;

} // namespace

QDBusConnection BusAddress::connect() const {
    static std::atomic<unsigned> count = 0;
    const QString name = QStringLiteral("harbrix-%1").arg(++count);
    return m_address.isEmpty() ? QDBusConnection::connectToBus(m_type, name)
                               : QDBusConnection::connectToBus(m_address, name);
}

MessageBus::MessageBus(BusAddress address, Scheduler& scheduler)
    : m_address(std::move(address)), m_scheduler(scheduler), m_connection(QString()),
      m_retryDelay(firstRetryDelay) {
    tryToConnect();
}

MessageBus::~MessageBus() {
    drop();
}

bool MessageBus::ensureConnected() {
    if (!m_connection.isConnected())
        tryToConnect();
    return m_connection.isConnected();
}

void MessageBus::tryToConnect() {
    drop();
    m_connection = m_address.connect();
    if (!m_connection.isConnected()) {
        m_retry = m_scheduler.after(m_retryDelay, [this] { tryToConnect(); });
        m_retryDelay = std::min(m_retryDelay * 2, longestRetryDelay);
        return;
    }
    m_retry.cancel();
    m_retryDelay = firstRetryDelay;
    // libdbus makes this signal up when the socket closes; it comes from no bus name.
    m_connection.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                         QStringLiteral("org.freedesktop.DBus.Local"),
                         QStringLiteral("Disconnected"), this, SLOT(onDisconnected()));
    emit connected();
}

void MessageBus::onDisconnected() {
    // The word of an old connection may arrive after a new one was made.
    if (m_connection.isConnected())
        return;
    emit lost();
    m_retry = m_scheduler.after(m_retryDelay, [this] { tryToConnect(); });
}

void MessageBus::drop() {
    if (!m_connection.name().isEmpty())
        QDBusConnection::disconnectFromBus(m_connection.name());
}

} // namespace harbrix
