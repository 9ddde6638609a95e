#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace harbrix {

/// Tells whether this machine has a usable network path. Main thread only.
class NetworkPathMonitor : public QObject {
    Q_OBJECT

public:
    /// Begins to report; a second call does nothing.
    virtual void start() = 0;

    /// rtnetlink(7). A path is satisfied when an interface that is up and running, and not
    /// loopback, has a global-scope address and a route of that family in the main table.
    [[nodiscard]] static std::unique_ptr<NetworkPathMonitor> create();

signals:
    /// Once in the first turn of the event loop after start(), and then after every change of the
    /// path (a link, an address or a route), also where the verdict stays the same.
    void pathChanged(bool satisfied);
};

/// An entry of getifaddrs(3).
struct InterfaceAddress {
    QString name;
    unsigned flags = 0;             ///< IFF_UP and the like, netdevice(7)
    int family = 0;                 ///< AF_INET and the like; AF_UNSPEC without an address
    std::optional<QString> address; ///< numeric; nothing where it cannot be rendered
    std::optional<quint32> netmask; ///< IPv4 only, in host byte order

    bool operator==(const InterfaceAddress&) const = default;
};

/// The addresses of this machine in the system's order; empty where they cannot be listed. Any
/// thread.
[[nodiscard]] std::vector<InterfaceAddress> currentInterfaceAddresses();

} // namespace harbrix
