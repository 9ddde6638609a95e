#include "core/AppStateManager.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

class AppStateManagerTest : public testing::Test {
protected:
    QDateTime now = QDateTime::fromSecsSinceEpoch(1'000'000);
    AppStateManager manager{[this] { return now; }};
    const QUuid id = QUuid::createUuid();
    const QUrl mountPoint = QUrl::fromLocalFile(QStringLiteral("/home/u/HarbrixVolumes/media"));
    const HarbrixError error = HarbrixError::timeout(QStringLiteral("slow"));

    NASStatus status() const { return manager.status(id).value(); }
};

TEST_F(AppStateManagerTest, KeepsTheMountPointOnlyWhileMounted) {
    for (const Kind kind : {Kind::idle, Kind::mounting, Kind::unmounting, Kind::offline}) {
        manager.updateStatus(id, kind, mountPoint);
        EXPECT_EQ(status().mountPoint, std::nullopt) << status().mountState.name().toStdString();
    }
    manager.updateStatus(id, MountState::failed(error), mountPoint);
    EXPECT_EQ(status().mountPoint, std::nullopt);
    manager.updateStatus(id, Kind::mounted, mountPoint);
    EXPECT_EQ(status().mountPoint, mountPoint);
}

TEST_F(AppStateManagerTest, RemembersTheLastMountAndTheLastError) {
    manager.updateStatus(id, Kind::mounted, mountPoint);
    const QDateTime firstMount = now;
    now = now.addSecs(60);
    manager.updateStatus(id, MountState::failed(error));
    EXPECT_EQ(status().lastMountedAt, firstMount);
    EXPECT_EQ(status().lastError, error);

    manager.updateStatus(id, Kind::mounted, mountPoint);
    EXPECT_EQ(status().lastMountedAt, now);
    EXPECT_EQ(status().mountState, Kind::mounted);
    EXPECT_EQ(status().lastError, error) << "a success must not hide what went wrong before";
}

TEST_F(AppStateManagerTest, ALateResultBringsARemovedShareBack) {
    manager.ensureStatus(id);
    manager.removeStatus(id);
    EXPECT_EQ(manager.appState().kind, AppState::Kind::unconfigured);
    manager.updateStatus(id, MountState::failed(error));
    EXPECT_EQ(manager.appState().kind, AppState::Kind::error);
    EXPECT_EQ(manager.menuBarIconState(), MenuBarIconState::allFailed);
}

TEST_F(AppStateManagerTest, EnsureKeepsAnExistingStatus) {
    manager.updateStatus(id, Kind::mounted, mountPoint);
    const NASStatus before = status();
    manager.ensureStatus(id);
    EXPECT_EQ(status(), before);
}

TEST_F(AppStateManagerTest, ResetAndClearReturnToTheBeginning) {
    manager.updateStatus(id, Kind::mounted, mountPoint);
    manager.resetAllStatuses();
    NASStatus blank;
    blank.configID = id;
    EXPECT_EQ(status(), blank);
    EXPECT_EQ(manager.appState().kind, AppState::Kind::idle);

    manager.clear();
    EXPECT_EQ(manager.status(id), std::nullopt);
    EXPECT_EQ(manager.appState(), AppState{});
}

TEST_F(AppStateManagerTest, ObserversSeeStatusAndSummariesInStep) {
    QStringList told;
    QObject::connect(&manager, &AppStateManager::menuBarIconStateChanged, &manager,
                     [&](MenuBarIconState state) {
                         EXPECT_EQ(state, deriveMenuBarIconState(manager.nasStatuses()));
                         told << QStringLiteral("icon");
                     });
    QObject::connect(&manager, &AppStateManager::statusChanged, &manager, [&](const QUuid& which) {
        EXPECT_EQ(which, id);
        EXPECT_EQ(manager.appState(), deriveAppState(manager.nasStatuses()));
        told << QStringLiteral("status");
    });
    QObject::connect(&manager, &AppStateManager::changed, &manager,
                     [&] { told << QStringLiteral("changed"); });
    manager.updateStatus(id, Kind::mounted, mountPoint);
    manager.updateStatus(id, Kind::mounted, mountPoint);
    EXPECT_EQ(told.join(QLatin1Char(' ')).toStdString(), "icon status changed status changed");
}

} // namespace
} // namespace harbrix
