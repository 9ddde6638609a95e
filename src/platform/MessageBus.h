#pragma once

#include "base/Scheduler.h"

#include <QDBusConnection>
#include <QObject>

namespace harbrix {

/// Which message bus is meant.
class BusAddress {
public:
    /// A bus by its address, as in $DBUS_SESSION_BUS_ADDRESS.
    explicit BusAddress(QString address) : m_address(std::move(address)) {}
    [[nodiscard]] static BusAddress session() { return BusAddress(QDBusConnection::SessionBus); }
    [[nodiscard]] static BusAddress system() { return BusAddress(QDBusConnection::SystemBus); }

    /// Makes a new connection; isConnected() of it tells whether that worked. Its name() is the
    /// handle for QDBusConnection::disconnectFromBus(). Any thread.
    [[nodiscard]] QDBusConnection connect() const;

private:
    explicit BusAddress(QDBusConnection::BusType type) : m_type(type) {}

    QString m_address;
    QDBusConnection::BusType m_type = QDBusConnection::SessionBus;
};

/// A connection of our own to a bus that is made again after the bus was lost, or when it comes
/// late. Main thread only.
class MessageBus : public QObject {
    Q_OBJECT

public:
    MessageBus(BusAddress address, Scheduler& scheduler);
    ~MessageBus() override;

    /// The present connection; not connected while there is no bus.
    [[nodiscard]] const QDBusConnection& connection() const { return m_connection; }
    /// Tries at once, where the next attempt is still some seconds away. Whether there is a
    /// connection now.
    bool ensureConnected();

signals:
    /// A new connection stands; subscriptions of the old one are gone.
    void connected();
    void lost();

private slots:
    void onDisconnected();

private:
    void tryToConnect();
    void drop();

    BusAddress m_address;
    Scheduler& m_scheduler;
    QDBusConnection m_connection;
    Timer m_retry;
    Seconds m_retryDelay;
};

} // namespace harbrix
