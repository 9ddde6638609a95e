#pragma once

#include "ui/settings/SettingsTab.h"

class QComboBox;

namespace harbrix {

class LanguageManager;

/// The language of the program.
class LanguageSettingsTab : public SettingsTab {
    Q_OBJECT

public:
    explicit LanguageSettingsTab(LanguageManager& languageManager, QWidget* parent = nullptr);

    void retranslate() override;

private:
    void showSelected();

    LanguageManager& m_languageManager;
    QComboBox* m_picker;
    FormSection* m_app;
    FormRow* m_pickerRow;
    TextLabel* m_restartHint;
    FormSection* m_supported;
    TextLabel* m_disclaimer;
};

} // namespace harbrix
