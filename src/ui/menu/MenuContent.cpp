#include "ui/menu/MenuContent.h"

#include "files/FileUrl.h"
#include "files/RecentFilesTracker.h"
#include "services/MountStateText.h"
#include "services/Text.h"

#include <ranges>

namespace harbrix {
namespace {

MenuEntry separator() {
    return {};
}

MenuEntry command(MenuCommand command, const QString& title, const QString& keyEquivalent = {}) {
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::command;
    entry.title = title;
    entry.command = command;
    entry.keyEquivalent = keyEquivalent;
    return entry;
}

/// The part that follows what there is to tell.
class PassingEntries {
public:
    explicit PassingEntries(std::vector<MenuEntry>& menu) : m_menu(menu) {}

    void row(const QString& title) { add(MenuEntry::Kind::row, title); }
    void separator() { add(MenuEntry::Kind::separator, {}); }
    MenuEntry& command(MenuCommand command, const QString& title) {
        MenuEntry& entry = add(MenuEntry::Kind::command, title);
        entry.command = command;
        return entry;
    }

private:
    MenuEntry& add(MenuEntry::Kind kind, const QString& title) {
        MenuEntry& entry = m_menu.emplace_back();
        entry.kind = kind;
        entry.title = title;
        entry.comesAndGoes = true;
        return entry;
    }

    std::vector<MenuEntry>& m_menu;
};

void addShareRows(PassingEntries& menu, const std::vector<NASConfig>& configs,
                  const NASStatuses& statuses) {
    if (configs.empty())
        menu.row(text("menubar.noConfigs"));
    for (const NASConfig& config : configs) {
        const MountState state = statuses.value(config.id).mountState;
        menu.row(rowMarker(state.kind()) + QLatin1Char(' ') + config.name +
                 QStringLiteral("  —  ") + statusText(state));
        if (state.kind() == MountState::Kind::mounted)
            menu.command(MenuCommand::openFileBrowser, text("menubar.browseFiles")).target =
                config.id;
    }
}

void addRecentFiles(PassingEntries& menu, const std::vector<RecentFile>& recentFiles) {
    if (recentFiles.empty())
        return;
    menu.separator();
    menu.row(text("menubar.recentFiles"));
    for (const RecentFile& file :
         recentFiles | std::views::take(RecentFilesTracker::maxDisplayCount)) {
        MenuEntry& entry =
            menu.command(MenuCommand::openRecentFile, QStringLiteral("  ") + file.name);
        entry.target = file.url;
        entry.toolTip = pathText(file.url);
    }
}

} // namespace

QString rowMarker(MountState::Kind kind) {
    switch (kind) {
    case MountState::Kind::idle:
        break;
    case MountState::Kind::offline:
        return QStringLiteral("⚫");
    case MountState::Kind::unmounting:
        return QStringLiteral("🟠");
    case MountState::Kind::mounting:
        return QStringLiteral("🟡");
    case MountState::Kind::mounted:
        return QStringLiteral("🟢");
    case MountState::Kind::failed:
        return QStringLiteral("🔴");
    }
    return QStringLiteral("⚪");
}

std::vector<MenuEntry> menuContent(const std::vector<NASConfig>& configs,
                                   const NASStatuses& statuses,
                                   const std::vector<RecentFile>& recentFiles) {
    std::vector<MenuEntry> menu;
    PassingEntries passing(menu);
    addShareRows(passing, configs, statuses);
    addRecentFiles(passing, recentFiles);
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::mountAll, text("menubar.mountAll")));
    menu.push_back(command(MenuCommand::unmountAll, text("menubar.unmountAll")));
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::openMainWindow, text("menubar.openMainWindow")));
    menu.push_back(
        command(MenuCommand::openSettings, text("menubar.openSettings"), QStringLiteral(",")));
    menu.push_back(command(MenuCommand::checkForUpdates, text("menubar.checkForUpdates")));
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::openAbout, text("menubar.about")));
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::quit, text("menubar.quit"), QStringLiteral("q")));
    return menu;
}

} // namespace harbrix
