#include "automation/AutoMountStrategy.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "mount/MountOperations.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <cmath>

namespace harbrix {

namespace {

/// A period that was edited by hand must neither spin nor overflow.
Seconds keepAliveInterval(const UserDefaults& defaults) {
    const auto stored = defaults.number(AutoMountStrategy::keepAliveIntervalKey);
    if (!stored || std::isnan(*stored))
        return AutoMountStrategy::defaultKeepAliveInterval;
    return Seconds(std::clamp(*stored, 1.0, 86400.0));
}

} // namespace

void AutoMountStrategy::startHealthCheckTimer() {
    if (!m_defaults.boolean(keepAliveEnabledKey).value_or(true))
        return;
    m_healthCheck.cancel();
    launch(performHealthCheck());
    m_healthCheck =
        m_scheduler.every(keepAliveInterval(m_defaults), [this] { launch(performHealthCheck()); });
}

bool AutoMountStrategy::believedMounted(const QUuid& id) const {
    const auto status = m_appState.status(id);
    return status && status->mountState.kind() == MountState::Kind::mounted;
}

bool AutoMountStrategy::isStillWanted(const QUuid& id) const {
    const auto config = m_store.config(id);
    return config && config->isEnabled;
}

Task<void> AutoMountStrategy::performHealthCheck() {
    std::vector<NASConfig> mounted;
    for (const NASConfig& config : m_store.enabledConfigs())
        if (believedMounted(config.id))
            mounted.push_back(config);
    for (const NASConfig& config : mounted) {
        auto check = checkVolume(config);
        co_await check;
    }
}

Task<void> AutoMountStrategy::checkVolume(NASConfig config) {
    auto look = m_engine.volumeIsMounted(m_engine.resolveMountPoint(config));
    const bool isMounted = co_await look;
    // A look at a slow share takes a while: the user may have unmounted this one meanwhile.
    if (isMounted || !believedMounted(config.id) || !isStillWanted(config.id))
        co_return;
    m_appState.updateStatus(config.id, MountState::Kind::offline);
    if (mayMount(config))
        scheduleDelayedMount(config.id);
}

} // namespace harbrix
