#include "services/NotificationPreferences.h"

#include "platform/UserDefaults.h"
#include "services/Text.h"

#include <array>

namespace harbrix {
namespace {

struct EventRow {
    NotificationEvent event;
    const char* rawValue;
    bool isOnByDefault;
    TextKey displayName;
};

constexpr std::array<EventRow, 7> eventRows{{
    {NotificationEvent::mountSuccess, "mountSuccess", true, "notification.event.mountSuccess"},
    {NotificationEvent::mountFailure, "mountFailure", true, "notification.event.mountFailure"},
    {NotificationEvent::unmount, "unmount", false, "notification.event.unmount"},
    {NotificationEvent::networkChange, "networkChange", true, "notification.event.networkChange"},
    {NotificationEvent::transferComplete, "transferComplete", true,
     "notification.event.transferComplete"},
    {NotificationEvent::transferFailed, "transferFailed", true,
     "notification.event.transferFailed"},
    {NotificationEvent::cacheCleanup, "cacheCleanup", false, "notification.event.cacheCleanup"},
}};

const EventRow& rowOf(NotificationEvent event) {
    return eventRows.at(static_cast<std::size_t>(event));
}

QString keyOf(NotificationEvent event) {
    return QLatin1String(NotificationPreferences::eventPrefix) + rawValue(event);
}

} // namespace

const std::vector<NotificationEvent>& allNotificationEvents() {
    static const std::vector<NotificationEvent> all = [] {
        std::vector<NotificationEvent> events;
        for (const EventRow& row : eventRows)
            events.push_back(row.event);
        return events;
    }();
    return all;
}

QString rawValue(NotificationEvent event) {
    return QString::fromLatin1(rowOf(event).rawValue);
}

QString displayName(NotificationEvent event) {
    return text(rowOf(event).displayName);
}

NotificationPreferences::NotificationPreferences(UserDefaults& defaults)
    : m_defaults(defaults),
      m_globalEnabled(defaults.boolean(QLatin1String(globalKey)).value_or(true)) {
    for (const NotificationEvent event : allNotificationEvents())
        if (const auto stored = defaults.boolean(keyOf(event)))
            m_eventStates.insert(event, *stored);
}

void NotificationPreferences::setGlobalEnabled(bool enabled) {
    m_globalEnabled = enabled;
    m_defaults.set(QLatin1String(globalKey), enabled);
    emit changed();
}

bool NotificationPreferences::eventState(NotificationEvent event) const {
    return m_eventStates.value(event, rowOf(event).isOnByDefault);
}

bool NotificationPreferences::isEnabled(NotificationEvent event) const {
    return m_globalEnabled && eventState(event);
}

void NotificationPreferences::setEnabled(bool enabled, NotificationEvent event) {
    m_eventStates.insert(event, enabled);
    m_defaults.set(keyOf(event), enabled);
    emit changed();
}

void NotificationPreferences::resetToDefaults() {
    m_eventStates.clear();
    for (const NotificationEvent event : allNotificationEvents())
        m_defaults.remove(keyOf(event));
    emit changed();
}

} // namespace harbrix
