#include "app/ProgramOptions.h"

#include <QCommandLineParser>

namespace harbrix {

std::expected<ProgramAction, QString> parseOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.addOptions({{{"h", "help"}, {}}, {"version", {}}, {"debug-info", {}}});
    QString fault;
    if (!parser.parse(arguments))
        fault = parser.errorText();
    else if (!parser.positionalArguments().isEmpty())
        fault =
            QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().first());
    if (!fault.isEmpty())
        return std::unexpected(fault + QStringLiteral(" See harbrix --help."));
    if (parser.isSet("help"))
        return ProgramAction::ShowHelp;
    if (parser.isSet("version"))
        return ProgramAction::ShowVersion;
    return parser.isSet("debug-info") ? ProgramAction::ShowDebugInfo : ProgramAction::Run;
}

QString helpText() {
    return QStringLiteral(
        "Usage: harbrix [OPTION]\n"
        "Keeps the user's NAS shares mounted. Runs until it is told to quit; quitting takes five\n"
        "seconds and leaves the shares mounted. A second start brings the first one forward.\n"
        "harbrixctl speaks to the running program.\n\n"
        "  -h, --help      print this help\n"
        "  --version       print the version\n"
        "  --debug-info    print what a helper wants to know: system, tools, mounts, settings\n"
        "                  (without passwords)\n");
}

} // namespace harbrix
