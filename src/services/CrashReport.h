#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace harbrix {

/// What a process leaves behind when it dies of an error that nobody caught or of a fatal signal.
struct CrashReport {
    QString id;
    QString timestamp; ///< ISO 8601
    QString appVersion;
    QString buildNumber;
    QString osVersion;
    QString deviceModel;
    QString exceptionType; ///< "NSException" or "Signal"
    std::optional<QString> exceptionName;
    std::optional<QString> reason;
    QStringList stackTrace; ///< one frame an entry, the innermost first

    /// A report of now about this program on this machine, without what happened.
    [[nodiscard]] static CrashReport ofThisProgram();

    bool operator==(const CrashReport&) const = default;
};

[[nodiscard]] QByteArray encodeCrashReport(const CrashReport& report);
[[nodiscard]] Result<CrashReport, SystemError> decodeCrashReport(const QByteArray& json);

} // namespace harbrix
