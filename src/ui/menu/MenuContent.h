#pragma once

#include "config/NASConfig.h"
#include "core/AppState.h"

#include <QString>

#include <vector>

namespace harbrix {

/// What an entry of the menu does.
enum class MenuCommand { none, mountAll, unmountAll, openMainWindow, openAbout, quit };

struct MenuEntry {
    enum class Kind { separator, row, command };

    Kind kind = Kind::separator;
    QString title;
    MenuCommand command = MenuCommand::none;
    QString keyEquivalent; ///< with the desktop's usual modifier; mostly empty

    bool operator==(const MenuEntry&) const = default;
};

/// The mark before the name of a share; a share without a status counts as idle.
[[nodiscard]] QString rowMarker(MountState::Kind kind);

/// The whole menu of the status item, top to bottom. Rows only tell; all commands are enabled in
/// every state.
[[nodiscard]] std::vector<MenuEntry> menuContent(const std::vector<NASConfig>& configs,
                                                 const NASStatuses& statuses);

} // namespace harbrix
