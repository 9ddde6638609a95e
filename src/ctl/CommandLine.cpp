#include "ctl/CommandLine.h"

#include <QCommandLineParser>
#include <QDir>
#include <QJsonArray>

#include <array>

namespace harbrix {
namespace {

using Command = Invocation::Command;
using Password = Invocation::Password;

enum class Operand { None, Share, OptionalShare };

struct CommandDescription {
    Command command;
    const char* name;
    Operand operand;
    bool hasJson;
    const char* summary;
    const char* detail;
};

constexpr std::array commands{
    CommandDescription{Command::List, "list", Operand::None, true, "list all shares", ""},
    CommandDescription{
        Command::Status, "status", Operand::OptionalShare, true,
        "show the state of all shares, or all that is known of one",
        "VOLUME tells whether a network volume is really there: a server that refused\n"
        "the password can leave a share \"mounted\" without one.\n"},
    CommandDescription{
        Command::Add, "add", Operand::None, false, "add a share",
        "Needs --name, --address and --share. For an SMB share with --auth password (the\n"
        "default) the password is asked for on the terminal, or read with\n"
        "--password-stdin; it goes into the secret store. Nothing is mounted unless\n"
        "--mount is given.\n"},
    CommandDescription{Command::Edit, "edit", Operand::Share, false,
                       "change settings of a share; what is not named stays",
                       "A live mount stays as it is; the new settings hold from the next mount.\n"},
    CommandDescription{Command::Remove, "remove", Operand::Share, false,
                       "remove a share and its stored password", "Does not unmount it.\n"},
    CommandDescription{
        Command::Mount, "mount", Operand::Share, false, "mount a share",
        "Ends when the mount has ended, on whatever network the machine is. Fails also\n"
        "when no volume is there although the mount tool was content.\n"},
    CommandDescription{Command::Unmount, "unmount", Operand::Share, false, "unmount a share", ""},
    CommandDescription{Command::MountAll, "mount-all", Operand::None, false,
                       "mount all enabled shares that belong on this network", ""},
    CommandDescription{Command::UnmountAll, "unmount-all", Operand::None, false,
                       "unmount all enabled shares", ""},
    CommandDescription{Command::Watch, "watch", Operand::None, true,
                       "print the state of each share now and at each change, until Ctrl-C", ""},
    CommandDescription{Command::Quit, "quit", Operand::None, false,
                       "end the running program; its shares stay mounted", ""},
};

constexpr auto exitCodes =
    "Exit codes: 0 done, 1 failed, 2 no such share or several of that name,\n"
    "64 wrong usage, 69 Harbrix is not running.\n";

QString overview() {
    QString text = QStringLiteral("Usage: harbrixctl COMMAND [OPTION...]\n"
                                  "Speaks to the running Harbrix. A share is given by its name or "
                                  "its id.\n\nCommands:\n");
    for (const auto& command : commands)
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -12)
                    .arg(QLatin1String(command.summary));
    text += QStringLiteral("\nharbrixctl COMMAND --help tells the options of one, "
                           "harbrixctl --version the version.\n%1\n")
                .arg(QLatin1String(exitCodes));
    return text;
}

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

QString helpOf(const CommandDescription& command, const QCommandLineParser& parser) {
    const char* operand = command.operand == Operand::Share           ? " NAME|ID"
                          : command.operand == Operand::OptionalShare ? " [NAME|ID]"
                                                                      : "";
    // Qt names the program in full and without the command in its first line.
    const QString options = parser.helpText().section(QLatin1Char('\n'), 1);
    const QString text = QStringLiteral("Usage: harbrixctl %1%2 [OPTION...]\n%3\n")
                             .arg(QLatin1String(command.name), QLatin1String(operand),
                                  QLatin1String(command.summary));
    return text + QLatin1String(command.detail) + options + QLatin1Char('\n') +
           QLatin1String(exitCodes);
}

std::expected<Invocation, EarlyEnd> parseCommand(const CommandDescription& command,
                                                 const QStringList& arguments) {
    const QString name = QLatin1String(command.name);
    QCommandLineParser parser;
    parser.addOption({{"h", "help"}, "print this help"});
    if (command.hasJson)
        parser.addOption({"json", "print JSON"});
    if (command.command == Command::Add || command.command == Command::Edit)
        addSettingOptions(parser, command.command);
    if (!parser.parse(arguments))
        return std::unexpected(wrongUsage(name + ": " + parser.errorText(), name));
    if (parser.isSet("help"))
        return std::unexpected(EarlyEnd{Succeeded, helpOf(command, parser)});

    Invocation invocation;
    invocation.command = command.command;
    invocation.json = command.hasJson && parser.isSet("json");
    const QStringList operands = parser.positionalArguments();
    const int allowed = command.operand == Operand::None ? 0 : 1;
    if (operands.size() > allowed)
        return std::unexpected(wrongUsage(
            QStringLiteral("%1: unexpected argument '%2'").arg(name, operands[allowed]), name));
    if (!operands.isEmpty())
        invocation.share = operands.first();
    if (command.operand != Operand::None && invocation.share.isEmpty() &&
        (command.operand == Operand::Share || !operands.isEmpty()))
        return std::unexpected(wrongUsage(name + " needs the name or id of a share", name));
    if (command.command == Command::Add || command.command == Command::Edit)
        if (auto read = readSettingsInto(invocation, parser); !read)
            return std::unexpected(wrongUsage(name + ": " + read.error(), name));
    return invocation;
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
    for (const auto& command : commands)
        if (first == QLatin1String(command.name))
            return parseCommand(command, arguments.mid(1));
    const char* kind = first.startsWith(QLatin1Char('-')) ? "option" : "command";
    return std::unexpected(
        wrongUsage(QStringLiteral("unknown %1 '%2'").arg(QLatin1String(kind), first)));
}

} // namespace harbrix
