#pragma once

#include "automation/NetworkBinding.h"
#include "base/Scheduler.h"
#include "config/NASConfig.h"
#include "core/AppState.h"

#include <QJsonObject>

#include <optional>

namespace harbrix {

/// All that is known of one share at a moment.
struct ShareFacts {
    NASConfig config;
    NASStatus status;
    QString mountPoint; ///< where it is mounted or would be
    bool isOnline = false;
    NetworkMatchResult match;
    std::optional<Seconds> untilRetry;        ///< to the next attempt after a failure
    std::optional<Seconds> untilDelayedMount; ///< to a mount that was decided upon
    int failures = 0;                         ///< in a row
};

/// What the remote control tells of a share. No password and no name of a stored one is in it.
/// Whether a volume is there ("volume": "present" or "missing") takes a look at the file system and
/// is added by those who took it.
[[nodiscard]] QJsonObject describe(const ShareFacts& facts);

/// Why the share is in its state and what comes next, in one sentence; empty where the state says
/// it all.
[[nodiscard]] QString reasonFor(const ShareFacts& facts);

/// The state as it is named, for tools that read it: "active".
[[nodiscard]] QString nameOf(AppState::Kind kind);

} // namespace harbrix
