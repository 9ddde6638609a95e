#include "automation/NetworkMonitor.h"

#include "base/ManualScheduler.h"
#include "fakes/FakeMachineEvents.h"

#include <gtest/gtest.h>

#include <net/if.h>
#include <sys/socket.h>

namespace harbrix {
namespace {

using namespace std::chrono_literals;

constexpr unsigned up = IFF_UP | IFF_RUNNING;
constexpr quint32 mask24 = 0xFFFFFF00;

TEST(NetworkAddresses, FirstInterfaceThatQualifiesWins) {
    using Addresses = NetworkMonitor::Addresses;
    const InterfaceAddress loopback{"lo", up | IFF_LOOPBACK, AF_INET, "127.0.0.1", 0xFF000000};
    const InterfaceAddress down{"eth1", 0, AF_INET, "10.9.9.9", mask24};
    const InterfaceAddress packet{"eth0", up, AF_PACKET, std::nullopt, std::nullopt};
    const InterfaceAddress v6{"eth0", up, AF_INET6, "fe80::1%eth0", std::nullopt};
    const InterfaceAddress maskless{"tun1", up, AF_INET, "10.8.0.1", std::nullopt};
    const InterfaceAddress nameless{"tun2", up, AF_INET, std::nullopt, mask24};
    const InterfaceAddress vpn{"tun0", up, AF_INET, "10.8.0.2", 0xFFFFFFFF};
    const InterfaceAddress ethernet{"eth0", up, AF_INET, "192.168.1.5", mask24};
    const InterfaceAddress holed{"eth2", up, AF_INET, "192.168.77.5", 0xFF00FF00};
    const std::vector<std::pair<std::vector<InterfaceAddress>, Addresses>> rows{
        {{}, {}},
        {{loopback, down, packet, v6, maskless, nameless}, {}},
        {{loopback, packet, ethernet, vpn}, {"192.168.1.5", "192.168.1.0/24"}},
        {{loopback, vpn, ethernet}, {"10.8.0.2", "10.8.0.2/32"}},
        {{maskless, holed}, {"192.168.77.5", "192.0.77.0/8"}},
    };
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_EQ(networkAddresses(rows[i].first), rows[i].second) << "row " << i;
}

Task<std::optional<QString>> answerAfter(Scheduler* scheduler, Seconds delay,
                                         std::optional<QString> name) {
    auto pause = scheduler->pause(delay);
    co_await pause;
    co_return name;
}

class NetworkMonitorTest : public testing::Test {
protected:
    NetworkMonitorTest()
        : monitor(path,
                  {[this] { return interfaces; },
                   [this] { return answerAfter(&scheduler, nameDelay, name); }},
                  scheduler) {
        const auto note = [this](const QString& field) {
            assignments << QString("%1: %2 %3 %4")
                               .arg(field)
                               .arg(monitor.isConnected())
                               .arg(monitor.currentIPAddress().value_or("-"))
                               .arg(monitor.currentSSID().value_or("-"));
        };
        QObject::connect(&monitor, &NetworkMonitor::isConnectedAssigned,
                         [note] { note("connected"); });
        QObject::connect(&monitor, &NetworkMonitor::currentIPAddressAssigned,
                         [note] { note("address"); });
        QObject::connect(&monitor, &NetworkMonitor::currentSSIDAssigned, [note] { note("name"); });
        monitor.start();
    }
    void joinNetwork(const QString& address, const QString& wifi) {
        interfaces = {{"wlan0", up, AF_INET, address, mask24}};
        name = wifi;
        emit path.pathChanged(true);
    }
    QStringList takeAssignments() { return std::exchange(assignments, {}); }

    ManualScheduler scheduler;
    FakeNetworkPathMonitor path;
    std::vector<InterfaceAddress> interfaces;
    std::optional<QString> name;
    Seconds nameDelay{0};
    QStringList assignments;
    NetworkMonitor monitor;
};

TEST_F(NetworkMonitorTest, AssignsInOrderAndAlsoWhatHasNotChanged) {
    joinNetwork("192.168.1.5", "Home");
    EXPECT_EQ(takeAssignments(), QStringList{}); // not in the turn of the path's own callback
    scheduler.advance(0s);
    const QStringList joined{"connected: 1 - -", "address: 1 192.168.1.5 -",
                             "name: 1 192.168.1.5 Home"};
    EXPECT_EQ(takeAssignments(), joined);

    emit path.pathChanged(true);
    scheduler.advance(0s);
    EXPECT_EQ(takeAssignments(),
              (QStringList{"connected: 1 192.168.1.5 Home", "address: 1 192.168.1.5 Home",
                           "name: 1 192.168.1.5 Home"}));

    emit path.pathChanged(false);
    scheduler.settle();
    EXPECT_EQ(takeAssignments(),
              (QStringList{"connected: 0 192.168.1.5 Home", "address: 0 - Home", "name: 0 - -"}));
}

TEST_F(NetworkMonitorTest, OnlineWithoutAnIPv4AddressOrWiFi) {
    emit path.pathChanged(true);
    scheduler.advance(0s);
    EXPECT_TRUE(monitor.isConnected());
    EXPECT_EQ(monitor.currentIPAddress(), std::nullopt);
    EXPECT_EQ(monitor.currentSSID(), std::nullopt);
}

TEST_F(NetworkMonitorTest, ASlowNameNeverOutlivesTheNetworkItWasAskedOn) {
    nameDelay = 2s;
    joinNetwork("192.168.1.5", "Home");
    scheduler.advance(1s);
    emit path.pathChanged(false);
    scheduler.advance(5s);
    EXPECT_FALSE(monitor.isConnected());
    EXPECT_EQ(monitor.currentSSID(), std::nullopt);
}

TEST_F(NetworkMonitorTest, AChangeDuringASlowLookUpIsLookedUpAgain) {
    nameDelay = 2s;
    joinNetwork("192.168.1.5", "Home");
    scheduler.advance(1s);
    joinNetwork("10.0.0.5", "Office");
    scheduler.advance(10s);
    EXPECT_EQ(monitor.currentIPAddress(), "10.0.0.5");
    EXPECT_EQ(monitor.currentSSID(), "Office");
}

TEST_F(NetworkMonitorTest, StartsOneMonitor) {
    monitor.start();
    EXPECT_EQ(path.starts, 1);
    emit path.pathChanged(false);
    scheduler.settle();
    EXPECT_EQ(takeAssignments().size(), 3);
}

} // namespace
} // namespace harbrix
