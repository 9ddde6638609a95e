#pragma once

#include "ctl/ExitCode.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace harbrix {

/// What is told to a person about shares, from the JSON that the program gives. Every text that
/// the user or a server chose is made visible first.

[[nodiscard]] QString renderList(const QJsonArray& shares);
/// The answer to a status call: the network, if it is told, and a row a share.
[[nodiscard]] QString renderStatus(const QJsonObject& status);
/// Everything that is known of one share, a line a fact.
[[nodiscard]] QString renderShare(const QJsonObject& share);
/// The line that watch prints: the time of day, the share and its state.
[[nodiscard]] QString renderChange(const QString& timeOfDay, const QJsonObject& share);

/// How an operation on a share came out: lines for standard output and error.
struct Outcome {
    ExitCode code = Succeeded;
    QString output;
    QString error;

    bool operator==(const Outcome&) const = default;
};

/// After a mount. A share that counts as mounted without a volume is a failure: behind the password
/// prompt the mount tool's own verdict is not seen.
[[nodiscard]] Outcome mountOutcome(const QJsonObject& share);
/// After an unmount. A volume that is still there is a failure: the program lets go only of mounts
/// that it knows.
[[nodiscard]] Outcome unmountOutcome(const QJsonObject& share);
/// After mount-all or unmount-all: the shares that this was about, and the first failure's code. A
/// share that the network keeps from being mounted is no failure.
[[nodiscard]] Outcome mountAllOutcome(const QJsonArray& shares);
[[nodiscard]] Outcome unmountAllOutcome(const QJsonArray& shares);

/// After an import, or a trial of one: a line a share, what became of it.
[[nodiscard]] Outcome importOutcome(const QJsonObject& import, bool isTrial);

/// A row a setting: key, value, default, and what it takes.
[[nodiscard]] QString renderSettings(const QJsonArray& settings);
/// The value of a setting as it is typed to set it.
[[nodiscard]] QString renderValue(const QJsonValue& value);

} // namespace harbrix
