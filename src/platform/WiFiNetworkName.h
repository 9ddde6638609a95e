#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace harbrix {

class BusAddress;

/// The name of the Wi-Fi network that this machine has joined.
class WiFiNetworkName {
public:
    WiFiNetworkName() = default;
    WiFiNetworkName(const WiFiNetworkName&) = delete;
    WiFiNetworkName& operator=(const WiFiNetworkName&) = delete;
    virtual ~WiFiNetworkName() = default;

    /// The SSID, or nothing without Wi-Fi. A name that is not UTF-8 is read as Latin-1. Any thread;
    /// blocks for two seconds at most, so the main thread asks through onWorker().
    [[nodiscard]] virtual std::optional<QString> current() = 0;

    /// NetworkManager on the system bus; what it does not know is asked of the kernel (nl80211).
    [[nodiscard]] static std::unique_ptr<WiFiNetworkName> create(const BusAddress& systemBus);
};

} // namespace harbrix
