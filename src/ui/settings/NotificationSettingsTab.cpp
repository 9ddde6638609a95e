#include "ui/settings/NotificationSettingsTab.h"

#include "services/Text.h"
#include "ui/form/FormControls.h"

#include <QPushButton>

namespace harbrix {
namespace {

constexpr int symbolFrame = 20;

const char* symbolOf(NotificationEvent event) {
    switch (event) {
    case NotificationEvent::mountSuccess:
        return "checkmark.circle";
    case NotificationEvent::mountFailure:
        return "xmark.octagon";
    case NotificationEvent::unmount:
        return "eject";
    case NotificationEvent::networkChange:
        return "wifi";
    case NotificationEvent::transferComplete:
        return "arrow.up.arrow.down.circle";
    case NotificationEvent::transferFailed:
        return "exclamationmark.triangle";
    case NotificationEvent::cacheCleanup:
        return "trash";
    }
    return "bell";
}

} // namespace

NotificationSettingsTab::NotificationSettingsTab(NotificationPreferences& preferences,
                                                 QWidget* parent)
    : SettingsTab(parent), m_preferences(preferences),
      m_global(makeSwitch(NotificationPreferences::globalKey)), m_all(makeSection()),
      m_globalRow(m_all->addRow(m_global)), m_systemHint(m_all->addNote()), m_events(makeSection()),
      m_reset(new QPushButton) {
    for (const NotificationEvent event : allNotificationEvents())
        addEvent(event);
    m_reset->setObjectName(QStringLiteral("resetNotifications"));
    makeSection()->addButtons({m_reset});
    connect(m_global, &QCheckBox::clicked, &m_preferences,
            &NotificationPreferences::setGlobalEnabled);
    connect(m_reset, &QPushButton::clicked, &m_preferences,
            &NotificationPreferences::resetToDefaults);
    connect(&m_preferences, &NotificationPreferences::changed, this,
            &NotificationSettingsTab::showPreferences);
    showPreferences();
}

void NotificationSettingsTab::addEvent(NotificationEvent event) {
    const QByteArray key = NotificationPreferences::eventPrefix + rawValue(event).toLatin1();
    QCheckBox* toggle = makeSwitch(key.constData());
    FormRow* row = m_events->addRow(toggle);
    row->setSymbol(QString::fromLatin1(symbolOf(event)), symbolFrame);
    connect(toggle, &QCheckBox::clicked, this,
            [this, event](bool isOn) { m_preferences.setEnabled(isOn, event); });
    m_eventRows.push_back({event, toggle, row});
}

void NotificationSettingsTab::showPreferences() {
    m_global->setChecked(m_preferences.globalEnabled());
    for (const EventRow& shown : m_eventRows)
        shown.toggle->setChecked(m_preferences.eventState(shown.event));
}

void NotificationSettingsTab::retranslate() {
    m_all->setTitle(text("settings.notification.global"));
    m_globalRow->setText(text("settings.notification.enableAll"));
    m_systemHint->setText(text("settings.notification.systemHint"));
    m_events->setTitle(text("settings.notification.events"));
    for (const EventRow& shown : m_eventRows)
        shown.row->setText(displayName(shown.event));
    m_reset->setText(text("settings.notification.reset"));
}

} // namespace harbrix
