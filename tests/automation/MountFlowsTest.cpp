#include "StrategyTest.h"

namespace harbrix {
namespace {

using Plan = ScriptedMountOperations::Plan;

class MountFlowsTest : public StrategyTest {};

TEST_F(MountFlowsTest, AMountEndsMountedOrFailed) {
    struct Row {
        NASProtocol protocol;
        std::optional<HarbrixError> error;
        Verb verb;
        QString told;
    };
    const std::vector<Row> rows{
        {NASProtocol::smb, std::nullopt, Verb::MountSMB, "mounted media"},
        {NASProtocol::nfs, std::nullopt, Verb::MountNFS, "mounted media"},
        {NASProtocol::smb, refused, Verb::MountSMB, "failed media: refused"},
        {NASProtocol::nfs, refused, Verb::MountNFS, "failed media: refused"},
    };
    for (const Row& row : rows) {
        Automation machine(directory.filePath("flows.json"));
        NASConfig config = machine.add("media");
        config.protocol = row.protocol;
        machine.store.update(config);
        machine.engine.planMount = [&](const NASConfig&) { return Plan{5s, row.error}; };
        machine.mount(config);
        EXPECT_EQ(machine.state(config), Kind::mounting);
        machine.scheduler.advance(5s);
        EXPECT_EQ(machine.engine.calls.at(0).verb, row.verb);
        EXPECT_EQ(machine.notifier.told, QStringList{row.told});
        if (row.error) {
            EXPECT_EQ(machine.state(config), MountState::failed(*row.error));
            EXPECT_EQ(machine.mountPoint(config), "");
        } else {
            EXPECT_EQ(machine.state(config), Kind::mounted);
            EXPECT_EQ(machine.mountPoint(config), "/home/ann/HarbrixVolumes/media");
        }
        machine.store.remove(config.id);
    }
}

TEST_F(MountFlowsTest, UnmountingWhatIsNotMountedOnlySetsIdle) {
    const NASConfig config = automation.add("media");
    automation.appState.updateStatus(config.id, MountState::failed(refused));
    automation.unmount(config);
    EXPECT_EQ(automation.state(config), Kind::idle);
    EXPECT_TRUE(automation.engine.calls.empty());
    EXPECT_TRUE(automation.notifier.told.isEmpty());
}

TEST_F(MountFlowsTest, UnmountTellsTheUserAndCancelsTheRetry) {
    const NASConfig config = automation.add("media");
    automation.mount(config);
    automation.unmount(config);
    EXPECT_EQ(automation.state(config), Kind::idle);
    EXPECT_EQ(automation.notifier.told, (QStringList{"mounted media", "unmounted media"}));

    automation.goOnline();
    failAllMounts();
    automation.mount(config);
    automation.scheduler.settle();
    EXPECT_EQ(automation.strategy.pendingRetries(), 1U);
    automation.unmount(config);
    automation.scheduler.settle();
    EXPECT_EQ(automation.strategy.pendingRetries(), 0U);
    EXPECT_EQ(automation.state(config), Kind::idle);
}

TEST_F(MountFlowsTest, AFailedUnmountForgetsTheMountPointAndIsNotRetried) {
    const NASConfig config = automation.add("media");
    automation.goOnline();
    automation.mount(config);
    const auto busy = HarbrixError::unmountFailed("busy");
    automation.engine.planUnmount = [&](const QString&) { return Plan{0s, busy}; };
    automation.unmount(config);
    automation.scheduler.settle();
    EXPECT_EQ(automation.state(config), MountState::failed(busy));
    EXPECT_EQ(automation.mountPoint(config), "");
    EXPECT_EQ(automation.notifier.told, QStringList{"mounted media"});
    EXPECT_EQ(automation.strategy.pendingRetries(), 0U);

    automation.unmount(config); // nothing left to work with
    EXPECT_EQ(automation.engine.countOf(Verb::Unmount), 1);
    EXPECT_EQ(automation.state(config), Kind::idle);
}

TEST_F(MountFlowsTest, AManualMountAsksNeitherForTheBindingNorForTheSwitch) {
    NASConfig config = automation.add("far", "10.0.0.0/8");
    config.isEnabled = false;
    automation.store.update(config);
    automation.mount(config);
    EXPECT_EQ(automation.state(config), Kind::mounted);

    automation.strategy.launch(automation.strategy.mount(QUuid::createUuid()));
    automation.strategy.launch(automation.strategy.unmount(QUuid::createUuid()));
    EXPECT_EQ(automation.engine.calls.size(), 1U);
    EXPECT_EQ(automation.strategy.runningFlows(), 0U);
}

TEST_F(MountFlowsTest, OverlappingMountsEachEndTheLastOneStanding) {
    const NASConfig config = automation.add("media");
    automation.engine.planMount = [n = 0](const NASConfig&) mutable {
        return n++ == 0 ? Plan{9s, refused} : Plan{4s, std::nullopt};
    };
    automation.mount(config);
    automation.mount(config);
    automation.scheduler.advance(4s);
    EXPECT_EQ(automation.state(config), Kind::mounted);
    automation.scheduler.advance(5s);
    EXPECT_EQ(automation.state(config), MountState::failed(refused));
}

Task<void> noteEnd(Task<void> flow, bool* ended) {
    co_await flow;
    *ended = true;
}

TEST_F(MountFlowsTest, AllEnabledSharesAreMountedAndUnmountedSideBySide) {
    std::vector<NASConfig> here;
    for (const QString name : {"a", "b", "c"})
        here.push_back(automation.add(name));
    const NASConfig far = automation.add("far", "10.0.0.0/8");
    NASConfig off = automation.add("off");
    off.isEnabled = false;
    automation.store.update(off);
    automation.goOnline();
    automation.scheduler.settle();
    automation.mount(here[0]);
    automation.mount(far);

    automation.engine.planMount = [](const NASConfig&) { return Plan{10s, std::nullopt}; };
    automation.engine.planUnmount = [](const QString&) { return Plan{3s, std::nullopt}; };
    bool ended = false;
    automation.strategy.launch(noteEnd(automation.strategy.mountAll(), &ended));
    EXPECT_EQ(automation.state(here[1]), Kind::mounting);
    EXPECT_EQ(automation.state(here[0]), Kind::mounted); // found there at once
    automation.scheduler.advance(9.9s);
    EXPECT_FALSE(ended);
    automation.scheduler.advance(0.1s);
    EXPECT_TRUE(ended);
    for (const NASConfig& config : here)
        EXPECT_EQ(automation.state(config), Kind::mounted);
    EXPECT_EQ(automation.state(off), Kind::idle);
    EXPECT_EQ(automation.engine.countOf(Verb::MountSMB), 5);

    ended = false;
    automation.strategy.launch(noteEnd(automation.strategy.unmountAll(), &ended));
    automation.scheduler.advance(3s);
    EXPECT_TRUE(ended);
    EXPECT_TRUE(automation.engine.volumes.empty()); // the far one too
    EXPECT_EQ(automation.strategy.runningFlows(), 0U);
}

TEST_F(MountFlowsTest, WithoutSharesMountAllEndsAtOnce) {
    bool ended = false;
    automation.strategy.launch(noteEnd(automation.strategy.mountAll(), &ended));
    EXPECT_TRUE(ended);
}

TEST_F(MountFlowsTest, ADeletedRecordIsNeitherRetriedNorLeftMounted) {
    struct Row {
        std::optional<HarbrixError> error;
        bool hasTwin; ///< another record has the same mount point
        int unmounts;
    };
    for (const Row& row :
         std::vector<Row>{{refused, false, 0}, {std::nullopt, false, 1}, {std::nullopt, true, 0}}) {
        Automation machine(directory.filePath("deleted.json"));
        const NASConfig config = machine.add("media");
        machine.goOnline();
        machine.engine.planMount = [&](const NASConfig&) { return Plan{5s, row.error}; };
        machine.mount(config);
        if (row.hasTwin)
            machine.add("media");
        machine.store.remove(config.id);
        machine.scheduler.advance(60s);
        EXPECT_EQ(machine.engine.countOf(Verb::MountSMB), 1);
        EXPECT_EQ(machine.engine.countOf(Verb::Unmount), row.unmounts);
        EXPECT_FALSE(machine.appState.status(config.id)) << "a status without a record";
        EXPECT_TRUE(machine.notifier.told.isEmpty());
        for (const NASConfig& left : machine.store.configs())
            machine.store.remove(left.id);
    }
}

TEST_F(MountFlowsTest, ACorrectedRecordIsTriedAtOnceWhereItsMountHasFailed) {
    struct Row {
        bool hasFailed;
        bool isEnabled;
        bool isByHand;
        std::size_t attempts;
    };
    for (const Row& row : std::vector<Row>{{true, true, false, 1},
                                           {true, false, true, 1},
                                           {true, false, false, 0},
                                           {false, true, false, 0}}) {
        Automation machine(directory.filePath("corrected.json"));
        NASConfig config = machine.add("media", "10.0.0.0/8");
        if (row.isByHand)
            machine.mount(config);
        machine.appState.updateStatus(config.id, row.hasFailed ? MountState::failed(refused)
                                                               : MountState(Kind::offline));
        machine.engine.calls.clear();
        config.isEnabled = row.isEnabled;
        config.address = "192.0.2.11";
        machine.store.update(config);
        machine.strategy.launch(machine.strategy.retryCorrected(config.id));
        EXPECT_EQ(machine.engine.calls.size(), row.attempts);
        machine.store.remove(config.id);
    }
}

} // namespace
} // namespace harbrix
