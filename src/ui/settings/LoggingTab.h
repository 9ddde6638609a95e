#pragma once

#include "base/TaskScope.h"
#include "ui/Environment.h"
#include "ui/settings/SettingsTab.h"

class QCheckBox;
class QComboBox;
class QPushButton;

namespace harbrix {

/// What is logged, and what becomes of the log files.
class LoggingTab : public SettingsTab {
    Q_OBJECT

public:
    explicit LoggingTab(const Environment& environment, QWidget* parent = nullptr);

    void retranslate() override;
    void appear() override;

private:
    void storeLevel();
    void clearLogs();
    void showLogSize();
    Task<void> exportLogs();

    LogManager& m_log;
    UserDefaults& m_defaults;
    LanguageManager& m_languageManager;
    QCheckBox* m_debugMode;
    QComboBox* m_selectedLevel;
    QCheckBox* m_fileLogging;
    TextLabel* m_logSize;
    QPushButton* m_export;
    QPushButton* m_clear;

    FormSection* m_mode;
    FormRow* m_debugModeRow;
    TextLabel* m_debugHint;
    FormSection* m_level;
    FormRow* m_selectedLevelRow;
    FormSection* m_file;
    FormRow* m_fileLoggingRow;
    FormRow* m_logSizeRow;
    FormSection* m_actions;
    TaskScope m_flows;
};

} // namespace harbrix
