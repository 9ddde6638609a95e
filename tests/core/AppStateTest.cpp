#include "core/AppState.h"

#include <gtest/gtest.h>

#include <vector>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

NASStatuses statusesOf(const std::vector<Kind>& kinds) {
    NASStatuses statuses;
    for (const Kind kind : kinds) {
        NASStatus status;
        status.configID = QUuid::createUuid();
        status.mountState = kind == Kind::failed
                                ? MountState::failed(HarbrixError::mountFailed(QStringLiteral("x")))
                                : MountState(kind);
        statuses.insert(status.configID, status);
    }
    return statuses;
}

TEST(AppState, IsDerivedFromAllStatusesTogether) {
    const AppState unconfigured{AppState::Kind::unconfigured, {}};
    const AppState idle{AppState::Kind::idle, {}};
    const AppState operating{AppState::Kind::operating, {}};
    const AppState active{AppState::Kind::active, {}};
    const AppState allFailed{AppState::Kind::error, GlobalError::allMountsFailed};

    const struct {
        const char* name;
        std::vector<Kind> kinds;
        AppState appState;
        MenuBarIconState icon;
    } rows[] = {
        {"no shares", {}, unconfigured, MenuBarIconState::idle},
        {"idle", {Kind::idle}, idle, MenuBarIconState::idle},
        {"one mounted", {Kind::mounted}, active, MenuBarIconState::allMounted},
        {"all mounted", {Kind::mounted, Kind::mounted}, active, MenuBarIconState::allMounted},
        {"mounted and idle",
         {Kind::mounted, Kind::idle},
         active,
         MenuBarIconState::partiallyMounted},
        {"mounted and failed",
         {Kind::mounted, Kind::failed},
         active,
         MenuBarIconState::partiallyMounted},
        {"mounted and offline",
         {Kind::offline, Kind::mounted},
         active,
         MenuBarIconState::partiallyMounted},
        {"all failed", {Kind::failed, Kind::failed}, allFailed, MenuBarIconState::allFailed},
        {"all offline", {Kind::offline, Kind::offline}, idle, MenuBarIconState::offline},
        {"offline and failed", {Kind::offline, Kind::failed}, idle, MenuBarIconState::idle},
        {"failed and idle", {Kind::failed, Kind::idle}, idle, MenuBarIconState::idle},
        {"offline and idle", {Kind::offline, Kind::idle}, idle, MenuBarIconState::idle},
        {"mounting hides failures",
         {Kind::mounting, Kind::failed},
         operating,
         MenuBarIconState::mounting},
        {"mounting hides mounted",
         {Kind::mounted, Kind::mounting},
         operating,
         MenuBarIconState::mounting},
        {"unmounting counts as under way",
         {Kind::unmounting, Kind::offline},
         operating,
         MenuBarIconState::mounting},
    };
    for (const auto& row : rows) {
        const NASStatuses statuses = statusesOf(row.kinds);
        EXPECT_EQ(deriveAppState(statuses), row.appState) << row.name;
        EXPECT_EQ(deriveMenuBarIconState(statuses), row.icon) << row.name;
    }
}

TEST(HarbrixError, DescribesItself) {
    const QString x = QStringLiteral("a b");
    const struct {
        HarbrixError error;
        const char* text;
    } rows[] = {
        {HarbrixError::authenticationFailed(x), "Authentication failed: a b"},
        {HarbrixError::networkTimeout(x), "Network connection timed out: a b"},
        {HarbrixError::mountPointOccupied(x),
         "Mount point 'a b' is already occupied by another volume."},
        {HarbrixError::keychainWriteFailed(-25308),
         "Failed to save credentials to Keychain (OSStatus: -25308)."},
        {HarbrixError::keychainError(x), "Keychain error: a b"},
        {HarbrixError::mountFailed(x), "Mount operation failed: a b"},
        {HarbrixError::unmountFailed(x), "Unmount operation failed: a b"},
        {HarbrixError::connectionFailed(x), "Connection failed: a b"},
        {HarbrixError::timeout(x), "Operation timed out: a b"},
        {HarbrixError::unknown(x), "An unexpected error occurred: a b"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.error.errorDescription().toStdString(), row.text);
}

TEST(HarbrixError, DiffersByCaseAndPayload) {
    const auto mountFailed = HarbrixError::mountFailed(QStringLiteral("1"));
    EXPECT_EQ(mountFailed, HarbrixError::mountFailed(QStringLiteral("1")));
    EXPECT_NE(mountFailed, HarbrixError::mountFailed(QStringLiteral("2")));
    EXPECT_NE(mountFailed, HarbrixError::unmountFailed(QStringLiteral("1")));
    EXPECT_NE(HarbrixError::keychainWriteFailed(1), HarbrixError::keychainWriteFailed(2));
    EXPECT_NE(MountState::failed(mountFailed),
              MountState::failed(HarbrixError::timeout(QStringLiteral("1"))));
}

} // namespace
} // namespace harbrix
