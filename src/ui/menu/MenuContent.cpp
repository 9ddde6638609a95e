#include "ui/menu/MenuContent.h"

#include "services/MountStateText.h"
#include "services/Text.h"

namespace harbrix {
namespace {

MenuEntry separator() {
    return {};
}

MenuEntry row(const QString& title) {
    return {MenuEntry::Kind::row, title, MenuCommand::none, {}};
}

MenuEntry command(MenuCommand command, const QString& title, const QString& keyEquivalent = {}) {
    return {MenuEntry::Kind::command, title, command, keyEquivalent};
}

void addShareRows(std::vector<MenuEntry>& menu, const std::vector<NASConfig>& configs,
                  const NASStatuses& statuses) {
    if (configs.empty())
        menu.push_back(row(text("menubar.noConfigs")));
    for (const NASConfig& config : configs) {
        const MountState state = statuses.value(config.id).mountState;
        menu.push_back(row(rowMarker(state.kind()) + QLatin1Char(' ') + config.name +
                           QStringLiteral("  —  ") + statusText(state)));
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
                                   const NASStatuses& statuses) {
    std::vector<MenuEntry> menu;
    addShareRows(menu, configs, statuses);
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::mountAll, text("menubar.mountAll")));
    menu.push_back(command(MenuCommand::unmountAll, text("menubar.unmountAll")));
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::openMainWindow, text("menubar.openMainWindow")));
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::openAbout, text("menubar.about")));
    menu.push_back(separator());
    menu.push_back(command(MenuCommand::quit, text("menubar.quit"), QStringLiteral("q")));
    return menu;
}

} // namespace harbrix
