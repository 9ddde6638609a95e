#pragma once

#include "base/TimeText.h"
#include "ui/Environment.h"
#include "ui/settings/SettingsTab.h"

#include <optional>

class QCheckBox;
class QPushButton;
class QSlider;

namespace harbrix {

/// The cache: what it holds, how large it may grow, when it is cleaned up.
///
/// The limit is stored in bytes and the slider counts in MiB, under one key: what was stored last
/// is what the slider reads and shows, whatever its unit.
class CacheSettingsTab : public SettingsTab {
    Q_OBJECT

public:
    explicit CacheSettingsTab(const Environment& environment, QWidget* parent = nullptr);

    void retranslate() override;
    void appear() override;

private:
    [[nodiscard]] FormRow* addFigure(FormSection& section, const char* name, TextLabel*& figure);
    [[nodiscard]] QWidget* buildSlider();
    void readMaxSize();
    void storeMaxSize(int mebibytes);
    void showFigures();

    CacheManager& m_cache;
    CacheDirectoryManager& m_directory;
    UserDefaults& m_defaults;
    const Scheduler& m_clock;
    QLocale m_locale;
    std::optional<RelativeDateText> m_dates;

    TextLabel* m_entryCount = nullptr;
    TextLabel* m_totalSize = nullptr;
    TextLabel* m_hitRate = nullptr;
    TextLabel* m_diskSpace = nullptr;
    QSlider* m_maxSize = nullptr;
    TextLabel* m_maxSizeText = nullptr;
    QCheckBox* m_autoCleanup;
    TextLabel* m_lastCleanup = nullptr;
    TextLabel* m_lastRemoved = nullptr;
    QPushButton* m_cleanupNow;
    QPushButton* m_clearAll;

    FormSection* m_usage;
    FormRow* m_entryCountRow;
    FormRow* m_totalSizeRow;
    FormRow* m_hitRateRow;
    FormRow* m_diskSpaceRow;
    FormSection* m_limit;
    FormSection* m_cleanup;
    FormRow* m_autoCleanupRow;
    FormRow* m_lastCleanupRow;
    FormRow* m_lastRemovedRow;
};

} // namespace harbrix
