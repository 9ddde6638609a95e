#include "platform/NetworkPathMonitor.h"

#include "platform/linux/NetworkState.h"
#include "support/PrivateNetwork.h"
#include "support/WaitUntil.h"

#include <QFile>
#include <gtest/gtest.h>

#include <net/if.h>
#include <sys/socket.h>

namespace harbrix {
namespace {

TEST(NetworkStateTest, APathNeedsLinkAddressAndRouteOfOneInterface) {
    constexpr unsigned running = IFF_UP | IFF_RUNNING;
    const NetworkState::Address inet{1, AF_INET, true, "10.0.0.2/24"};
    const NetworkState::Address inet6{1, AF_INET6, true, "2001:db8::2/64"};
    const NetworkState::Address linkLocal{1, AF_INET6, false, "fe80::1/64"};
    const NetworkState::Route route{1, AF_INET, "10.0.0.0/24", ""};
    const NetworkState::Route route6{1, AF_INET6, "fe80::/64", ""};
    struct Case {
        const char* what;
        NetworkState state;
        bool isSatisfied;
    };
    const Case cases[] = {
        {"nothing", {}, false},
        {"complete", {{{1, running}}, {inet}, {route}}, true},
        {"IPv6 alone", {{{1, running}}, {inet6}, {route6}}, true},
        {"down", {{{1, 0}}, {inet}, {route}}, false},
        {"no carrier", {{{1, IFF_UP}}, {inet}, {route}}, false},
        {"loopback", {{{1, running | IFF_LOOPBACK}}, {inet}, {route}}, false},
        {"link-local address only", {{{1, running}}, {linkLocal}, {route6}}, false},
        {"no route", {{{1, running}}, {inet}, {}}, false},
        {"route of another family", {{{1, running}}, {inet}, {route6}}, false},
        {"route of another interface",
         {{{1, running}, {2, running}}, {inet}, {{2, AF_INET, "10.0.0.0/24", ""}}},
         false},
        {"address of another interface",
         {{{1, running}, {2, 0}}, {{2, AF_INET, true, ""}}, {route}},
         false},
        {"second interface",
         {{{1, 0}, {2, running}}, {{2, AF_INET, true, ""}}, {{2, AF_INET, "", ""}}},
         true},
    };
    for (const Case& row : cases)
        EXPECT_EQ(isSatisfied(row.state), row.isSatisfied) << row.what;
}

/// Whether a netlink socket of this network has lost notices.
bool hasOverrun() {
    constexpr int dropsColumn = 8;
    QFile table(QStringLiteral("/proc/thread-self/net/netlink"));
    if (!table.open(QIODevice::ReadOnly))
        return false;
    const QList<QByteArray> rows = table.readAll().split('\n').mid(1);
    return std::ranges::any_of(rows, [](const QByteArray& row) {
        return row.simplified().split(' ').value(dropsColumn).toInt() > 0;
    });
}

class NetworkPathMonitorTest : public testing::Test {
protected:
    void SetUp() override {
        if (!network.isEntered())
            GTEST_SKIP() << "needs root for a network of its own";
        if (!network.ip("link add name eth0 type veth peer name peer0\n"))
            GTEST_SKIP() << "the kernel has no veth interfaces";
        QObject::connect(monitor.get(), &NetworkPathMonitor::pathChanged,
                         [this](bool satisfied) { verdicts << satisfied; });
    }
    /// Whether the next verdicts end in this one.
    bool settlesAt(bool satisfied) {
        const bool settled =
            waitUntil([&] { return !verdicts.isEmpty() && verdicts.last() == satisfied; });
        verdicts.clear();
        return settled;
    }

    PrivateNetwork network;
    std::unique_ptr<NetworkPathMonitor> monitor = NetworkPathMonitor::create();
    QList<bool> verdicts;
};

TEST_F(NetworkPathMonitorTest, FollowsLinkAddressAndRoute) {
    monitor->start();
    monitor->start();
    EXPECT_TRUE(verdicts.isEmpty());
    ASSERT_TRUE(waitUntil([&] { return !verdicts.isEmpty(); }));
    EXPECT_EQ(verdicts, QList<bool>{false});
    verdicts.clear();

    ASSERT_TRUE(
        network.ip("address add 10.9.0.2/24 dev eth0\nlink set peer0 up\nlink set eth0 up\n"));
    EXPECT_TRUE(settlesAt(true));
    ASSERT_TRUE(network.ip("link set peer0 down\n"));
    EXPECT_TRUE(settlesAt(false));
    ASSERT_TRUE(network.ip("link set peer0 up\n"));
    EXPECT_TRUE(settlesAt(true));
    ASSERT_TRUE(network.ip("route del 10.9.0.0/24 dev eth0\n"));
    EXPECT_TRUE(settlesAt(false));
    ASSERT_TRUE(network.ip("route add default via 10.9.0.1 dev eth0 onlink\n"));
    EXPECT_TRUE(settlesAt(true));
    // Told again, though the verdict stays the same.
    ASSERT_TRUE(network.ip("address add 10.9.0.3/24 dev eth0\n"));
    EXPECT_TRUE(settlesAt(true));
    ASSERT_TRUE(network.ip("link del eth0\n"));
    EXPECT_TRUE(settlesAt(false));
}

TEST_F(NetworkPathMonitorTest, AnOverrunLosesNoChange) {
    ASSERT_TRUE(
        network.ip("address add 10.9.0.2/24 dev eth0\nlink set peer0 up\nlink set eth0 up\n"));
    monitor->start();
    ASSERT_TRUE(settlesAt(true));
    // Far more notices than the socket's buffer holds, while nobody reads; the last one counts.
    QByteArray flood;
    for (int number = 0; number < 4000; ++number)
        flood += "address add 10.10." + QByteArray::number(number / 250) + "." +
                 QByteArray::number(number % 250 + 1) + "/32 dev peer0\n";
    ASSERT_TRUE(network.ip(flood + "address flush dev peer0\nlink set eth0 down\n"));
    ASSERT_TRUE(hasOverrun());
    EXPECT_TRUE(settlesAt(false));
    ASSERT_TRUE(network.ip("link set eth0 up\n"));
    EXPECT_TRUE(settlesAt(true));
}

TEST_F(NetworkPathMonitorTest, ListsAddressesWithFlagsAndMasks) {
    ASSERT_TRUE(network.ip("address add 10.9.0.2/20 dev eth0\nlink set peer0 up\nlink set eth0 up\n"
                           "address add 2001:db8::2/64 dev eth0 nodad\nlink set lo up\n"));
    const auto addresses = currentInterfaceAddresses();
    const auto holds = [&](const char* name, unsigned flags, int family, const char* text,
                           std::optional<quint32> mask) {
        return std::ranges::any_of(addresses, [&](const InterfaceAddress& entry) {
            return entry.name == QLatin1String(name) &&
                   (entry.flags & (IFF_UP | IFF_LOOPBACK)) == flags && entry.family == family &&
                   entry.address == QLatin1String(text) && entry.netmask == mask;
        });
    };
    EXPECT_TRUE(holds("eth0", IFF_UP, AF_INET, "10.9.0.2", 0xFFFFF000));
    EXPECT_TRUE(holds("eth0", IFF_UP, AF_INET6, "2001:db8::2", std::nullopt));
    EXPECT_TRUE(holds("lo", IFF_UP | IFF_LOOPBACK, AF_INET, "127.0.0.1", 0xFF000000));
}

} // namespace
} // namespace harbrix
