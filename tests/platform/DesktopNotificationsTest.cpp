#include "platform/DesktopNotifications.h"

#include "support/MockService.h"
#include "support/WaitUntil.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

const QString interface = QStringLiteral("org.freedesktop.Notifications");
const QString withActions = QStringLiteral(R"({"capabilities": "body body-markup actions"})");

class DesktopNotificationsTest : public testing::Test {
protected:
    using Outcome = DesktopNotifications::Outcome;

    void SetUp() override {
        if (!MockService::isInstalled())
            GTEST_SKIP() << "python3-dbusmock is not installed";
        QObject::connect(
            notifications.get(), &DesktopNotifications::actionInvoked,
            [this](const QString& identifier, const QString& action, const QString& token) {
                answers << identifier + QLatin1Char('|') + action + QLatin1Char('|') + token;
            });
    }
    bool reachable() {
        return await([this](auto done) { notifications->checkReachable(std::move(done)); });
    }
    bool post(const char* identifier, const DesktopNotifications::Notification& notification = {}) {
        return await([&](auto done) {
            notifications->post(QString::fromLatin1(identifier), notification, std::move(done));
        });
    }
    template <typename Start>
    static bool await(Start start) {
        std::optional<Outcome> outcome;
        start([&](Outcome result) { outcome = std::move(result); });
        EXPECT_FALSE(outcome) << "told before the call had returned";
        return waitUntil([&] { return outcome.has_value(); }) && outcome->has_value();
    }
    /// The number in place of which each notification so far was shown.
    QList<uint> replaced() {
        QList<uint> numbers;
        for (const QVariantList& arguments : service.callsOf(QStringLiteral("Notify")))
            numbers << arguments.value(1).toUInt();
        return numbers;
    }

    PrivateBus bus;
    MockService service{bus, QStringLiteral("notification_daemon"), interface,
                        QStringLiteral("/org/freedesktop/Notifications")};
    RealScheduler scheduler;
    std::unique_ptr<DesktopNotifications> notifications =
        DesktopNotifications::create(BusAddress(bus.address()), scheduler,
                                     QStringLiteral("Harbrix"), QStringLiteral("com.harbrix.app"));
    QStringList answers;
};

TEST_F(DesktopNotificationsTest, ShowsWhatTheServiceIsAbleTo) {
    ASSERT_TRUE(service.start(withActions));
    const DesktopNotifications::Notification notification = {
        QStringLiteral("NAS <1>"),
        QStringLiteral("R&D <b>"),
        true,
        {{QStringLiteral("RETRY_ACTION"), QStringLiteral("重试连接")}}};
    ASSERT_TRUE(post("one", notification));
    const QVariantList arguments = service.callsOf(QStringLiteral("Notify")).value(0);
    EXPECT_EQ(arguments.value(0), QStringLiteral("Harbrix"));
    EXPECT_EQ(arguments.value(3), QStringLiteral("NAS <1>"));
    EXPECT_EQ(arguments.value(4), QStringLiteral("R&amp;D &lt;b&gt;"));
    EXPECT_EQ(qdbus_cast<QStringList>(arguments.value(5)),
              QStringList({QStringLiteral("RETRY_ACTION"), QStringLiteral("重试连接")}));
    const auto hints = qdbus_cast<QVariantMap>(arguments.value(6));
    EXPECT_TRUE(hints.contains(QStringLiteral("sound-name")));
    EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")), QStringLiteral("com.harbrix.app"));

    // The next service reads no markup, has no buttons, and this one is to be silent.
    service.stop();
    ASSERT_TRUE(service.start(QStringLiteral(R"({"capabilities": "body"})")));
    ASSERT_TRUE(reachable()) << "by now the news of the change is in";
    auto silent = notification;
    silent.withSound = false;
    ASSERT_TRUE(post("one", silent));
    const QVariantList plain = service.callsOf(QStringLiteral("Notify")).value(0);
    EXPECT_EQ(plain.value(1).toUInt(), 0U) << "a number of the former service";
    EXPECT_EQ(plain.value(4), QStringLiteral("R&D <b>"));
    EXPECT_TRUE(qdbus_cast<QStringList>(plain.value(5)).isEmpty());
    EXPECT_EQ(qdbus_cast<QVariantMap>(plain.value(6)).value(QStringLiteral("suppress-sound")),
              true);
}

