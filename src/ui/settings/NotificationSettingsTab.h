#pragma once

#include "services/NotificationPreferences.h"
#include "ui/settings/SettingsTab.h"

#include <vector>

class QCheckBox;
class QPushButton;

namespace harbrix {

/// What the user is told of.
class NotificationSettingsTab : public SettingsTab {
    Q_OBJECT

public:
    explicit NotificationSettingsTab(NotificationPreferences& preferences,
                                     QWidget* parent = nullptr);

    void retranslate() override;

private:
    struct EventRow {
        NotificationEvent event;
        QCheckBox* toggle;
        FormRow* row;
    };

    void addEvent(NotificationEvent event);
    void showPreferences();

    NotificationPreferences& m_preferences;
    QCheckBox* m_global;
    FormSection* m_all;
    FormRow* m_globalRow;
    TextLabel* m_systemHint;
    FormSection* m_events;
    std::vector<EventRow> m_eventRows;
    QPushButton* m_reset;
};

} // namespace harbrix
