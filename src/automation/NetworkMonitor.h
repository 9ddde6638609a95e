#pragma once

#include "automation/NetworkBinding.h"
#include "base/Task.h"
#include "base/TaskScope.h"
#include "platform/NetworkPathMonitor.h"

#include <QObject>

#include <functional>

namespace harbrix {

class Scheduler;
class WiFiNetworkName;

/// What the monitor asks of the machine, beside the path itself.
struct NetworkSources {
    /// Any thread.
    std::function<std::vector<InterfaceAddress>()> interfaceAddresses;
    std::function<Task<std::optional<QString>>()> wifiNetworkName;

    [[nodiscard]] static NetworkSources ofThisMachine(WiFiNetworkName& wifi);
};

/// Whether the machine is online, its IPv4 address and the Wi-Fi network that it is on. Main thread
/// only, but for currentNetworkAddresses().
class NetworkMonitor : public QObject {
    Q_OBJECT

public:
    NetworkMonitor(NetworkPathMonitor& path, NetworkSources sources, Scheduler& scheduler);

    /// A second call does nothing.
    void start();

    [[nodiscard]] bool isConnected() const { return m_isConnected; }
    /// Dotted IPv4.
    [[nodiscard]] const std::optional<QString>& currentIPAddress() const {
        return m_currentIPAddress;
    }
    [[nodiscard]] const std::optional<QString>& currentSSID() const { return m_currentSSID; }

    struct Addresses {
        std::optional<QString> address; ///< dotted IPv4
        std::optional<QString> network; ///< its network, "192.168.1.0/24"

        bool operator==(const Addresses&) const = default;
    };
    /// Of the first interface that is up, is no loopback and has an IPv4 address; both or none. Any
    /// thread.
    [[nodiscard]] Addresses currentNetworkAddresses() const;

    [[nodiscard]] NetworkMatchResult evaluateBinding(const NASConfig& config) const;
    [[nodiscard]] bool matchesBinding(const NASConfig& config) const;

signals:
    // One for each assignment, also of an unchanged value. They come one after another: with the
    // first, the address and the name are still the old ones.
    void isConnectedAssigned();
    void currentIPAddressAssigned();
    void currentSSIDAssigned();

private:
    void handlePath(bool satisfied);
    Task<void> assignConnected();
    void assign(bool connected, std::optional<QString> address, std::optional<QString> name);

    NetworkPathMonitor& m_path;
    NetworkSources m_sources;
    Scheduler& m_scheduler;
    bool m_started = false;
    bool m_isConnected = false;
    std::optional<QString> m_currentIPAddress;
    std::optional<QString> m_currentSSID;
    bool m_pathIsSatisfied = false; ///< as of the latest update, which may not be assigned yet
    bool m_hasNewerPath = false;    ///< updated while the network's name was being asked for
    TaskScope m_flows;
};

/// The address and the network of the first entry that qualifies.
[[nodiscard]] NetworkMonitor::Addresses
networkAddresses(const std::vector<InterfaceAddress>& interfaces);

} // namespace harbrix
