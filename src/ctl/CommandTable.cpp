#include "ctl/CommandTable.h"

#include <QCommandLineParser>

#include <array>

namespace harbrix {
namespace {

using Command = Invocation::Command;

constexpr std::array commands{
    CommandDescription{Command::List, "list", "", true, "list all shares", ""},
    CommandDescription{
        Command::Status, "status", "[NAME|ID]", true,
        "show the state of all shares, or all that is known of one",
        "VOLUME tells whether a network volume is really there: a server that refused\n"
        "the password can leave a share \"mounted\" without one.\n"},
    CommandDescription{
        Command::Add, "add", "", false, "add a share",
        "Needs --name, --address and --share. For an SMB share with --auth password (the\n"
        "default) the password is asked for on the terminal, or read with\n"
        "--password-stdin; it goes into the secret store. Nothing is mounted unless\n"
        "--mount is given.\n"},
    CommandDescription{Command::Edit, "edit", "NAME|ID", false,
                       "change settings of a share; what is not named stays",
                       "A live mount stays as it is; the new settings hold from the next mount.\n"},
    CommandDescription{Command::Remove, "remove", "NAME|ID", false,
                       "remove a share and its stored password", "Does not unmount it.\n"},
    CommandDescription{
        Command::Mount, "mount", "NAME|ID", false, "mount a share",
        "Ends when the mount has ended, on whatever network the machine is. Fails also\n"
        "when no volume is there although the mount tool was content.\n"},
    CommandDescription{Command::Unmount, "unmount", "NAME|ID", false, "unmount a share", ""},
    CommandDescription{Command::MountAll, "mount-all", "", false,
                       "mount all enabled shares that belong on this network", ""},
    CommandDescription{Command::UnmountAll, "unmount-all", "", false, "unmount all enabled shares",
                       ""},
    CommandDescription{Command::Watch, "watch", "", true,
                       "print the state of each share now and at each change, until Ctrl-C", ""},
    CommandDescription{
        Command::Export, "export", "[FILE]", false, "write the records of all shares as JSON",
        "Without FILE, or with -, to standard output. Passwords stay out unless\n"
        "--with-passwords is given; then they come from the secret store, in clear text.\n"
        "A file has mode 0600 and is complete or not there at all.\n"},
    CommandDescription{
        Command::Import, "import", "FILE", true, "add and update shares from exported records",
        "FILE is what export wrote; - is standard input. A record with the id of a share\n"
        "replaces that share's settings (updated), or is left (skipped) where nothing is\n"
        "different; another one becomes a new share (added). Passwords in the file go\n"
        "into the secret store; without one the stored password stays. A file that is\n"
        "damaged changes nothing. Nothing is mounted or unmounted.\n"},
    CommandDescription{Command::SettingsList, "settings list", "", true,
                       "list the settings of the program", ""},
    CommandDescription{Command::SettingsGet, "settings get", "KEY", true,
                       "print the value of a setting", ""},
    CommandDescription{
        Command::SettingsSet, "settings set", "KEY VALUE", false, "change a setting",
        "Does what its control in the settings window does, at once. settings list --json\n"
        "tells what each takes. cache.maxSize is in bytes here, as it is stored.\n"},
    CommandDescription{Command::SettingsReset, "settings reset", "KEY", false,
                       "return a setting to its default", ""},
    CommandDescription{
        Command::LogShow, "log show", "", false, "print the log",
        "Prints the log files of the program, the oldest line first. They are written\n"
        "only while the setting log.fileEnabled is true; the journal has the log in any\n"
        "case: journalctl -t harbrix\n"},
    CommandDescription{Command::LogExport, "log export", "FILE", false,
                       "copy the log files into one file", ""},
    CommandDescription{Command::LogClear, "log clear", "", false, "remove the log files",
                       "What the journal has is not touched.\n"},
    CommandDescription{Command::Quit, "quit", "", false,
                       "end the running program; its shares stay mounted", ""},
};

constexpr auto exitCodes =
    "Exit codes: 0 done, 1 failed, 2 no such share or several of that name,\n"
    "64 wrong usage, 65 damaged input, 69 Harbrix is not running.\n";

} // namespace

std::span<const CommandDescription> allCommands() {
    return commands;
}

const CommandDescription* findCommand(const QStringList& words) {
    for (const auto& command : commands) {
        const QStringList name = QString::fromLatin1(command.name).split(u' ');
        if (words.mid(0, name.size()) == name)
            return &command;
    }
    return nullptr;
}

QStringList subcommandsOf(const QString& firstWord) {
    QStringList found;
    for (const auto& command : commands) {
        const QStringList name = QString::fromLatin1(command.name).split(u' ');
        if (name.size() > 1 && name.first() == firstWord)
            found << name.last();
    }
    return found;
}

QString overview() {
    QString text = QStringLiteral("Usage: harbrixctl COMMAND [OPTION...]\n"
                                  "Speaks to the running Harbrix. A share is given by its name or "
                                  "its id.\n\nCommands:\n");
    for (const auto& command : commands)
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -14)
                    .arg(QLatin1String(command.summary));
    text += QStringLiteral("\nharbrixctl COMMAND --help tells the options of one, "
                           "harbrixctl --version the version.\n%1\n")
                .arg(QLatin1String(exitCodes));
    return text;
}

QString helpOf(const CommandDescription& command, const QCommandLineParser& parser) {
    const QString operands = QLatin1String(command.operands);
    // Qt names the program in full and without the command in its first line.
    const QString options = parser.helpText().section(QLatin1Char('\n'), 1);
    const QString text =
        QStringLiteral("Usage: harbrixctl %1%2 [OPTION...]\n%3\n")
            .arg(QLatin1String(command.name), operands.isEmpty() ? operands : u' ' + operands,
                 QLatin1String(command.summary));
    return text + QLatin1String(command.detail) + options + QLatin1Char('\n') +
           QLatin1String(exitCodes);
}

} // namespace harbrix
