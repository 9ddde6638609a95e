#include "services/LogManager.h"

#include "platform/UserDefaults.h"
#include "services/LogFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

class LogManagerTest : public testing::Test {
protected:
    QTemporaryDir directory;
    UserDefaults defaults{directory.filePath(QStringLiteral("defaults.json"))};
    LogManager manager{defaults, directory.path(), directory.path()};
    const QString current = manager.logDirectory() + QStringLiteral("/Harbrix.log");
    const QString rotated = current + QStringLiteral(".1");

    void enableFile() { defaults.set(QLatin1String(LogManager::fileLoggingKey), true); }
    void storeLevel(qint64 level) { defaults.set(QLatin1String(LogManager::logLevelKey), level); }
    static void write(const QString& path, const QByteArray& contents) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QByteArray logged(LogLevel level, const QString& message) {
        manager.log(level, message);
        manager.waitForWrites();
        return read(current);
    }
};

TEST_F(LogManagerTest, FiltersByTheStoredLevel) {
    const struct {
        std::optional<qint64> level;
        std::optional<bool> debugMode;
        LogLevel minimum;
    } rows[] = {
        {std::nullopt, std::nullopt, LogLevel::debug},
        {0, false, LogLevel::debug},
        {3, true, LogLevel::error},
        {4, std::nullopt, LogLevel::critical},
        {5, std::nullopt, LogLevel::info},
        {7, false, LogLevel::info},
        {7, true, LogLevel::debug},
        {-1, false, LogLevel::info},
    };
    for (const auto& row : rows) {
        defaults.remove(QLatin1String(LogManager::logLevelKey));
        defaults.remove(QLatin1String(LogManager::debugModeKey));
        if (row.level)
            storeLevel(*row.level);
        if (row.debugMode)
            defaults.set(QLatin1String(LogManager::debugModeKey), *row.debugMode);
        EXPECT_EQ(manager.minimumLevel(), row.minimum) << row.level.value_or(-99);
    }
}

TEST_F(LogManagerTest, DebugModeLowersTheLevelAndLeavesItThere) {
    storeLevel(3);
    manager.setDebugMode(true);
    EXPECT_EQ(defaults.integer(QLatin1String(LogManager::logLevelKey)), 0);
    manager.setDebugMode(false);
    EXPECT_EQ(defaults.integer(QLatin1String(LogManager::logLevelKey)), 0);
    EXPECT_EQ(defaults.boolean(QLatin1String(LogManager::debugModeKey)), false);
}

TEST_F(LogManagerTest, WritesToTheFileOnlyWhenSwitchedOnAndAtTheLevel) {
    EXPECT_EQ(logged(LogLevel::critical, QStringLiteral("unseen")), "");
    enableFile();
    storeLevel(2);
    EXPECT_EQ(logged(LogLevel::info, QStringLiteral("too low")), "");
    const QString line =
        QString::fromUtf8(logged(LogLevel::warning, QStringLiteral("gr\u00fc\u00dfe\nzwei")));
    const QRegularExpression form(QStringLiteral(
        "^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\] \\[WARN\\] \\[Default\\] "
        "LogManagerTest\\.cpp:\\d+ logged\\(LogLevel, QString\\) - gr\u00fc\u00dfe\nzwei\n\\z"));
    EXPECT_TRUE(form.match(line).hasMatch()) << line.toStdString();
}

TEST_F(LogManagerTest, RotatesAtExactlyTheLimit) {
    enableFile();
    write(rotated, "older");
    const QByteArray below(LogManager::maxLogFileSize - 1, 'a');
    write(current, below);
    const QByteArray appended = logged(LogLevel::info, QStringLiteral("appended"));
    EXPECT_TRUE(appended.startsWith(below) && appended.endsWith("- appended\n"));
    EXPECT_EQ(read(rotated), "older");

    const QByteArray full(LogManager::maxLogFileSize, 'b');
    write(current, full);
    const QByteArray fresh = logged(LogLevel::info, QStringLiteral("first"));
    EXPECT_TRUE(fresh.startsWith("[") && fresh.endsWith("- first\n") && fresh.count('\n') == 1);
    EXPECT_EQ(read(rotated), full);
    EXPECT_EQ(manager.totalLogSize(), full.size() + fresh.size());
}

TEST_F(LogManagerTest, KeepsTheOrderOfLinesFromManyCalls) {
    enableFile();
    for (int i = 0; i < 200; ++i)
        manager.log(LogLevel::info, QStringLiteral("n%1").arg(i));
    manager.waitForWrites();
    const QList<QByteArray> lines = read(current).split('\n');
    ASSERT_EQ(lines.size(), 201);
    for (int i = 0; i < 200; ++i)
        EXPECT_TRUE(lines[i].endsWith(" - n" + QByteArray::number(i)));
}

TEST_F(LogManagerTest, DropsWhatCannotBeWritten) {
    enableFile();
    EXPECT_EQ(logged(LogLevel::info, QString(QChar(0xd800))), "");
    QDir().mkpath(current);
    manager.log(LogLevel::info, QStringLiteral("into a folder"));
    manager.waitForWrites();
    EXPECT_TRUE(QFileInfo(current).isDir());
}

TEST_F(LogManagerTest, CombinesAndExportsBothFiles) {
    EXPECT_EQ(manager.exportLogsToFile(), std::nullopt);
    EXPECT_EQ(manager.totalLogSize(), 0);

    write(rotated, "old\n");
    EXPECT_EQ(manager.combinedLogText().toStdString(), "old\n\n");
    write(current, "new\n");
    const auto url = manager.exportLogsToFile();
    ASSERT_TRUE(url.has_value());
    EXPECT_EQ(read(url->toLocalFile()), "old\n\nnew\n");
    const QRegularExpression name(
        QStringLiteral("^Harbrix-Logs-\\d{4}-\\d\\d-\\d\\dT\\d\\d-\\d\\d-\\d\\dZ\\.log\\z"));
    EXPECT_TRUE(name.match(url->fileName()).hasMatch()) << url->fileName().toStdString();

    write(current, "\xff");
    EXPECT_EQ(manager.combinedLogText().toStdString(), "old\n\n") << "invalid UTF-8 is skipped";

    manager.clearLogs();
    manager.waitForWrites();
    EXPECT_FALSE(QFile::exists(current) || QFile::exists(rotated));
}

TEST_F(LogManagerTest, TellsOfAnExportThatFailed) {
    enableFile();
    // A file where a directory should be, which stops even root.
    const QString noDirectory = directory.filePath(QStringLiteral("file"));
    write(noDirectory, "");
    LogManager other(defaults, directory.path(), noDirectory);
    write(current, "text\n");
    EXPECT_EQ(other.exportLogsToFile(), std::nullopt);
    other.waitForWrites();
    EXPECT_TRUE(read(current).contains("[ERROR] [Default]"));
    EXPECT_TRUE(read(current).contains("exportLogsToFile() - Failed to export logs: "));
}

TEST(LogManager, IsSharedWhileItLives) {
    EXPECT_EQ(LogManager::shared(), nullptr);
    log(LogLevel::error, QStringLiteral("nobody listens"));
    QTemporaryDir directory;
    UserDefaults defaults(directory.filePath(QStringLiteral("d.json")));
    {
        const LogManager first(defaults, directory.path(), directory.path());
        const LogManager second(defaults, directory.path(), directory.path());
        EXPECT_EQ(LogManager::shared(), &first);
    }
    EXPECT_EQ(LogManager::shared(), nullptr);
}

} // namespace
} // namespace harbrix
