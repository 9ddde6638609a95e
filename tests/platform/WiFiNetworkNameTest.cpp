#include "platform/WiFiNetworkName.h"

#include "platform/linux/JoinedWiFi.h"
#include "support/MockService.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

const QString deviceInterface = QStringLiteral("org.freedesktop.NetworkManager.Device");

class WiFiNetworkNameTest : public testing::Test {
protected:
    void SetUp() override {
        if (!MockService::isInstalled())
            GTEST_SKIP() << "python3-dbusmock is not installed";
        ASSERT_TRUE(manager.start());
    }
    /// Adds a device that has joined an access point of that name.
    QString addDevice(const QString& name, const QString& ssid, int state) {
        const auto device =
            object(manager.call(QStringLiteral("AddWiFiDevice"), {name, name, state}));
        const auto point =
            object(manager.call(QStringLiteral("AddAccessPoint"),
                                {device, name, ssid, QStringLiteral("00:11:22:33:44:55"), 2U, 2425U,
                                 5400U, QVariant::fromValue<uchar>(82), 0U}));
        manager.call(
            QStringLiteral("AddProperty"),
            {deviceInterface + QStringLiteral(".Wireless"), QStringLiteral("ActiveAccessPoint"),
             QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusObjectPath(point))))},
            device);
        return device;
    }
    static QString object(const QDBusMessage& reply) {
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << qPrintable(reply.errorMessage());
        return reply.arguments().value(0).toString();
    }

    PrivateBus bus;
    MockService manager{bus, QStringLiteral("networkmanager"),
                        QStringLiteral("org.freedesktop.NetworkManager"),
                        QStringLiteral("/org/freedesktop/NetworkManager")};
    std::unique_ptr<WiFiNetworkName> name = WiFiNetworkName::create(BusAddress(bus.address()));
};

TEST_F(WiFiNetworkNameTest, IsThatOfTheFirstDeviceThatIsActivated) {
    EXPECT_FALSE(name->current());
    object(manager.call(QStringLiteral("AddEthernetDevice"),
                        {QStringLiteral("eth"), QStringLiteral("eth0"), 100}));
    constexpr int disconnected = 30;
    constexpr int activated = 100;
    addDevice(QStringLiteral("wlan0"), QStringLiteral("Joining"), disconnected);
    EXPECT_FALSE(name->current());
    addDevice(QStringLiteral("wlan1"), QStringLiteral("My Home 挂"), activated);
    addDevice(QStringLiteral("wlan2"), QStringLiteral("Other"), activated);
    EXPECT_EQ(name->current(), QStringLiteral("My Home 挂"));
}

TEST_F(WiFiNetworkNameTest, AManagerThatHangsOrGoesIsAbsentInTime) {
    addDevice(QStringLiteral("wlan0"), QStringLiteral("Home"), 100);
    ASSERT_EQ(name->current(), QStringLiteral("Home"));
    manager.freeze();
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(name->current(), kernelSsid());
    EXPECT_LT(elapsed.elapsed(), 2000);
    manager.stop();
    EXPECT_EQ(name->current(), kernelSsid());
}

TEST(SsidTextTest, TakesBytesOfAnyKind) {
    EXPECT_EQ(ssidText("caf\xc3\xa9"), QStringLiteral("café"));
    EXPECT_EQ(ssidText("caf\xe9"), QStringLiteral("café"));
}

} // namespace
} // namespace harbrix
