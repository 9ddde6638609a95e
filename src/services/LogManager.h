#pragma once

#include "platform/SystemLog.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <source_location>

namespace harbrix {

class LogFile;
class UserDefaults;

enum class LogLevel : int { debug = 0, info = 1, warning = 2, error = 3, critical = 4 };

/// The one logging facility: each message goes to the system's log and, when the user has switched
/// that on, to a rotating file. Logging never fails and never blocks the caller on the file.
class LogManager {
public:
    enum class Category {
        default_,
        mount,
        network,
        cache,
        transfer,
        keychain,
        ui,
        lifecycle,
        config,
        system
    };

    static constexpr auto logLevelKey = "log.minimumLevel";
    static constexpr auto debugModeKey = "log.debugMode";
    static constexpr auto fileLoggingKey = "log.fileEnabled";
    static constexpr qint64 maxLogFileSize = 5'242'880; ///< bytes

    /// Creates the log directory below `applicationSupport`; a failure is swallowed.
    LogManager(UserDefaults& defaults, const QString& applicationSupport,
               QString temporaryDirectory);
    LogManager(const LogManager&) = delete;
    LogManager& operator=(const LogManager&) = delete;
    ~LogManager();

    /// The instance that log() below writes to: the first one that lives. Without one, as in most
    /// tests, messages are dropped.
    [[nodiscard]] static LogManager* shared();

    /// Any thread.
    void log(LogLevel level, const QString& message, Category category = Category::default_,
             const std::source_location& where = std::source_location::current());

    [[nodiscard]] LogLevel minimumLevel() const;
    void setDebugMode(bool on);
    [[nodiscard]] QString combinedLogText() const;
    [[nodiscard]] std::optional<QUrl> exportLogsToFile();
    /// Returns before the files are gone.
    void clearLogs();
    /// Bytes of both files.
    [[nodiscard]] qint64 totalLogSize() const;
    [[nodiscard]] const QString& logDirectory() const { return m_logDirectory; }
    /// The paths of both files, the older one first; either may be missing.
    [[nodiscard]] QStringList files() const;
    /// Whether what is logged now goes to the file, too.
    [[nodiscard]] bool writesToFile() const;
    /// Waits until every line that was logged before this call is on disk or dropped.
    void waitForWrites();

    /// The raw value: the journal's category and the third bracket of a line.
    [[nodiscard]] static QString categoryName(Category category);

private:
    UserDefaults& m_defaults;
    QString m_logDirectory;
    QString m_temporaryDirectory;
    std::map<Category, SystemLog> m_loggers;
    std::unique_ptr<LogFile> m_file;
};

using LogCategory = LogManager::Category;

/// What code everywhere calls.
inline void log(LogLevel level, const QString& message,
                LogCategory category = LogCategory::default_,
                const std::source_location& where = std::source_location::current()) {
    if (LogManager* manager = LogManager::shared())
        manager->log(level, message, category, where);
}

} // namespace harbrix
