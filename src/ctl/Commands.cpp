#include "ctl/Commands.h"

#include "ctl/PasswordInput.h"
#include "ctl/RemoteInterface.h"
#include "ctl/StandardStreams.h"
#include "ctl/SupportCommands.h"
#include "ctl/Table.h"
#include "ctl/Telling.h"
#include "ctl/Watch.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusServiceWatcher>
#include <QJsonDocument>
#include <QTimer>

namespace harbrix {
namespace {

using Command = Invocation::Command;
using Password = Invocation::Password;

QString compactText(const QJsonObject& object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString named(const QJsonObject& share) {
    return visible(share.value("name").toString());
}

ExitCode show(const RunningProgram& program, const Invocation& invocation) {
    const auto answer = invocation.share.isEmpty()
                            ? program.call("Status")
                            : program.call("ShareStatus", {invocation.share});
    if (!answer)
        return tell(answer.error());
    const QJsonObject object = parseObject(*answer);
    const bool isList = invocation.command == Command::List;
    if (invocation.json) {
        const QJsonDocument shown =
            isList ? QJsonDocument(object.value("shares").toArray()) : QJsonDocument(object);
        print(QString::fromUtf8(shown.toJson()));
    } else if (isList) {
        print(renderList(object.value("shares").toArray()));
    } else {
        print(invocation.share.isEmpty() ? renderStatus(object) : renderShare(object));
    }
    return Succeeded;
}

ExitCode mountOne(const RunningProgram& program, const QString& share) {
    const auto answer = program.call("Mount", {share}, RunningProgram::longestFlow);
    return answer ? tell(mountOutcome(parseObject(*answer))) : tell(answer.error());
}

ExitCode unmountOne(const RunningProgram& program, const QString& share) {
    const auto answer = program.call("Unmount", {share}, RunningProgram::longestFlow);
    return answer ? tell(unmountOutcome(parseObject(*answer))) : tell(answer.error());
}

ExitCode forAll(const RunningProgram& program, const char* method,
                Outcome (*outcomeOf)(const QJsonArray&)) {
    const auto answer = program.call(method, {}, RunningProgram::longestFlow);
    if (!answer)
        return tell(answer.error());
    const QJsonArray shares = parseObject(*answer).value("shares").toArray();
    return tell(outcomeOf(shares));
}

/// The password that the command wants, empty where it wants none.
std::expected<QByteArray, QString> fetchPassword(const Invocation& invocation) {
    if (invocation.password == Password::NotWanted)
        return QByteArray();
    if (invocation.password == Password::FromStandardInput)
        return readPasswordFromStandardInput();
    if (invocation.password == Password::Needed && !hasTerminal())
        return std::unexpected(QStringLiteral("there is no terminal to ask for the password; give "
                                              "--password-stdin or --auth guest"));
    const QString name = invocation.settings.value("name").toString(invocation.share);
    return askPasswordOnTerminal(QStringLiteral("Password for %1: ").arg(visible(name)));
}

ExitCode addOrEdit(const RunningProgram& program, const Invocation& invocation) {
    if (const auto failure = program.unreachable()) // before a password is typed for nothing
        return tell(*failure);
    const auto password = fetchPassword(invocation);
    if (!password)
        return tell(WrongUsage, password.error());
    const QString settings = compactText(invocation.settings);
    const bool isAdd = invocation.command == Command::Add;
    const auto answer = isAdd ? program.call("Add", {settings, *password})
                              : program.call("Edit", {invocation.share, settings, *password});
    if (!answer)
        return tell(answer.error());
    const QJsonObject share = parseObject(*answer);
    print(QStringLiteral("%1: %2 (%3)\n")
              .arg(named(share), isAdd ? "added" : "changed", share.value("id").toString()));
    if (!password->isEmpty() && !share.value("passwordStored").toBool())
        return tell(Failed, QStringLiteral("the password could not be stored; see the log of "
                                           "Harbrix for the reason"));
    return invocation.mountAfterwards ? mountOne(program, share.value("id").toString()) : Succeeded;
}

ExitCode removeOne(const RunningProgram& program, const QString& share) {
    const auto answer = program.call("Remove", {share});
    if (!answer)
        return tell(answer.error());
    const QJsonObject removed = parseObject(*answer);
    print(QStringLiteral("%1: removed\n").arg(named(removed)));
    if (removed.value("volume").toString() == "present")
        printError(QStringLiteral("%1: its volume stays mounted at %2\n")
                       .arg(named(removed), visible(removed.value("mountPoint").toString())));
    return Succeeded;
}

ExitCode watch(const RunningProgram& program, const Invocation& invocation) {
    Watch watching(program, invocation.json ? Watch::Form::Json : Watch::Form::Text);
    if (const auto failure = program.unreachable())
        return tell(*failure);
    if (!watching.begin())
        return tell(Failed, QStringLiteral("the session bus refused the subscription"));
    const auto present = program.call("Status");
    if (!present)
        return tell(present.error());
    watching.printPresent(*present);
    return static_cast<ExitCode>(QCoreApplication::exec());
}

/// Ends when the program is gone, so that it can be started again right afterwards.
ExitCode quit(const RunningProgram& program) {
    constexpr std::chrono::seconds longestEnd{30};
    QDBusServiceWatcher watcher(QLatin1String(remote::service), program.connection(),
                                QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceUnregistered,
                     [] { QCoreApplication::exit(Succeeded); });
    const auto answer = program.call("Quit");
    if (!answer)
        return tell(answer.error());
    QTimer::singleShot(longestEnd, [] {
        QCoreApplication::exit(tell(Failed, QStringLiteral("Harbrix has not ended in time")));
    });
    return static_cast<ExitCode>(QCoreApplication::exec());
}

} // namespace

ExitCode runCommand(const Invocation& invocation) {
    const RunningProgram program;
    switch (invocation.command) {
    case Command::List:
    case Command::Status:
        return show(program, invocation);
    case Command::Add:
    case Command::Edit:
        return addOrEdit(program, invocation);
    case Command::Remove:
        return removeOne(program, invocation.share);
    case Command::Mount:
        return mountOne(program, invocation.share);
    case Command::Unmount:
        return unmountOne(program, invocation.share);
    case Command::MountAll:
        return forAll(program, "MountAll", mountAllOutcome);
    case Command::UnmountAll:
        return forAll(program, "UnmountAll", unmountAllOutcome);
    case Command::Watch:
        return watch(program, invocation);
    case Command::Export:
        return exportRecords(program, invocation);
    case Command::Import:
        return importRecords(program, invocation);
    case Command::SettingsList:
        return listSettings(program, invocation);
    case Command::SettingsGet:
        return getSetting(program, invocation);
    case Command::SettingsSet:
    case Command::SettingsReset:
        return changeSetting(program, invocation);
    case Command::LogShow:
        return showLog(program, invocation);
    case Command::LogExport:
        return exportLog(program, invocation);
    case Command::LogClear:
        return clearLog(program);
    case Command::Quit:
        return quit(program);
    }
    return WrongUsage;
}

} // namespace harbrix
