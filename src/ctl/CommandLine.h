#pragma once

#include "ctl/ExitCode.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>

namespace harbrix {

/// What the user asked harbrixctl to do.
struct Invocation {
    enum class Command {
        List,
        Status,
        Add,
        Edit,
        Remove,
        Mount,
        Unmount,
        MountAll,
        UnmountAll,
        Watch,
        Export,
        Import,
        SettingsList,
        SettingsGet,
        SettingsSet,
        SettingsReset,
        LogShow,
        LogExport,
        LogClear,
        Quit
    };
    enum class Password {
        NotWanted,
        FromStandardInput,
        FromTerminal,
        /// From the terminal if there is one, else it is wrong usage.
        Needed
    };

    Command command = Command::List;
    QString share = {};        ///< name or id; empty for all
    QString key = {};          ///< of a setting of the program
    QString value = {};        ///< for it, as it was typed
    QString file = {};         ///< to read or to write; empty or "-" for a standard stream
    QJsonObject settings = {}; ///< of add and edit, as the program takes them
    Password password = Password::NotWanted;
    bool json = false;
    bool mountAfterwards = false;
    bool withPasswords = false;
    bool force = false;
    bool dryRun = false;
    bool follow = false;
    int level = 0; ///< the lowest of the log that is shown, 0 (debug) to 4 (critical)
    std::optional<int> lines = {}; ///< at most so many of the log, the last ones

    bool operator==(const Invocation&) const = default;
};

/// Why nothing is to be done: a text for standard output (help, version) when the code is
/// Succeeded, else one line for standard error.
struct EarlyEnd {
    ExitCode code = WrongUsage;
    QString text;
};

/// `arguments` begins with the program's name. Needs a QCoreApplication for the texts of --help.
[[nodiscard]] std::expected<Invocation, EarlyEnd> parseCommandLine(const QStringList& arguments);

} // namespace harbrix
