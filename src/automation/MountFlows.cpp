#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "mount/MountOperations.h"
#include "services/MountNotifier.h"

namespace harbrix {

Task<void> AutoMountStrategy::performMount(NASConfig config) {
    m_appState.updateStatus(config.id, MountState::Kind::mounting);
    auto attempt =
        config.protocol == NASProtocol::smb ? m_engine.mountSMB(config) : m_engine.mountNFS(config);
    const auto mountPoint = co_await attempt;
    if (mountPoint) {
        m_retryCounts[config.id] = 0;
        m_appState.updateStatus(config.id, MountState::Kind::mounted, *mountPoint);
        m_notifier.notifyMountSuccess(config.name);
    } else {
        m_appState.updateStatus(config.id, MountState::failed(mountPoint.error()));
        m_notifier.notifyMountFailure(config.name, mountPoint.error());
        scheduleRetry(config);
    }
}

Task<void> AutoMountStrategy::performUnmount(NASConfig config) {
    const auto status = m_appState.status(config.id);
    if (!status || !status->mountPoint) {
        m_appState.updateStatus(config.id, MountState::Kind::idle);
        co_return;
    }
    auto attempt = m_engine.unmount(*status->mountPoint, UnmountMode::Plain);
    const auto unmounted = co_await attempt;
    if (unmounted) {
        m_appState.updateStatus(config.id, MountState::Kind::idle);
        m_notifier.notifyUnmount(config.name);
    } else {
        m_appState.updateStatus(config.id, MountState::failed(unmounted.error()));
    }
}

Task<void> AutoMountStrategy::mount(QUuid id) {
    const auto config = m_store.config(id);
    if (!config)
        co_return;
    auto flow = performMount(*config);
    co_await flow;
}

Task<void> AutoMountStrategy::unmount(QUuid id) {
    cancelRetry(id);
    const auto config = m_store.config(id);
    if (!config)
        co_return;
    auto flow = performUnmount(*config);
    co_await flow;
}

Task<void> AutoMountStrategy::mountAll() {
    std::vector<Task<void>> flows;
    for (const NASConfig& config : m_store.enabledConfigs())
        if (m_network.matchesBinding(config))
            flows.push_back(performMount(config));
    auto all = whenAll(std::move(flows));
    co_await all;
}

Task<void> AutoMountStrategy::unmountAll() {
    std::vector<Task<void>> flows;
    for (const NASConfig& config : m_store.enabledConfigs())
        flows.push_back(unmountAfterCancel(config));
    auto all = whenAll(std::move(flows));
    co_await all;
}

Task<void> AutoMountStrategy::unmountAfterCancel(NASConfig config) {
    cancelRetry(config.id);
    auto flow = performUnmount(config);
    co_await flow;
}

void AutoMountStrategy::scheduleDelayedMount(const NASConfig& config) {
    cancelRetry(config.id);
    m_retryCounts[config.id] = 0;
    // Nothing is looked at again when the delay is over: neither the network nor the state.
    later(
        nasWakeDelay, [this, config] { launch(performMount(config)); }, config.id);
    emit pendingChanged();
}

} // namespace harbrix
