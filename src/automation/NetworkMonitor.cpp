#include "automation/NetworkMonitor.h"

#include "base/Scheduler.h"
#include "base/Worker.h"
#include "platform/WiFiNetworkName.h"

#include <QPointer>

#include <net/if.h>
#include <sys/socket.h>

#include <algorithm>
#include <bit>

namespace harbrix {

namespace {

Task<std::optional<QString>> askForName(WiFiNetworkName* wifi) {
    auto call = onWorker([wifi] { return wifi->current(); });
    co_return co_await call;
}

bool qualifies(const InterfaceAddress& entry) {
    return (entry.flags & (IFF_UP | IFF_LOOPBACK)) == IFF_UP && entry.family == AF_INET &&
           entry.address && entry.netmask;
}

} // namespace

NetworkSources NetworkSources::ofThisMachine(WiFiNetworkName& wifi) {
    return {currentInterfaceAddresses, [wifi = &wifi] { return askForName(wifi); }};
}

NetworkMonitor::Addresses networkAddresses(const std::vector<InterfaceAddress>& interfaces) {
    const auto entry = std::ranges::find_if(interfaces, qualifies);
    if (entry == interfaces.end())
        return {};
    const auto address = parseIPv4(*entry->address);
    if (!address)
        return {};
    // A mask with holes counts up to its first hole.
    const int prefix = std::countl_one(*entry->netmask);
    return {*entry->address,
            formatIPv4(*address & *entry->netmask) + u'/' + QString::number(prefix)};
}

NetworkMonitor::NetworkMonitor(NetworkPathMonitor& path, NetworkSources sources,
                               Scheduler& scheduler)
    : m_path(path), m_sources(std::move(sources)), m_scheduler(scheduler) {}

void NetworkMonitor::start() {
    if (std::exchange(m_started, true))
        return;
    connect(&m_path, &NetworkPathMonitor::pathChanged, this, [this](bool satisfied) {
        m_scheduler.post([self = QPointer(this), satisfied] {
            if (self)
                self->handlePath(satisfied);
        });
    });
    m_path.start();
}

void NetworkMonitor::handlePath(bool satisfied) {
    m_pathIsSatisfied = satisfied;
    if (!satisfied) {
        assign(false, std::nullopt, std::nullopt);
    } else if (m_flows.running() > 0) {
        m_hasNewerPath = true;
    } else {
        m_flows.launch(assignConnected());
    }
}

Task<void> NetworkMonitor::assignConnected() {
    // The name is asked for first, as that may take a while: nobody is to judge a new address by
    // the name of the former network.
    do {
        m_hasNewerPath = false;
        auto ask = m_sources.wifiNetworkName();
        const auto name = co_await ask;
        if (m_pathIsSatisfied)
            assign(true, currentNetworkAddresses().address, name);
    } while (m_pathIsSatisfied && m_hasNewerPath);
}

void NetworkMonitor::assign(bool connected, std::optional<QString> address,
                            std::optional<QString> name) {
    m_isConnected = connected;
    emit isConnectedAssigned();
    m_currentIPAddress = std::move(address);
    emit currentIPAddressAssigned();
    m_currentSSID = std::move(name);
    emit currentSSIDAssigned();
}

NetworkMonitor::Addresses NetworkMonitor::currentNetworkAddresses() const {
    return networkAddresses(m_sources.interfaceAddresses());
}

NetworkMatchResult NetworkMonitor::evaluateBinding(const NASConfig& config) const {
    return harbrix::evaluateBinding(config.networkBinding, m_currentIPAddress, m_currentSSID);
}

bool NetworkMonitor::matchesBinding(const NASConfig& config) const {
    return evaluateBinding(config).matched;
}

} // namespace harbrix
