#pragma once

#include "services/LaunchAtLoginManager.h"
#include "ui/settings/SettingsTab.h"

#include <array>

class QCheckBox;

namespace harbrix {

class Stepper;
class UserDefaults;

/// What the program does by itself: start at login, mount at its start, check what is mounted.
class LaunchTab : public SettingsTab {
    Q_OBJECT

public:
    LaunchTab(UserDefaults& defaults, const LoginItem& loginItem, QWidget* parent = nullptr);

    void retranslate() override;

private:
    [[nodiscard]] QWidget* buildStabilityBox();

    LaunchAtLoginManager m_launchAtLogin;
    QCheckBox* m_atLogin;
    QCheckBox* m_autoMount;
    QCheckBox* m_keepAlive;
    Stepper* m_interval;

    FormSection* m_behavior;
    FormRow* m_atLoginRow;
    TextLabel* m_atLoginHint;
    FormSection* m_mounting;
    FormRow* m_autoMountRow;
    TextLabel* m_autoMountHint;
    TextLabel* m_stabilityTitle = nullptr;
    std::array<TextLabel*, 4> m_stability{};
    FormSection* m_keeping;
    FormRow* m_keepAliveRow;
    FormRow* m_intervalRow;
    TextLabel* m_keepAliveHint;
};

} // namespace harbrix
