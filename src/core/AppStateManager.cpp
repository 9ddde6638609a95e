#include "core/AppStateManager.h"

namespace harbrix {

AppStateManager::AppStateManager(std::function<QDateTime()> now) : m_now(std::move(now)) {}

std::optional<NASStatus> AppStateManager::status(const QUuid& id) const {
    const auto found = m_nasStatuses.constFind(id);
    if (found == m_nasStatuses.cend())
        return std::nullopt;
    return *found;
}

void AppStateManager::updateStatus(const QUuid& id, const MountState& mountState,
                                   const std::optional<QUrl>& mountPoint) {
    NASStatus& status = m_nasStatuses[id];
    status.configID = id;
    status.mountState = mountState;
    const bool mounted = mountState.kind() == MountState::Kind::mounted;
    status.mountPoint = mounted ? mountPoint : std::nullopt;
    if (mounted)
        status.lastMountedAt = m_now();
    // A later success keeps the last error, so that a mounted share can still tell it.
    if (mountState.error())
        status.lastError = mountState.error();
    publish(id);
}

void AppStateManager::ensureStatus(const QUuid& id) {
    const bool isNew = !m_nasStatuses.contains(id);
    if (isNew)
        m_nasStatuses[id].configID = id;
    publish(isNew ? std::optional(id) : std::nullopt);
}

void AppStateManager::removeStatus(const QUuid& id) {
    m_nasStatuses.remove(id);
    publish();
}

void AppStateManager::resetAllStatuses() {
    for (NASStatus& status : m_nasStatuses) {
        const QUuid id = status.configID;
        status = {};
        status.configID = id;
    }
    publish();
}

void AppStateManager::clear() {
    m_nasStatuses.clear();
    m_appState = {};
    setMenuBarIconState(MenuBarIconState::idle);
    emit changed();
}

void AppStateManager::updateAppState() {
    m_appState = deriveAppState(m_nasStatuses);
    emit changed();
}

void AppStateManager::updateMenuBarIcon() {
    setMenuBarIconState(deriveMenuBarIconState(m_nasStatuses));
    emit changed();
}

void AppStateManager::publish(const std::optional<QUuid>& written) {
    // Both summaries are in step before anyone is told: an observer may read or write at once.
    m_appState = deriveAppState(m_nasStatuses);
    setMenuBarIconState(deriveMenuBarIconState(m_nasStatuses));
    if (written)
        emit statusChanged(*written);
    emit changed();
}

void AppStateManager::setMenuBarIconState(MenuBarIconState state) {
    if (std::exchange(m_menuBarIconState, state) != state)
        emit menuBarIconStateChanged(state);
}

} // namespace harbrix
