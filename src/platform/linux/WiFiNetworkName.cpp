#include "platform/WiFiNetworkName.h"

#include "platform/linux/JoinedWiFi.h"
#include "platform/linux/SharedBusConnection.h"

namespace harbrix {

using namespace std::chrono_literals;

namespace {

constexpr auto networkManagerLimit = 1s;

class JoinedWiFiName final : public WiFiNetworkName {
public:
    explicit JoinedWiFiName(const BusAddress& systemBus) : m_bus(systemBus) {}

    [[nodiscard]] std::optional<QString> current() override {
        auto name = networkManagerSsid(m_bus.get(), networkManagerLimit);
        return name ? name : kernelSsid();
    }

private:
    SharedBusConnection m_bus;
};

} // namespace

std::unique_ptr<WiFiNetworkName> WiFiNetworkName::create(const BusAddress& systemBus) {
    return std::make_unique<JoinedWiFiName>(systemBus);
}

} // namespace harbrix
