#include "ui/settings/LoggingTab.h"

#include "base/ByteCount.h"
#include "base/Worker.h"
#include "platform/UserDefaults.h"
#include "services/LanguageManager.h"
#include "services/LogLine.h"
#include "services/Text.h"
#include "ui/form/FormControls.h"
#include "ui/settings/SettingBinding.h"
#include "ui/widgets/SavePanel.h"
#include "ui/widgets/SymbolIcon.h"

#include <QFileInfo>
#include <QPushButton>

#include <filesystem>

namespace harbrix {
namespace {

constexpr std::array levels{LogLevel::debug, LogLevel::info, LogLevel::warning, LogLevel::error,
                            LogLevel::critical};

/// Blocks. A copy that fails leaves the source where it is.
void moveFile(const QUrl& source, const QUrl& destination) {
    namespace fs = std::filesystem;
    const fs::path from = source.toLocalFile().toStdString();
    const fs::path to = destination.toLocalFile().toStdString();
    std::error_code error;
    fs::rename(from, to, error);
    // The temporary directory is often on another file system.
    if (error && fs::copy_file(from, to, fs::copy_options::overwrite_existing, error))
        fs::remove(from, error);
}

} // namespace

LoggingTab::LoggingTab(const Environment& environment, QWidget* parent)
    : SettingsTab(parent), m_log(environment.settings.log),
      m_defaults(environment.settings.defaults), m_languageManager(environment.languageManager),
      m_debugMode(makeSwitch(LogManager::debugModeKey)), m_selectedLevel(new QComboBox),
      m_fileLogging(makeSettingSwitch(m_defaults, LogManager::fileLoggingKey)),
      m_logSize(new TextLabel(TextRole::body, Tint::secondary, TextLabel::Lines::One)),
      m_export(new QPushButton), m_clear(new QPushButton), m_mode(makeSection()),
      m_debugModeRow(m_mode->addRow(m_debugMode)), m_debugHint(m_mode->addNote()),
      m_level(makeSection()), m_selectedLevelRow(m_level->addRow(m_selectedLevel)),
      m_file(makeSection()), m_fileLoggingRow(m_file->addRow(m_fileLogging)),
      m_logSizeRow(m_file->addRow(m_logSize)), m_actions(makeSection()) {
    m_logSize->setObjectName(QStringLiteral("logSize"));
    m_logSize->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_debugMode->setChecked(m_defaults.boolean(LogManager::debugModeKey).value_or(false));
    connect(m_debugMode, &QCheckBox::clicked, this,
            [this](bool isOn) { m_log.setDebugMode(isOn); });

    m_selectedLevel->setObjectName(QString::fromLatin1(LogManager::logLevelKey));
    for (const LogLevel level : levels)
        m_selectedLevel->addItem(logLevelMark(level) + QLatin1Char(' ') + logLevelLabel(level),
                                 int(level));
    // Not bound: debug mode lowers the level and the picker is to keep what the user has picked.
    const qint64 stored = m_defaults.integer(LogManager::logLevelKey).value_or(0);
    m_selectedLevel->setCurrentIndex(m_selectedLevel->findData(stored));
    connect(m_selectedLevel, &QComboBox::activated, this, &LoggingTab::storeLevel);

    m_export->setObjectName(QStringLiteral("exportLogs"));
    m_export->setIcon(symbolIcon(QStringLiteral("square.and.arrow.up")));
    m_clear->setObjectName(QStringLiteral("clearLogs"));
    m_clear->setIcon(symbolIcon(QStringLiteral("trash"), Tint::red));
    FlatStyle::setDestructive(*m_clear);
    m_actions->addButtons({m_export, m_clear});
    connect(m_export, &QPushButton::clicked, this, [this] { m_flows.launch(exportLogs()); });
    connect(m_clear, &QPushButton::clicked, this, &LoggingTab::clearLogs);
}

void LoggingTab::storeLevel() {
    const QVariant picked = m_selectedLevel->currentData();
    m_defaults.set(LogManager::logLevelKey,
                   picked.isValid() ? picked.toLongLong() : qint64(LogLevel::info));
}

Task<void> LoggingTab::exportLogs() {
    auto writing = onWorker([&log = m_log] { return log.exportLogsToFile(); });
    const auto file = co_await writing;
    if (!file)
        co_return;
    auto* panel = new SavePanel(SavePanel::For::TextFile, file->fileName(), this);
    connect(panel, &SavePanel::chosen, this, [source = *file](const QUrl& place) {
        workerPool().start([source, place] { moveFile(source, place); });
    });
    panel->open();
}

// The files go a moment later, so the size may still be the old one.
void LoggingTab::clearLogs() {
    m_log.clearLogs();
    showLogSize();
}

void LoggingTab::showLogSize() {
    m_logSize->setText(byteCountText(m_log.totalLogSize(), m_languageManager.locale()));
}

void LoggingTab::appear() {
    showLogSize();
}

void LoggingTab::retranslate() {
    m_mode->setTitle(text("settings.logging.mode"));
    m_debugModeRow->setText(text("settings.logging.debug"));
    m_debugHint->setText(text("settings.logging.debug.hint"));
    m_level->setTitle(text("settings.logging.level"));
    m_selectedLevelRow->setText(text("settings.logging.minLevel"));
    m_file->setTitle(text("settings.logging.file"));
    m_fileLoggingRow->setText(text("settings.logging.fileToggle"));
    m_logSizeRow->setText(text("settings.logging.fileSize"));
    m_actions->setTitle(text("settings.logging.actions"));
    m_export->setText(text("settings.logging.export"));
    m_clear->setText(text("settings.logging.clear"));
    if (!m_logSize->text().isEmpty())
        showLogSize();
}

} // namespace harbrix
