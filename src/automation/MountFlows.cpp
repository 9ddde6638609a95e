#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "mount/MountOperations.h"
#include "mount/MountPoint.h"
#include "services/LogManager.h"
#include "services/MountNotifier.h"

#include <algorithm>

namespace harbrix {

Task<void> AutoMountStrategy::performMount(NASConfig config) {
    m_appState.updateStatus(config.id, MountState::Kind::mounting);
    auto attempt =
        config.protocol == NASProtocol::smb ? m_engine.mountSMB(config) : m_engine.mountNFS(config);
    const auto mountPoint = co_await attempt;
    if (!m_store.config(config.id)) {
        if (mountPoint) {
            auto unmounting = unmountDeleted(*mountPoint);
            co_await unmounting;
        }
        co_return;
    }
    if (mountPoint) {
        m_retryCounts[config.id] = 0;
        disarmRetry(config.id);
        m_appState.updateStatus(config.id, MountState::Kind::mounted, *mountPoint);
        m_notifier.notifyMountSuccess(config.name);
    } else {
        m_appState.updateStatus(config.id, MountState::failed(mountPoint.error()));
        m_notifier.notifyMountFailure(config.name, mountPoint.error());
        scheduleRetry(config.id);
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
    if (!m_store.config(config.id))
        co_return;
    if (unmounted) {
        m_appState.updateStatus(config.id, MountState::Kind::idle);
        m_notifier.notifyUnmount(config.name);
    } else {
        m_appState.updateStatus(config.id, MountState::failed(unmounted.error()));
    }
}

Task<void> AutoMountStrategy::unmountDeleted(QUrl mountPoint) {
    const QString path = directoryPath(mountPoint);
    const bool isOfAnother = std::ranges::any_of(m_store.configs(), [&](const NASConfig& other) {
        return m_engine.resolveMountPoint(other) == path;
    });
    if (isOfAnother)
        co_return;
    auto attempt = m_engine.unmount(mountPoint, UnmountMode::Plain);
    const auto unmounted = co_await attempt;
    if (!unmounted)
        log(LogLevel::warning,
            QStringLiteral("A share that was removed while it was being mounted stays mounted at "
                           "%1: %2")
                .arg(path, unmounted.error().errorDescription()),
            LogCategory::mount);
}

Task<void> AutoMountStrategy::mount(QUuid id) {
    const auto config = m_store.config(id);
    if (!config)
        co_return;
    m_mountedByHand.insert(id);
    auto flow = performMount(*config);
    co_await flow;
}

Task<void> AutoMountStrategy::mountSaved(QUuid id) {
    const auto config = m_store.config(id);
    if (!config || !config->isEnabled)
        co_return;
    auto flow = performMount(*config);
    co_await flow;
}

Task<void> AutoMountStrategy::retryCorrected(QUuid id) {
    const auto config = m_store.config(id);
    const auto status = m_appState.status(id);
    if (!config || !status || !status->mountState.error() ||
        (!config->isEnabled && !m_mountedByHand.contains(id)))
        co_return;
    auto flow = performMount(*config);
    co_await flow;
}

Task<void> AutoMountStrategy::unmount(QUuid id) {
    cancelRetry(id);
    m_mountedByHand.erase(id);
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
    m_mountedByHand.erase(config.id);
    auto flow = performUnmount(config);
    co_await flow;
}

void AutoMountStrategy::scheduleDelayedMount(const QUuid& id) {
    cancelRetry(id);
    m_retryCounts[id] = 0;
    // Neither the network nor the state is looked at again when the delay is over. The record may
    // have been edited meanwhile.
    const auto mountStored = [this, id] {
        if (const auto config = m_store.config(id))
            launch(performMount(*config));
    };
    later(nasWakeDelay, mountStored, id);
    emit pendingChanged();
}

void AutoMountStrategy::cancelDelayedMounts(const QUuid& id) {
    m_pending.remove_if([&](const Pending& pending) { return pending.share == id; });
    emit pendingChanged();
}

} // namespace harbrix