TEST_F(DesktopNotificationsTest, ReplacesTheShownOneOfTheSameIdentifier) {
    ASSERT_TRUE(service.start(withActions));
    // Both go out before the service has told a number.
    notifications->post(QStringLiteral("one"), {}, {});
    ASSERT_TRUE(post("one"));
    ASSERT_TRUE(post("two"));
    EXPECT_EQ(replaced(), (QList<uint>{0, 1, 0}));
    notifications->withdraw(QStringLiteral("one"));
    notifications->withdraw(QStringLiteral("never shown"));
    ASSERT_TRUE(post("one"));
    ASSERT_TRUE(service.emitSignal(interface, QStringLiteral("NotificationClosed"),
                                   QStringLiteral("uu"), {2U, 2U}));
    ASSERT_TRUE(service.emitSignal(interface, QStringLiteral("ActionInvoked"), QStringLiteral("us"),
                                   {3U, QStringLiteral("seen")}));
    ASSERT_TRUE(waitUntil([this] { return !answers.isEmpty(); }));
    ASSERT_TRUE(post("two"));
    EXPECT_EQ(replaced(), (QList<uint>{0, 1, 0, 0, 0}));
    EXPECT_EQ(service.callsOf(QStringLiteral("CloseNotification")).size(), 1);
}

TEST_F(DesktopNotificationsTest, TellsThePressedActionOfItsOwnOnly) {
    ASSERT_TRUE(service.start(withActions));
    ASSERT_TRUE(post("one"));
    const auto press = [&](uint number) {
        return service.emitSignal(interface, QStringLiteral("ActivationToken"),
                                  QStringLiteral("us"), {number, QStringLiteral("token")}) &&
               service.emitSignal(interface, QStringLiteral("ActionInvoked"), QStringLiteral("us"),
                                  {number, QStringLiteral("RETRY_ACTION")});
    };
    ASSERT_TRUE(press(7) && press(1));
    ASSERT_TRUE(waitUntil([this] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QStringList(QStringLiteral("one|RETRY_ACTION|token")));
}

TEST_F(DesktopNotificationsTest, AServiceOrBusMayComeLateAndGo) {
    EXPECT_FALSE(reachable());
    EXPECT_FALSE(post("one"));
    ASSERT_TRUE(service.start());
    EXPECT_TRUE(reachable());
    EXPECT_TRUE(post("one"));
    service.stop();
    EXPECT_FALSE(post("one"));
    bus.stop();
    EXPECT_FALSE(post("one"));
    EXPECT_FALSE(reachable());
    ASSERT_TRUE(bus.start());
    ASSERT_TRUE(service.start(withActions));
    EXPECT_TRUE(post("one"));
    ASSERT_TRUE(service.emitSignal(interface, QStringLiteral("ActionInvoked"), QStringLiteral("us"),
                                   {1U, QStringLiteral("x")}));
    EXPECT_TRUE(waitUntil([this] { return !answers.isEmpty(); }));
}

TEST_F(DesktopNotificationsTest, AServiceThatHangsFailsAllThatWaits) {
    ASSERT_TRUE(service.start());
    ASSERT_TRUE(post("one"));
    service.freeze();
    QElapsedTimer elapsed;
    elapsed.start();
    for (int number = 0; number < 10; ++number)
        notifications->post(QString::number(number), {}, {});
    EXPECT_FALSE(post("last"));
    EXPECT_LT(elapsed.elapsed(), 8000);
}

} // namespace
} // namespace harbrix
