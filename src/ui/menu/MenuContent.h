#pragma once

#include "config/NASConfig.h"
#include "core/AppState.h"

#include <QString>
#include <QUrl>
#include <QUuid>

#include <variant>
#include <vector>

namespace harbrix {

struct RecentFile;

/// What an entry of the menu does.
enum class MenuCommand {
    none,
    openFileBrowser,
    openRecentFile,
    mountAll,
    unmountAll,
    openMainWindow,
    openSettings,
    checkForUpdates,
    openAbout,
    quit
};

struct MenuEntry {
    enum class Kind { separator, row, command };

    Kind kind = Kind::separator;
    QString title;
    MenuCommand command = MenuCommand::none;
    QString keyEquivalent; ///< with the desktop's usual modifier; mostly empty
    /// What openFileBrowser and openRecentFile are about: the id of a share, the URL of a file.
    std::variant<std::monostate, QUuid, QUrl> target;
    QString toolTip;
    /// Above the commands that are always there.
    bool comesAndGoes = false;

    bool operator==(const MenuEntry&) const = default;
};

/// The mark before the name of a share; a share without a status counts as idle.
[[nodiscard]] QString rowMarker(MountState::Kind kind);

/// The whole menu of the status item, top to bottom. Rows only tell; all commands are enabled in
/// every state. Of the recent files the first few are offered.
[[nodiscard]] std::vector<MenuEntry> menuContent(const std::vector<NASConfig>& configs,
                                                 const NASStatuses& statuses,
                                                 const std::vector<RecentFile>& recentFiles);

} // namespace harbrix
