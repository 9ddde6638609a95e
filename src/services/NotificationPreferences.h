#pragma once

#include <QHash>
#include <QObject>
#include <QString>

#include <vector>

namespace harbrix {

class UserDefaults;

/// What the user may be told of. Only the mounts, the unmounts and the finished transfers are told
/// at present; the other kinds are switches without effect.
enum class NotificationEvent {
    mountSuccess,
    mountFailure,
    unmount,
    networkChange,
    transferComplete,
    transferFailed,
    cacheCleanup
};

/// In the order in which the settings list them.
[[nodiscard]] const std::vector<NotificationEvent>& allNotificationEvents();
/// The name that the stored key ends in: "mountSuccess".
[[nodiscard]] QString rawValue(NotificationEvent event);
/// In the language in force. Main thread.
[[nodiscard]] QString displayName(NotificationEvent event);

/// The user's switches for notifications: one for all, and one for each kind of event. Main thread.
class NotificationPreferences : public QObject {
    Q_OBJECT

public:
    static constexpr auto globalKey = "notificationsEnabled";
    static constexpr auto eventPrefix = "notify.";

    explicit NotificationPreferences(UserDefaults& defaults);

    [[nodiscard]] bool globalEnabled() const { return m_globalEnabled; }
    void setGlobalEnabled(bool enabled);

    /// The switch of one event, whatever the global one says; its default where none is stored.
    [[nodiscard]] bool eventState(NotificationEvent event) const;
    /// Whether the user is to be told: the global switch and that of the event.
    [[nodiscard]] bool isEnabled(NotificationEvent event) const;
    void setEnabled(bool enabled, NotificationEvent event);
    /// Forgets the switches of the events; the global one stays.
    void resetToDefaults();

signals:
    void changed();

private:
    UserDefaults& m_defaults;
    bool m_globalEnabled = true;
    QHash<NotificationEvent, bool> m_eventStates; ///< of the events that have a stored value
};

} // namespace harbrix
