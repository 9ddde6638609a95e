#pragma once

#include "platform/MessageBus.h"

#include <mutex>

namespace harbrix {

/// A bus connection for blocking calls of any thread, made when it is first needed and again after
/// the bus was lost. Thread-safe; calls of several threads go out side by side.
class SharedBusConnection {
public:
    explicit SharedBusConnection(BusAddress address) : m_address(std::move(address)) {}
    ~SharedBusConnection() { drop(); }
    SharedBusConnection(const SharedBusConnection&) = delete;
    SharedBusConnection& operator=(const SharedBusConnection&) = delete;

    /// A connection that was live a moment ago, or one that says that it is not connected.
    [[nodiscard]] QDBusConnection get() {
        const std::scoped_lock lock(m_mutex);
        if (!m_connection.isConnected()) {
            drop();
            m_connection = m_address.connect();
        }
        return m_connection;
    }

private:
    void drop() const {
        if (!m_connection.name().isEmpty())
            QDBusConnection::disconnectFromBus(m_connection.name());
    }

    BusAddress m_address;
    std::mutex m_mutex;
    QDBusConnection m_connection{QString()};
};

} // namespace harbrix
