#pragma once

#include <QString>

namespace harbrix {

/// From now on a fatal signal or an error that nobody catches leaves a report in the directory
/// before the process ends: with the signal's number as exit status, or with 6 for an error. To be
/// called once, on the main thread.
///
/// The handlers allocate, encode and write in a dying process, none of which signal-safety(7)
/// allows: that is accepted, since it mostly works. An alarm ends a process that gets stuck on it.
void installCrashHandlers(const QString& reportDirectory, const QString& homeDirectory);

/// The file of a report of that identifier.
[[nodiscard]] QString crashReportPath(const QString& directory, const QString& id);
inline constexpr auto crashReportFileExtension = "harbrix-crash";

} // namespace harbrix
