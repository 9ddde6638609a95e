#pragma once

#include "ui/settings/SettingsTab.h"

class QComboBox;

namespace harbrix {

class Stepper;
class UserDefaults;

/// What new shares might begin with. It is kept and shown, and nothing else reads it.
class AdvancedMountTab : public SettingsTab {
    Q_OBJECT

public:
    explicit AdvancedMountTab(UserDefaults& defaults, QWidget* parent = nullptr);

    void retranslate() override;

private:
    QComboBox* m_smbVersion;
    Stepper* m_connectionTimeout;
    Stepper* m_retryCount;
    Stepper* m_retryInterval;

    FormSection* m_smb;
    FormRow* m_smbVersionRow;
    FormSection* m_timeout;
    FormRow* m_connectionTimeoutRow;
    TextLabel* m_timeoutHint;
    FormSection* m_retry;
    FormRow* m_retryCountRow;
    FormRow* m_retryIntervalRow;
    TextLabel* m_retryHint;
};

} // namespace harbrix
