#pragma once

#include "core/MountState.h"

#include <QHash>

namespace harbrix {

/// The summary of the application.
struct AppState {
    enum class Kind { unconfigured, idle, operating, active, error };

    Kind kind = Kind::unconfigured;
    std::optional<GlobalError> error; ///< present exactly when the kind is error

    bool operator==(const AppState&) const = default;
};

/// The summary for the status item.
enum class MenuBarIconState { idle, allMounted, partiallyMounted, allFailed, offline, mounting };

using NASStatuses = QHash<QUuid, NASStatus>;

[[nodiscard]] AppState deriveAppState(const NASStatuses& statuses);
[[nodiscard]] MenuBarIconState deriveMenuBarIconState(const NASStatuses& statuses);

} // namespace harbrix
