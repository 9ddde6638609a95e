#pragma once

#include "core/AppState.h"

#include <QObject>

#include <functional>

namespace harbrix {

/// The one observable place for what the program knows about its shares at this moment. After every
/// operation the two summaries are those derived from the statuses. Main thread only.
class AppStateManager : public QObject {
    Q_OBJECT

public:
    /// `now` gives the time that a mount is stamped with.
    explicit AppStateManager(std::function<QDateTime()> now);

    [[nodiscard]] const AppState& appState() const { return m_appState; }
    [[nodiscard]] const NASStatuses& nasStatuses() const { return m_nasStatuses; }
    [[nodiscard]] MenuBarIconState menuBarIconState() const { return m_menuBarIconState; }
    /// The status of a share; a missing entry reads as none, which views treat like idle.
    [[nodiscard]] std::optional<NASStatus> status(const QUuid& id) const;

    /// The only writer of a mount state. An id without an entry gets one.
    void updateStatus(const QUuid& id, const MountState& mountState,
                      const std::optional<QUrl>& mountPoint = std::nullopt);
    void ensureStatus(const QUuid& id);
    void removeStatus(const QUuid& id);
    void resetAllStatuses();
    void clear();
    void updateAppState();
    void updateMenuBarIcon();

signals:
    /// After an operation, with statuses and summaries in step.
    void changed();
    /// A status was written or made; comes before changed().
    void statusChanged(const QUuid& id);
    void menuBarIconStateChanged(harbrix::MenuBarIconState state);

private:
    /// Derives both summaries anew and tells the observers.
    void publish(const std::optional<QUuid>& written = std::nullopt);
    void setMenuBarIconState(MenuBarIconState state);

    std::function<QDateTime()> m_now;
    AppState m_appState;
    NASStatuses m_nasStatuses;
    MenuBarIconState m_menuBarIconState = MenuBarIconState::idle;
};

} // namespace harbrix
