#include "ctl/CommandLine.h"

#include "ctl/CommandTable.h"

#include <QCommandLineParser>
#include <QDir>
#include <QJsonArray>

#include <algorithm>
#include <array>

namespace harbrix {
namespace {

using Command = Invocation::Command;
using Password = Invocation::Password;

/// In the order of the program's own numbers for them.
const QStringList levelNames{"debug", "info", "warning", "error", "critical"};

EarlyEnd wrongUsage(const QString& text, const QString& command = {}) {
    const QString name = command.isEmpty() ? QString() : QLatin1Char(' ') + command;
    return {WrongUsage, QStringLiteral("%1 (see harbrixctl%2 --help)").arg(text, name)};
}

/// An option of add and edit whose text goes into the settings under `key`.
struct SettingOption {
    const char* option;
    const char* key;
    const char* valueName;
    const char* description;
};
constexpr std::array settingOptions{
    SettingOption{"name", "name", "NAME", "also the name of the default mount point"},
    SettingOption{"protocol", "protocol", "smb|nfs", "smb unless given"},
    SettingOption{"address", "address", "HOST", "name or address of the server"},
    SettingOption{"share", "share", "PATH", "the share (SMB) or the exported path (NFS)"},
    SettingOption{"auth", "auth", "password|guest", "SMB only; password unless given"},
    SettingOption{"user", "user", "USER", "SMB only"},
    SettingOption{"smb-version", "smbVersion", "auto|2|3", "auto unless given"},
    SettingOption{"mount-point", "customMountPoint", "PATH",
                  "instead of ~/HarbrixVolumes/NAME; empty for that default"},
    SettingOption{"binding", "bindingStrategy", "ip-range|ssid|combined",
                  "by what the share's network is known"},
    SettingOption{"ip-range", "ipRange", "CIDR", "0.0.0.0/0 unless given: any network"},
};

void addSettingOptions(QCommandLineParser& parser, Command command) {
    for (const auto& option : settingOptions)
        parser.addOption({QLatin1String(option.option), QLatin1String(option.description),
                          QLatin1String(option.valueName)});
    parser.addOption({"ssid", "a Wi-Fi name of the share's network; may be repeated", "NAME"});
    parser.addOption({"read-only", "mount for reading only"});
    parser.addOption({"enabled", "mount the share automatically (the default)"});
    parser.addOption({"disabled", "leave the share alone unless asked"});
    parser.addOption({"password-stdin", "read the password from standard input, to its end"});
    if (command == Command::Edit) {
        parser.addOption({"read-write", "mount for reading and writing"});
        parser.addOption({"ask-password", "ask for a new password on the terminal"});
    }
    parser.addOption({"mount", "mount the share afterwards"});
}

/// A setting as the program takes it, from what was typed.
QString settingValue(const QString& option, const QString& typed) {
    if (option == "binding" && typed == "ip-range")
        return QStringLiteral("ipRange");
    // The program has another working directory.
    if (option == "mount-point" && !typed.isEmpty())
        return QDir::current().absoluteFilePath(typed);
    return typed;
}

/// Two options of which at most one makes sense; the value of the Boolean that they stand for.
std::expected<void, QString> applySwitch(const QCommandLineParser& parser, QJsonObject& settings,
                                         const QString& key, const QString& on,
                                         const QString& off) {
    const bool isOn = parser.isSet(on);
    const bool isOff = parser.optionNames().contains(off);
    if (isOn && isOff)
        return std::unexpected(QStringLiteral("--%1 and --%2 exclude each other").arg(on, off));
    if (isOn || isOff)
        settings.insert(key, isOn);
    return {};
}

/// Tells a choice that the program would refuse while there is still no password asked for.
std::expected<void, QString> checkChoice(const SettingOption& option, const QString& value) {
    const QString choices = QLatin1String(option.valueName);
    if (!choices.contains(QLatin1Char('|')) || choices.split(QLatin1Char('|')).contains(value))
        return {};
    return std::unexpected(QStringLiteral("--%1 takes %2, not '%3'")
                               .arg(QLatin1String(option.option), choices, value));
}

std::expected<QJsonObject, QString> readSettings(const QCommandLineParser& parser) {
    QJsonObject settings;
    for (const auto& option : settingOptions) {
        const QString name = QLatin1String(option.option);
        if (!parser.isSet(name))
            continue;
        const QString value = parser.value(name);
        if (auto checked = checkChoice(option, value); !checked)
            return std::unexpected(checked.error());
        settings.insert(QLatin1String(option.key), settingValue(name, value));
    }
    if (parser.isSet("ssid"))
        settings.insert("ssids", QJsonArray::fromStringList(parser.values("ssid")));
    if (auto done = applySwitch(parser, settings, "readOnly", "read-only", "read-write"); !done)
        return std::unexpected(done.error());
    if (auto done = applySwitch(parser, settings, "enabled", "enabled", "disabled"); !done)
        return std::unexpected(done.error());
    return settings;
}

Password passwordSource(const QCommandLineParser& parser, const Invocation& invocation) {
    if (parser.isSet("password-stdin"))
        return Password::FromStandardInput;
    if (parser.optionNames().contains("ask-password"))
        return Password::FromTerminal;
    const bool takesPassword = invocation.settings.value("protocol").toString("smb") == "smb" &&
                               invocation.settings.value("auth").toString("password") == "password";
    return invocation.command == Command::Add && takesPassword ? Password::Needed
                                                               : Password::NotWanted;
}

std::expected<void, QString> readSettingsInto(Invocation& invocation,
                                              const QCommandLineParser& parser) {
    auto settings = readSettings(parser);
    if (!settings)
        return std::unexpected(settings.error());
    invocation.settings = *settings;
    invocation.mountAfterwards = parser.isSet("mount");
    if (invocation.command == Command::Add)
        for (const char* needed : {"name", "address", "share"})
            if (invocation.settings.value(QLatin1String(needed)).toString().isEmpty())
                return std::unexpected(
                    QStringLiteral("--%1 is missing").arg(QLatin1String(needed)));
    invocation.password = passwordSource(parser, invocation);
    if (invocation.command == Command::Edit && invocation.settings.isEmpty() &&
        invocation.password == Password::NotWanted)
        return std::unexpected(QStringLiteral("nothing to change"));
    return {};
}

void addOptions(QCommandLineParser& parser, const CommandDescription& command) {
    parser.addOption({{"h", "help"}, "print this help"});
    if (command.hasJson)
        parser.addOption({"json", "print JSON"});
    switch (command.command) {
    case Command::Add:
    case Command::Edit:
        addSettingOptions(parser, command.command);
        break;
    case Command::Export:
        parser.addOption({"with-passwords", "with the passwords, in clear text"});
        parser.addOption({"force", "replace a file that is there"});
        break;
    case Command::Import:
        parser.addOption({"dry-run", "tell what would be done and do nothing"});
        break;
    case Command::LogShow:
        parser.addOption({"lines", "only the last ones", "NUMBER"});
        parser.addOption({"level", "only from this level on", levelNames.join(u'|')});
        parser.addOption({"follow", "go on with what is logged from now, until Ctrl-C"});
        break;
    case Command::LogExport:
        parser.addOption({"force", "replace a file that is there"});
        break;
    default:
        break;
    }
}

/// Where an operand goes, by its name in the table, and what is said where it is missing.
struct OperandPlace {
    const char* name;
    QString Invocation::*member;
    const char* description;
    bool mayBeEmpty = false;
};
constexpr std::array operandPlaces{
    OperandPlace{"NAME|ID", &Invocation::share, "the name or id of a share"},
    OperandPlace{"KEY", &Invocation::key, "the key of a setting"},
    OperandPlace{"VALUE", &Invocation::value, "a value", true},
    OperandPlace{"FILE", &Invocation::file, "the name of a file"},
};

std::expected<void, QString> readOperands(Invocation& invocation, const char* names,
                                          QStringList operands) {
    for (QString name : QString::fromLatin1(names).split(u' ', Qt::SkipEmptyParts)) {
        const bool isOptional = name.startsWith(u'[');
        name.remove(u'[').remove(u']');
        const auto place = std::ranges::find_if(
            operandPlaces, [&](const OperandPlace& each) { return name == each.name; });
        if (operands.isEmpty() && isOptional)
            continue;
        if (operands.isEmpty() || (operands.first().isEmpty() && !place->mayBeEmpty))
            return std::unexpected(QStringLiteral("needs %1").arg(place->description));
        invocation.*(place->member) = operands.takeFirst();
    }
    if (operands.isEmpty())
        return {};
    return std::unexpected(QStringLiteral("unexpected argument '%1'").arg(operands.first()));
}

std::expected<void, QString> readLogOptions(Invocation& invocation,
                                            const QCommandLineParser& parser) {
    invocation.follow = parser.isSet("follow");
    invocation.level = qMax<qsizetype>(0, levelNames.indexOf(parser.value("level")));
    if (parser.isSet("level") && !levelNames.contains(parser.value("level")))
        return std::unexpected(QStringLiteral("--level takes %1, not '%2'")
                                   .arg(levelNames.join(u'|'), parser.value("level")));
    if (!parser.isSet("lines"))
        return {};
    bool isNumber = false;
    invocation.lines = parser.value("lines").toInt(&isNumber);
    if (!isNumber || *invocation.lines < 0)
        return std::unexpected(
            QStringLiteral("--lines takes a number, not '%1'").arg(parser.value("lines")));
    return {};
}

std::expected<void, QString> readOptions(Invocation& invocation, const QCommandLineParser& parser) {
    const QStringList given = parser.optionNames();
    invocation.json = given.contains("json");
    invocation.withPasswords = given.contains("with-passwords");
    invocation.force = given.contains("force");
    invocation.dryRun = given.contains("dry-run");
    if (invocation.command == Command::LogShow)
        return readLogOptions(invocation, parser);
    if (invocation.command == Command::Add || invocation.command == Command::Edit)
        return readSettingsInto(invocation, parser);
    return {};
}

std::expected<Invocation, EarlyEnd> parseCommand(const CommandDescription& command,
                                                 const QStringList& arguments) {
    const QString name = QLatin1String(command.name);
    QCommandLineParser parser;
    addOptions(parser, command);
    if (!parser.parse(arguments))
        return std::unexpected(wrongUsage(name + ": " + parser.errorText(), name));
    if (parser.isSet("help"))
        return std::unexpected(EarlyEnd{Succeeded, helpOf(command, parser)});

    Invocation invocation;
    invocation.command = command.command;
    if (auto read = readOperands(invocation, command.operands, parser.positionalArguments()); !read)
        return std::unexpected(wrongUsage(name + ": " + read.error(), name));
    if (auto read = readOptions(invocation, parser); !read)
        return std::unexpected(wrongUsage(name + ": " + read.error(), name));
    return invocation;
}

EarlyEnd unknownCommand(const QString& first, const QString& second) {
    const QStringList subcommands = subcommandsOf(first);
    if (!subcommands.isEmpty() && (second == "--help" || second == "-h"))
        return {Succeeded, overview()};
    if (!subcommands.isEmpty())
        return wrongUsage(QStringLiteral("%1 needs one of %2")
                              .arg(first, subcommands.join(QStringLiteral(", "))));
    const char* kind = first.startsWith(QLatin1Char('-')) ? "option" : "command";
    return wrongUsage(QStringLiteral("unknown %1 '%2'").arg(QLatin1String(kind), first));
}

} // namespace

std::expected<Invocation, EarlyEnd> parseCommandLine(const QStringList& arguments) {
    const QString first = arguments.value(1);
    if (arguments.size() < 2)
        return std::unexpected(wrongUsage(QStringLiteral("a command is missing")));
    if (first == "--help" || first == "-h" || first == "help")
        return std::unexpected(EarlyEnd{Succeeded, overview()});
    if (first == "--version")
        return std::unexpected(
            EarlyEnd{Succeeded, QStringLiteral("harbrixctl " HARBRIX_VERSION "\n")});
    const QStringList words = arguments.mid(1);
    if (const CommandDescription* command = findCommand(words))
        return parseCommand(*command, words.mid(QString::fromLatin1(command->name).count(u' ')));
    return std::unexpected(unknownCommand(first, arguments.value(2)));
}

} // namespace harbrix
