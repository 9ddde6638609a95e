#include "core/AppState.h"

#include <algorithm>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

qsizetype count(const NASStatuses& statuses, Kind kind) {
    return std::ranges::count(statuses, kind,
                              [](const NASStatus& status) { return status.mountState.kind(); });
}

bool anyUnderWay(const NASStatuses& statuses) {
    return count(statuses, Kind::mounting) + count(statuses, Kind::unmounting) > 0;
}

} // namespace

AppState deriveAppState(const NASStatuses& statuses) {
    if (statuses.isEmpty())
        return {AppState::Kind::unconfigured, std::nullopt};
    if (anyUnderWay(statuses))
        return {AppState::Kind::operating, std::nullopt};
    if (count(statuses, Kind::mounted) > 0)
        return {AppState::Kind::active, std::nullopt};
    if (count(statuses, Kind::failed) == statuses.size())
        return {AppState::Kind::error, GlobalError::allMountsFailed};
    return {AppState::Kind::idle, std::nullopt};
}

MenuBarIconState deriveMenuBarIconState(const NASStatuses& statuses) {
    if (statuses.isEmpty())
        return MenuBarIconState::idle;
    if (anyUnderWay(statuses))
        return MenuBarIconState::mounting;
    if (count(statuses, Kind::offline) == statuses.size())
        return MenuBarIconState::offline;
    const auto mounted = count(statuses, Kind::mounted);
    if (mounted == statuses.size())
        return MenuBarIconState::allMounted;
    if (count(statuses, Kind::failed) == statuses.size())
        return MenuBarIconState::allFailed;
    if (mounted > 0)
        return MenuBarIconState::partiallyMounted;
    return MenuBarIconState::idle;
}

} // namespace harbrix
