#pragma once

#include "ctl/CommandLine.h"

#include <span>

class QCommandLineParser;

namespace harbrix {

/// A command as its users see it.
struct CommandDescription {
    Invocation::Command command;
    const char* name; ///< one word, or two: "settings get"
    const char*
        operands; ///< "NAME|ID", "KEY VALUE", "[FILE]": one a word, those in brackets optional
    bool hasJson;
    const char* summary;
    const char* detail; ///< lines for --help
};

[[nodiscard]] std::span<const CommandDescription> allCommands();
/// The command that the words begin with, the program's name left out; nothing if there is none.
[[nodiscard]] const CommandDescription* findCommand(const QStringList& words);
/// The second words of the commands whose first one this is: "get", "set" for "settings".
[[nodiscard]] QStringList subcommandsOf(const QString& firstWord);

[[nodiscard]] QString overview();
[[nodiscard]] QString helpOf(const CommandDescription& command, const QCommandLineParser& parser);

} // namespace harbrix
