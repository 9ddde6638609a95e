#include "ctl/SupportCommands.h"

#include "ctl/LogFollower.h"
#include "ctl/OutputFile.h"
#include "ctl/StandardStreams.h"
#include "ctl/Table.h"
#include "ctl/Telling.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <unistd.h>

namespace harbrix {
namespace {

constexpr auto howToLogToAFile = "harbrixctl settings set log.fileEnabled true";

ExistingFile existingFile(const Invocation& invocation) {
    return invocation.force ? ExistingFile::Replaced : ExistingFile::Kept;
}

/// What the program says of its log files, the older one first.
struct LogFiles {
    QStringList paths = {};
    bool isWritten = false;
};

std::expected<LogFiles, RunningProgram::Failure> logFiles(const RunningProgram& program) {
    const auto answer = program.call("LogFiles");
    if (!answer)
        return std::unexpected(answer.error());
    const QJsonObject object = parseObject(*answer);
    LogFiles files{.isWritten = object.value("fileEnabled").toBool()};
    for (const QJsonValue& path : object.value("files").toArray())
        files.paths << path.toString();
    return files;
}

} // namespace

ExitCode exportRecords(const RunningProgram& program, const Invocation& invocation) {
    const bool isToStream = invocation.file.isEmpty() || invocation.file == "-";
    if (isToStream && invocation.withPasswords && ::isatty(STDOUT_FILENO))
        return tell(WrongUsage, QStringLiteral("export: passwords are not shown on a terminal; "
                                               "name a file"));
    const auto answer = program.call("ExportRecords", {invocation.withPasswords});
    if (!answer)
        return tell(answer.error());
    if (isToStream) {
        print(*answer);
        return Succeeded;
    }
    const auto written = writeFile(invocation.file, answer->toUtf8(), existingFile(invocation));
    return written ? Succeeded : tell(Failed, written.error());
}

ExitCode importRecords(const RunningProgram& program, const Invocation& invocation) {
    const auto records = readInput(invocation.file);
    if (!records)
        return tell(Failed, records.error());
    const auto answer = program.call("ImportRecords", {*records, invocation.dryRun});
    if (!answer)
        return tell(answer.error());
    const QJsonObject outcome = parseObject(*answer);
    if (!invocation.json)
        return tell(importOutcome(outcome, invocation.dryRun));
    print(QString::fromUtf8(QJsonDocument(outcome).toJson()));
    return outcome.value("passwordsNotStored").toArray().isEmpty() ? Succeeded : Failed;
}

ExitCode listSettings(const RunningProgram& program, const Invocation& invocation) {
    const auto answer = program.call("ListSettings");
    if (!answer)
        return tell(answer.error());
    const QJsonArray settings = parseArray(*answer);
    print(invocation.json ? QString::fromUtf8(QJsonDocument(settings).toJson())
                          : renderSettings(settings));
    return Succeeded;
}

ExitCode getSetting(const RunningProgram& program, const Invocation& invocation) {
    const auto answer = program.call("GetSetting", {invocation.key});
    if (!answer)
        return tell(answer.error());
    const QJsonObject setting = parseObject(*answer);
    print(invocation.json ? QString::fromUtf8(QJsonDocument(setting).toJson())
                          : renderValue(setting.value("value")) + u'\n');
    return Succeeded;
}

ExitCode changeSetting(const RunningProgram& program, const Invocation& invocation) {
    const auto answer = invocation.command == Invocation::Command::SettingsReset
                            ? program.call("ResetSetting", {invocation.key})
                            : program.call("SetSetting", {invocation.key, invocation.value});
    if (!answer)
        return tell(answer.error());
    const QJsonObject setting = parseObject(*answer);
    print(QStringLiteral("%1: %2\n")
              .arg(setting.value("key").toString(), renderValue(setting.value("value"))));
    return Succeeded;
}

ExitCode showLog(const RunningProgram& program, const Invocation& invocation) {
    const auto files = logFiles(program);
    if (!files)
        return tell(files.error());
    LogReader older(files->paths.value(0));
    LogReader current(files->paths.value(1));
    LogFilter filter(invocation.level);
    QStringList lines = older.newLines() + current.newLines();
    const bool isEmpty = lines.isEmpty();
    lines.removeIf([&filter](const QString& line) { return !filter.admits(line); });
    const qsizetype skipped = qMax<qsizetype>(0, lines.size() - invocation.lines.value_or(INT_MAX));
    for (const QString& line : lines.mid(skipped))
        print(visible(line) + u'\n');
    if (!files->isWritten)
        printError(QStringLiteral("harbrixctl: the log is not written to a file now (%1 changes "
                                  "that); the journal has it: journalctl -t harbrix\n")
                       .arg(QLatin1String(howToLogToAFile)));
    if (!invocation.follow)
        return isEmpty && !files->isWritten ? Failed : Succeeded;
    const LogFollower follower(program, files->paths.value(1), current, filter);
    return static_cast<ExitCode>(QCoreApplication::exec());
}

ExitCode exportLog(const RunningProgram& program, const Invocation& invocation) {
    const auto files = logFiles(program);
    if (!files)
        return tell(files.error());
    QByteArray whole;
    for (const QString& path : files->paths)
        if (QFile file(path); file.open(QIODevice::ReadOnly))
            whole += file.readAll();
    if (whole.isEmpty())
        return tell(Failed, QStringLiteral("there are no log files; %1 begins them")
                                .arg(QLatin1String(howToLogToAFile)));
    const auto written = writeFile(invocation.file, whole, existingFile(invocation));
    return written ? Succeeded : tell(Failed, written.error());
}

ExitCode clearLog(const RunningProgram& program) {
    const auto answer = program.call("ClearLog");
    return answer ? Succeeded : tell(answer.error());
}

} // namespace harbrix
