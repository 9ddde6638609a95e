#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "mount/MountOperations.h"

namespace harbrix {

void AutoMountStrategy::subscribeToNetwork() {
    // The name of the Wi-Fi network is left out: it is looked at with the next change of the path.
    const auto onAssignment = [this] { dispatch([this] { startDebounce(); }); };
    connect(&m_network, &NetworkMonitor::isConnectedAssigned, this, onAssignment);
    connect(&m_network, &NetworkMonitor::currentIPAddressAssigned, this, onAssignment);
}

void AutoMountStrategy::startDebounce() {
    m_debounce = m_scheduler.after(debounceDelay, [this] { launch(handleNetworkChange()); });
}

bool AutoMountStrategy::mayMount(const NASConfig& config) const {
    return m_network.matchesBinding(config) && m_network.isConnected();
}

Task<void> AutoMountStrategy::handleNetworkChange() {
    const auto configs = m_store.enabledConfigs();
    if (!m_network.isConnected()) {
        cancelAllRetries();
        dispatch([this] { markAllOffline(); });
        co_return;
    }
    for (const NASConfig& config : configs) {
        // A look at a slow share takes a while. Without a network nothing is unmounted; the change
        // that took it away comes to its own debounce.
        if (!m_network.isConnected())
            co_return;
        if (!isStillWanted(config.id))
            continue;
        if (m_network.matchesBinding(config)) {
            auto handling = handleMatchingShare(config);
            co_await handling;
        } else {
            cancelRetry(config.id);
            launch(performUnmount(config));
        }
    }
}

Task<void> AutoMountStrategy::handleMatchingShare(NASConfig config) {
    if (believedMounted(config.id)) {
        auto check = checkVolume(config);
        co_await check;
    } else {
        scheduleDelayedMount(config.id);
    }
}

void AutoMountStrategy::markAllOffline() {
    for (const NASConfig& config : m_store.enabledConfigs())
        m_appState.updateStatus(config.id, MountState::Kind::offline);
}

} // namespace harbrix
