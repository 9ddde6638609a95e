#include "platform/SleepMonitor.h"

#include "support/MockService.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

class SleepMonitorTest : public testing::Test {
protected:
    void SetUp() override {
        if (!MockService::isInstalled())
            GTEST_SKIP() << "python3-dbusmock is not installed";
    }
    void watch() {
        monitor = SleepMonitor::create(BusAddress(bus.address()), scheduler);
        QObject::connect(monitor.get(), &SleepMonitor::willSleep, [this] { events += 's'; });
        QObject::connect(monitor.get(), &SleepMonitor::didWake, [this] { events += 'w'; });
    }
    /// Whether sleep and wake are heard, in this order.
    bool hearsASleep() {
        events.clear();
        for (const bool starting : {true, false}) {
            if (!logind.emitSignal(QStringLiteral("org.freedesktop.login1.Manager"),
                                   QStringLiteral("PrepareForSleep"), QStringLiteral("b"),
                                   {starting}))
                return false;
        }
        return waitUntil([this] { return events.size() >= 2; }, std::chrono::seconds(2)) &&
               events == "sw";
    }

    PrivateBus bus;
    MockService logind{bus, QStringLiteral("logind"), QStringLiteral("org.freedesktop.login1"),
                       QStringLiteral("/org/freedesktop/login1")};
    RealScheduler scheduler;
    std::unique_ptr<SleepMonitor> monitor;
    QByteArray events;
};

TEST_F(SleepMonitorTest, TellsOfSleepAndWakeAlsoAfterLogindStartsAnew) {
    watch();
    ASSERT_TRUE(logind.start());
    EXPECT_TRUE(hearsASleep());
    logind.stop();
    ASSERT_TRUE(logind.start());
    EXPECT_TRUE(hearsASleep());
}

TEST_F(SleepMonitorTest, PicksUpABusThatGoesAndComes) {
    bus.stop();
    watch();
    ASSERT_TRUE(bus.start());
    ASSERT_TRUE(logind.start());
    ASSERT_TRUE(waitUntil([this] { return hearsASleep(); }));
    logind.stop();
    bus.stop();
    ASSERT_TRUE(bus.start());
    ASSERT_TRUE(logind.start());
    EXPECT_TRUE(waitUntil([this] { return hearsASleep(); }));
}

} // namespace
} // namespace harbrix
