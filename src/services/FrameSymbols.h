#pragma once

#include <QDateTime>
#include <QStringList>

namespace harbrix {

/// Where the frames of a stack trace come from.
struct FrameOrigin {
    /// This program's own file: what frames of the program name is how it was called.
    QString executable;
    QString homeDirectory; ///< what "~" in a frame stands for
    /// A module that was put in place later is another one, and its symbols would mislead.
    QDateTime time;
    /// Whether a signal interrupted the program, rather than a call.
    bool isFromSignal = false;
};

/// The folders in which debug information of stripped modules is found, by their build id.
inline constexpr auto debugInformationPath = "/usr/lib/debug";

/// The frames of backtrace_symbols(3), each with its function and, where the module's debug
/// information is on this machine, its source line added:
/// "harbrix(+0x3f1c2) [0x55d0c81a71c2] harbrix::HarbrixApp::run() at src/app/HarbrixApp.cpp:130".
/// Other frames, and those that have it already, stay as they are. Reads the modules, so it is for
/// a worker; asks no server.
[[nodiscard]] QStringList withSymbols(const QStringList& frames, const FrameOrigin& origin,
                                      const QString& debugPath = debugInformationPath);

/// The text with "~" for the home folder: the user's name stands in many a path and is nobody's
/// business. A home folder that is "/" or unknown says nothing of the user.
[[nodiscard]] QString withoutHome(QString text, const QString& homeDirectory);

} // namespace harbrix
