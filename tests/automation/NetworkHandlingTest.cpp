#include "StrategyTest.h"

namespace harbrix {
namespace {

class NetworkHandlingTest : public StrategyTest {
protected:
    /// Starts with the launch mount out of the way.
    void startQuietly() {
        automation.defaults.set(AutoMountStrategy::autoMountOnLaunchKey, false);
        automation.strategy.start();
    }
};

TEST_F(NetworkHandlingTest, MountsAtLaunchUnlessToldNotTo) {
    using Value = UserDefaults::Value;
    const std::vector<std::pair<std::optional<Value>, std::vector<double>>> rows{
        {std::nullopt, {2.0}},
        {Value(true), {2.0}},
        {Value(QString("no")), {2.0}},
        {Value(false), {}},
    };
    for (const auto& [stored, expected] : rows) {
        Automation machine(directory.filePath("launch.json"));
        machine.defaults.remove(AutoMountStrategy::autoMountOnLaunchKey);
        if (stored)
            machine.defaults.set(AutoMountStrategy::autoMountOnLaunchKey, *stored);
        const NASConfig config = machine.add("media");
        machine.goOnline();
        machine.scheduler.settle(); // the network is known before the start
        machine.strategy.start();
        machine.scheduler.advance(60s);
        std::vector<double> times;
        for (const auto& call : machine.engine.calls)
            times.push_back(Seconds(call.at).count());
        EXPECT_EQ(times, expected);
        machine.store.remove(config.id);
    }
}

TEST_F(NetworkHandlingTest, ABurstOfChangesIsActedUponOnceTwoSecondsAfterTheLast) {
    startQuietly();
    automation.add("media");
    for (int i = 0; i < 10; ++i) {
        automation.goOnline();
        automation.scheduler.advance(0.2s);
    }
    EXPECT_TRUE(automation.strategy.isDebouncePending());
    automation.scheduler.advance(60s);
    EXPECT_EQ(mountTimes(), std::vector<double>{1.8 + 2.0 + 5.0});
    EXPECT_FALSE(automation.strategy.isDebouncePending());
}

struct ChangeRow {
    MountState before;
    bool volumeIsThere;
    bool matches;
    MountState atDebounce;       ///< once the change was acted upon
    MountState fiveSecondsLater; ///< with mounts that succeed at once
};

TEST_F(NetworkHandlingTest, WhatAChangeDoesToAShareInEachState) {
    const MountState failed = MountState::failed(refused);
    const std::vector<ChangeRow> rows{
        {Kind::idle, false, true, Kind::idle, Kind::mounted},
        {Kind::offline, false, true, Kind::offline, Kind::mounted},
        {Kind::offline, true, true, Kind::offline, Kind::mounted},
        {failed, false, true, failed, Kind::mounted},
        {Kind::mounting, false, true, Kind::mounting, Kind::mounted},
        {Kind::mounted, true, true, Kind::mounted, Kind::mounted},
        {Kind::mounted, false, true, Kind::offline, Kind::mounted},
        {Kind::idle, false, false, Kind::idle, Kind::idle},
        {Kind::offline, true, false, Kind::idle, Kind::idle},
        {failed, false, false, Kind::idle, Kind::idle},
        {Kind::mounting, false, false, Kind::idle, Kind::idle},
        {Kind::mounted, true, false, Kind::idle, Kind::idle},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const ChangeRow& row = rows[i];
        Automation machine(directory.filePath("change.json"));
        machine.defaults.set(AutoMountStrategy::autoMountOnLaunchKey, false);
        machine.defaults.set(AutoMountStrategy::keepAliveEnabledKey, false);
        const NASConfig config = machine.add("media");
        machine.strategy.start();
        const QString path = machine.engine.resolveMountPoint(config);
        machine.appState.updateStatus(config.id, row.before, directoryUrl(path));
        if (row.volumeIsThere)
            machine.engine.volumes.insert(path);
        machine.goOnline(row.matches ? "192.168.1.5" : "10.0.0.5");
        machine.scheduler.advance(2s);
        EXPECT_EQ(machine.state(config), row.atDebounce) << "row " << i;
        machine.scheduler.advance(5s);
        EXPECT_EQ(machine.state(config), row.fiveSecondsLater) << "row " << i;
        EXPECT_EQ(machine.engine.countOf(Verb::Unmount),
                  row.before == Kind::mounted && !row.matches ? 1 : 0)
            << "row " << i;
        machine.store.remove(config.id);
    }
}

TEST_F(NetworkHandlingTest, LosingTheNetworkTurnsEnabledSharesOfflineAndUnmountsNothing) {
    const NASConfig mounted = automation.add("a");
    const NASConfig far = automation.add("b", "10.0.0.0/8");
    NASConfig off = automation.add("c");
    off.isEnabled = false;
    automation.store.update(off);
    startQuietly();
    automation.goOnline();
    automation.scheduler.settle();
    automation.mount(mounted);
    automation.mount(off);
    failAllMounts();
    automation.mount(far);
    automation.scheduler.settle();
    ASSERT_EQ(automation.strategy.pendingRetries(), 1U);

    automation.goOffline();
    automation.scheduler.advance(2s);
    EXPECT_EQ(automation.state(mounted), Kind::offline);
    EXPECT_EQ(automation.mountPoint(mounted), "");
    EXPECT_EQ(automation.state(far), Kind::offline);
    EXPECT_EQ(automation.state(off), Kind::mounted);
    EXPECT_EQ(automation.strategy.pendingRetries(), 0U);
    EXPECT_EQ(automation.strategy.retryCount(far.id), 0);
    EXPECT_EQ(automation.engine.countOf(Verb::Unmount), 0);

    automation.goOnline();
    automation.scheduler.advance(7s);
    EXPECT_EQ(automation.state(mounted), Kind::mounted);
    EXPECT_EQ(automation.state(far), Kind::idle);
}

TEST_F(NetworkHandlingTest, ADelayedMountLooksAtNothingAgain) {
    startQuietly();
    const NASConfig config = automation.add("media");
    automation.goOnline();
    automation.scheduler.advance(2s);
    EXPECT_EQ(automation.strategy.timeUntilDelayedMount(config.id), 5s);
    automation.goOffline();
    automation.scheduler.advance(5s);
    EXPECT_EQ(mountTimes(), std::vector<double>{7.0});
}

TEST_F(NetworkHandlingTest, ADelayedMountGoesWithItsRecord) {
    startQuietly();
    const NASConfig config = automation.add("media");
    automation.goOnline();
    automation.scheduler.advance(2s);
    automation.store.remove(config.id);
    automation.scheduler.advance(60s);
    EXPECT_TRUE(automation.engine.calls.empty());
    EXPECT_TRUE(automation.appState.nasStatuses().isEmpty());
}

TEST_F(NetworkHandlingTest, WhatIsEditedWhileItWaitsIsMountedAsStored) {
    startQuietly();
    NASConfig config = automation.add("");
    automation.goOnline();
    automation.scheduler.advance(2s);
    config.name = "media";
    automation.store.update(config);
    EXPECT_EQ(automation.strategy.timeUntilDelayedMount(config.id), 5s);
    failAllMounts();
    automation.scheduler.advance(5s);
    config.name = "films";
    automation.store.update(config);
    automation.engine.planMount = [](const NASConfig&) { return ScriptedMountOperations::Plan{}; };
    automation.scheduler.advance(10s);
    QStringList paths;
    for (const auto& call : automation.engine.calls)
        paths << call.path;
    EXPECT_EQ(paths,
              (QStringList{"/home/ann/HarbrixVolumes/media", "/home/ann/HarbrixVolumes/films"}));
    EXPECT_EQ(mountTimes(), (std::vector<double>{7.0, 17.0}));
}

TEST_F(NetworkHandlingTest, SwitchingAShareOffEndsWhatWaitsForItUnlessTheUserMountedIt) {
    startQuietly();
    failAllMounts();
    NASConfig delayed = automation.add("a");
    automation.goOnline();
    automation.scheduler.advance(2s);
    NASConfig retried = automation.add("b");
    NASConfig byHand = automation.add("c");
    automation.strategy.launch(automation.strategy.mountSaved(retried.id));
    automation.mount(byHand);
    automation.scheduler.settle();
    for (NASConfig* config : {&delayed, &retried, &byHand}) {
        config->isEnabled = false;
        automation.store.update(*config);
    }
    automation.scheduler.settle();
    EXPECT_FALSE(automation.strategy.timeUntilDelayedMount(delayed.id));
    EXPECT_FALSE(automation.strategy.timeUntilRetry(retried.id));
    EXPECT_TRUE(automation.strategy.timeUntilRetry(byHand.id));
}

TEST_F(NetworkHandlingTest, LosingTheNetworkDuringTheWalkUnmountsNothing) {
    startQuietly();
    std::vector<NASConfig> shares;
    for (const QString name : {"a", "b", "c"})
        shares.push_back(automation.add(name));
    automation.goOnline();
    automation.scheduler.advance(8s);
    automation.engine.planLook = [](const QString&) { return 10s; };
    automation.goOnline();
    automation.scheduler.advance(3s);
    automation.goOffline();
    automation.scheduler.advance(60s);
    EXPECT_EQ(automation.engine.countOf(Verb::Unmount), 0);
    EXPECT_EQ(automation.engine.volumes.size(), shares.size());
}

} // namespace
} // namespace harbrix
