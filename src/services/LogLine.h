#pragma once

#include "services/LogManager.h"

#include <QDateTime>

namespace harbrix {

/// The label of a level in the log file: "DEBUG", "INFO", "WARN", "ERROR", "CRIT".
[[nodiscard]] QString logLevelLabel(LogLevel level);
/// The mark of a level in the level picker.
[[nodiscard]] QString logLevelMark(LogLevel level);

/// The compiler's text of a function, cut to its name and the types of its parameters:
/// "mountSMB(NASConfig)". A lambda counts as the function around it.
[[nodiscard]] QString functionSignature(const QString& prettyFunction);

/// A line of the log file, without a line feed:
/// "[2026-03-01 14:05:09.417] [INFO] [Mount] MountEngine.cpp:88 mountSMB(NASConfig) - Mounted".
[[nodiscard]] QString formatLogLine(const QDateTime& localTime, LogLevel level,
                                    const QString& category, const std::source_location& where,
                                    const QString& message);

} // namespace harbrix
