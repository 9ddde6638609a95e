#include "services/LogManager.h"

#include "base/Json.h"
#include "base/Utf8.h"
#include "platform/AtomicFile.h"
#include "platform/UserDefaults.h"
#include "services/LogFile.h"
#include "services/LogLine.h"

#include <QDir>
#include <QFileInfo>

#include <array>
#include <atomic>

namespace harbrix {
namespace {

std::atomic<LogManager*> sharedManager = nullptr;

using Category = LogManager::Category;

constexpr std::array categories{
    Category::default_, Category::mount, Category::network,   Category::cache,  Category::transfer,
    Category::keychain, Category::ui,    Category::lifecycle, Category::config, Category::system};

SystemLog::Type systemLogType(LogLevel level) {
    switch (level) {
    case LogLevel::debug:
        return SystemLog::Type::Debug;
    case LogLevel::info:
        return SystemLog::Type::Info;
    case LogLevel::warning:
    case LogLevel::error:
        return SystemLog::Type::Error;
    case LogLevel::critical:
        return SystemLog::Type::Fault;
    }
    Q_UNREACHABLE();
}

} // namespace

LogManager::LogManager(UserDefaults& defaults, const QString& applicationSupport,
                       QString temporaryDirectory)
    : m_defaults(defaults), m_logDirectory(applicationSupport + QStringLiteral("/Harbrix/Logs")),
      m_temporaryDirectory(std::move(temporaryDirectory)),
      m_file(std::make_unique<LogFile>(m_logDirectory, maxLogFileSize)) {
    QDir().mkpath(m_logDirectory);
    for (const Category category : categories)
        m_loggers.emplace(category,
                          SystemLog(QStringLiteral("com.harbrix"), categoryName(category)));
    LogManager* none = nullptr;
    sharedManager.compare_exchange_strong(none, this);
}

LogManager::~LogManager() {
    LogManager* self = this;
    sharedManager.compare_exchange_strong(self, nullptr);
}

LogManager* LogManager::shared() {
    return sharedManager;
}

void LogManager::log(LogLevel level, const QString& message, Category category,
                     const std::source_location& where) {
    if (minimumLevel() > level)
        return;
    const QDateTime now = QDateTime::currentDateTime();
    const SystemLog& logger = m_loggers.at(category);
    const SystemLog::Type type = systemLogType(level);
    if (logger.isEnabled(type))
        logger.write(type, message, where);
    if (writesToFile())
        m_file->append(formatLogLine(now, level, categoryName(category), where, message));
}

LogLevel LogManager::minimumLevel() const {
    const qint64 stored = m_defaults.integer(QLatin1String(logLevelKey)).value_or(0);
    if (stored >= static_cast<int>(LogLevel::debug) &&
        stored <= static_cast<int>(LogLevel::critical))
        return static_cast<LogLevel>(stored);
    // Debug mode is asked only where the stored level is none.
    const bool debugMode = m_defaults.boolean(QLatin1String(debugModeKey)).value_or(false);
    return debugMode ? LogLevel::debug : LogLevel::info;
}

void LogManager::setDebugMode(bool on) {
    m_defaults.set(QLatin1String(debugModeKey), on);
    if (on)
        m_defaults.set(QLatin1String(logLevelKey), qint64{0});
}

QString LogManager::combinedLogText() const {
    const auto read = [](const QString& path) -> std::optional<QString> {
        const auto bytes = readFile(path);
        return bytes ? decodeUtf8(*bytes) : std::nullopt;
    };
    QString combined;
    if (const auto older = read(m_file->rotatedPath()))
        combined += *older + QLatin1Char('\n');
    if (const auto current = read(m_file->path()))
        combined += *current;
    return combined;
}

std::optional<QUrl> LogManager::exportLogsToFile() {
    const QString combined = combinedLogText();
    if (combined.isEmpty())
        return std::nullopt;
    const QString stamp =
        iso8601Text(QDateTime::currentDateTime()).replace(QLatin1Char(':'), QLatin1Char('-'));
    const QString path =
        m_temporaryDirectory + QStringLiteral("/Harbrix-Logs-") + stamp + QStringLiteral(".log");
    if (const auto written = replaceFile(path, combined.toUtf8()); !written) {
        log(LogLevel::error,
            QStringLiteral("Failed to export logs: ") + written.error().description);
        return std::nullopt;
    }
    return QUrl::fromLocalFile(path);
}

void LogManager::clearLogs() {
    m_file->clear();
}

qint64 LogManager::totalLogSize() const {
    return QFileInfo(m_file->path()).size() + QFileInfo(m_file->rotatedPath()).size();
}

QStringList LogManager::files() const {
    return {m_file->rotatedPath(), m_file->path()};
}

bool LogManager::writesToFile() const {
    return m_defaults.boolean(QLatin1String(fileLoggingKey)).value_or(false);
}

void LogManager::waitForWrites() {
    m_file->waitForWrites();
}

QString LogManager::categoryName(Category category) {
    switch (category) {
    case Category::default_:
        return QStringLiteral("Default");
    case Category::mount:
        return QStringLiteral("Mount");
    case Category::network:
        return QStringLiteral("Network");
    case Category::cache:
        return QStringLiteral("Cache");
    case Category::transfer:
        return QStringLiteral("Transfer");
    case Category::keychain:
        return QStringLiteral("Keychain");
    case Category::ui:
        return QStringLiteral("UI");
    case Category::lifecycle:
        return QStringLiteral("Lifecycle");
    case Category::config:
        return QStringLiteral("Config");
    case Category::system:
        return QStringLiteral("System");
    }
    Q_UNREACHABLE();
}

} // namespace harbrix
