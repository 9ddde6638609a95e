#include "StrategyTest.h"

namespace harbrix {
namespace {

using Plan = ScriptedMountOperations::Plan;

class KeepAliveTest : public StrategyTest {
protected:
    KeepAliveTest() { automation.defaults.set(AutoMountStrategy::autoMountOnLaunchKey, false); }
    /// A share that is mounted on a network that has been there for a while.
    NASConfig mountedShare() {
        const NASConfig config = automation.add("media");
        automation.goOnline();
        automation.scheduler.settle();
        automation.mount(config);
        automation.strategy.start();
        return config;
    }
};

TEST_F(KeepAliveTest, BacksOffAfterEachFailureInARow) {
    const NASConfig config = automation.add("media");
    automation.goOnline();
    automation.scheduler.settle();
    failAllMounts();
    automation.mount(config);
    automation.scheduler.settle();
    EXPECT_EQ(automation.strategy.timeUntilRetry(config.id), 10s);
    automation.scheduler.advance(1100s);
    EXPECT_EQ(mountTimes(), (std::vector<double>{0, 10, 40, 100, 400, 700, 1000}));
    EXPECT_EQ(automation.strategy.retryCount(config.id), 7);
    EXPECT_EQ(automation.notifier.told.size(), 7);
}

TEST_F(KeepAliveTest, ASuccessResetsTheBackOff) {
    const NASConfig config = automation.add("media");
    automation.goOnline();
    automation.scheduler.settle();
    automation.engine.planMount = [n = 0](const NASConfig&) mutable {
        return Plan{0s, ++n == 4 ? std::nullopt : std::optional(refused)};
    };
    automation.mount(config);
    automation.scheduler.advance(100s); // three failures, then the success
    EXPECT_EQ(automation.state(config), Kind::mounted);
    automation.engine.volumes.clear();
    automation.mount(config);
    automation.scheduler.settle();
    EXPECT_EQ(automation.strategy.timeUntilRetry(config.id), 10s);
}

TEST_F(KeepAliveTest, ARetryRunsOnlyWhereTheShareBelongsAndTheMachineIsOnline) {
    struct Row {
        std::optional<QString> address;
        int attempts;
    };
    for (const Row& row : {Row{"192.168.1.5", 2}, Row{"10.0.0.5", 1}, Row{std::nullopt, 1}}) {
        Automation machine(directory.filePath("retry.json"));
        const NASConfig config = machine.add("media");
        machine.engine.planMount = [](const NASConfig&) { return Plan{0s, refused}; };
        machine.mount(config); // by hand, wherever the machine is
        if (row.address)
            machine.goOnline(*row.address);
        machine.scheduler.advance(10s);
        EXPECT_EQ(machine.engine.countOf(Verb::MountSMB), row.attempts);
        EXPECT_EQ(machine.state(config), MountState::failed(refused));
        if (row.attempts == 1) {
            EXPECT_EQ(machine.strategy.pendingRetries(), 0U);
            EXPECT_EQ(machine.strategy.retryCount(config.id), 1); // left as it stands
        }
        machine.store.remove(config.id);
    }
}

TEST_F(KeepAliveTest, TwoFailuresOfOneShareLeaveOneTimer) {
    const NASConfig config = automation.add("media");
    automation.goOnline();
    automation.engine.planMount = [](const NASConfig&) { return Plan{1s, refused}; };
    automation.mount(config);
    automation.mount(config);
    automation.scheduler.advance(1s);
    EXPECT_EQ(automation.strategy.pendingRetries(), 1U);
    EXPECT_EQ(automation.strategy.timeUntilRetry(config.id), 30s); // the second one's
}

TEST_F(KeepAliveTest, SleepCancelsAndWakeBeginsAnew) {
    const NASConfig config = mountedShare();
    failAllMounts();
    const NASConfig other = automation.add("other");
    automation.mount(other);
    automation.scheduler.advance(1s);
    ASSERT_EQ(automation.strategy.pendingRetries(), 1U);

    emit automation.sleepMonitor.willSleep();
    automation.scheduler.settle();
    EXPECT_EQ(automation.strategy.pendingRetries(), 0U);
    EXPECT_FALSE(automation.strategy.isHealthCheckArmed());
    EXPECT_EQ(automation.state(config), Kind::mounted);
    automation.scheduler.advance(600s);
    EXPECT_EQ(automation.engine.countOf(Verb::MountSMB), 2);

    const Duration woken = automation.scheduler.now();
    emit automation.sleepMonitor.didWake();
    EXPECT_TRUE(automation.strategy.isHealthCheckArmed());
    automation.scheduler.advance(9s);
    ASSERT_EQ(automation.engine.countOf(Verb::MountSMB), 3);
    EXPECT_EQ(automation.engine.calls.back().at - woken, 9s);
    EXPECT_EQ(automation.engine.calls.back().path, "/home/ann/HarbrixVolumes/other");
}

TEST_F(KeepAliveTest, PeriodAndSwitchOfTheHealthCheck) {
    using Value = UserDefaults::Value;
    struct Row {
        std::optional<Value> enabled;
        std::optional<Value> interval;
        std::optional<double> noticedAfter;
    };
    const std::vector<Row> rows{
        {std::nullopt, std::nullopt, 180},
        {Value(QString("no")), Value(QString("60")), 180},
        {Value(true), Value(60.0), 60},
        {Value(true), Value(qint64(90)), 90},
        {Value(true), Value(0.0), 1},
        {Value(true), Value(-5.0), 1},
        {Value(true), Value(std::numeric_limits<double>::quiet_NaN()), 180},
        {Value(true), Value(1e300), 86400},
        {Value(false), Value(60.0), std::nullopt},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        Automation machine(directory.filePath(QString("health%1.json").arg(i)));
        machine.defaults.set(AutoMountStrategy::autoMountOnLaunchKey, false);
        if (row.enabled)
            machine.defaults.set(AutoMountStrategy::keepAliveEnabledKey, *row.enabled);
        if (row.interval)
            machine.defaults.set(AutoMountStrategy::keepAliveIntervalKey, *row.interval);
        const NASConfig config = machine.add("media");
        machine.mount(config);
        machine.strategy.start();
        machine.engine.volumes.clear();
        std::optional<double> noticed;
        QObject::connect(&machine.appState, &AppStateManager::statusChanged,
                         [&] { noticed = Seconds(machine.scheduler.now()).count(); });
        machine.scheduler.advance(90000s);
        EXPECT_EQ(noticed, row.noticedAfter) << "row " << i;
        EXPECT_EQ(machine.state(config), row.noticedAfter ? Kind::offline : Kind::mounted)
            << "row " << i;
    }
}

TEST_F(KeepAliveTest, AVolumeThatVanishedIsMountedAgainFiveSecondsLater) {
    const NASConfig config = mountedShare();
    automation.engine.volumes.clear();
    automation.scheduler.advance(180s);
    EXPECT_EQ(automation.state(config), Kind::offline);
    automation.scheduler.advance(5s);
    EXPECT_EQ(automation.state(config), Kind::mounted);
    EXPECT_EQ(mountTimes(), (std::vector<double>{0, 185}));
}

TEST_F(KeepAliveTest, ChecksAtOnceWhenItStarts) {
    const NASConfig config = automation.add("media");
    automation.mount(config);
    automation.engine.volumes.clear();
    automation.strategy.start();
    EXPECT_EQ(automation.state(config), Kind::offline);
    EXPECT_EQ(automation.strategy.timeUntilDelayedMount(config.id), std::nullopt); // no network
}

TEST_F(KeepAliveTest, AnUnmountDuringASlowLookIsNotOverruled) {
    const NASConfig config = mountedShare();
    automation.engine.planLook = [](const QString&) { return Seconds(2); };
    automation.scheduler.advance(181s);
    automation.unmount(config);
    automation.scheduler.advance(60s);
    EXPECT_EQ(automation.state(config), Kind::idle);
    EXPECT_EQ(automation.engine.countOf(Verb::MountSMB), 1);
}

TEST_F(KeepAliveTest, AMountThatSucceedsEndsTheRetryOfItsShare) {
    const NASConfig config = automation.add("media");
    automation.goOnline();
    failAllMounts();
    automation.mount(config);
    automation.scheduler.settle();
    automation.engine.planMount = [](const NASConfig&) { return ScriptedMountOperations::Plan{}; };
    automation.mount(config);
    automation.scheduler.settle();
    EXPECT_EQ(automation.strategy.pendingRetries(), 0U);
    automation.scheduler.advance(400s);
    EXPECT_EQ(automation.engine.calls.size(), 2U);
}

TEST_F(KeepAliveTest, ARetryGoesWithItsRecord) {
    const NASConfig config = automation.add("media");
    automation.strategy.start();
    failAllMounts();
    automation.mount(config);
    automation.scheduler.settle();
    automation.store.remove(config.id);
    EXPECT_EQ(automation.strategy.pendingRetries(), 0U);
    EXPECT_EQ(automation.strategy.retryCount(config.id), 0);
}

} // namespace
} // namespace harbrix
