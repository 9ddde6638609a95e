#include "platform/SingleInstance.h"

#include "platform/BusObjects.h"
#include "platform/MessageBus.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <thread>

namespace harbrix {
namespace {

const QString identifier = QStringLiteral("com.harbrix.app");

class Connection {
public:
    explicit Connection(const QString& address) : bus(BusAddress(address).connect()) {}
    ~Connection() { QDBusConnection::disconnectFromBus(bus.name()); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    QDBusConnection bus;
};

TEST(SingleInstanceTest, TheSecondBringsTheFirstForward) {
    const QTemporaryDir runtime;
    const PrivateBus privateBus;
    Connection one(privateBus.address());
    Connection two(privateBus.address());
    ApplicationOnBus application;
    ASSERT_TRUE(one.bus.registerObject(QStringLiteral("/com/harbrix/app"), &application,
                                       QDBusConnection::ExportAllSlots));
    auto first = std::make_unique<SingleInstance>(identifier, runtime.path(), one.bus);
    EXPECT_FALSE(two.bus.interface()->isServiceRegistered(identifier)) << "before the objects are";
    first->claimName();
    const SingleInstance second(identifier, runtime.path(), two.bus);
    EXPECT_TRUE(first->isFirst());
    EXPECT_FALSE(second.isFirst());
    EXPECT_FALSE(first->activateOther());

    qputenv("XDG_ACTIVATION_TOKEN", "token");
    bool answered = false;
    std::thread caller([&] { answered = second.activateOther(); });
    EXPECT_TRUE(waitUntil([&] { return application.activations > 0; }));
    caller.join();
    EXPECT_TRUE(answered);
    EXPECT_EQ(application.platformData.value(QStringLiteral("activation-token")),
              QStringLiteral("token"));

    first.reset();
    EXPECT_TRUE(SingleInstance(identifier, runtime.path(), two.bus).isFirst());
}

TEST(SingleInstanceTest, AFirstThatHangsIsNotWaitedForLong) {
    const QTemporaryDir runtime;
    const PrivateBus privateBus;
    Connection one(privateBus.address());
    Connection two(privateBus.address());
    ApplicationOnBus application;
    one.bus.registerObject(QStringLiteral("/com/harbrix/app"), &application,
                           QDBusConnection::ExportAllSlots);
    SingleInstance first(identifier, runtime.path(), one.bus);
    first.claimName();
    const SingleInstance second(identifier, runtime.path(), two.bus);
    QElapsedTimer elapsed;
    elapsed.start();
    // This thread, which would have to answer, is the one that waits.
    EXPECT_FALSE(second.activateOther());
    EXPECT_LT(elapsed.elapsed(), 2000);
}

TEST(SingleInstanceTest, WithoutABusAFileIsLocked) {
    const QTemporaryDir runtime;
    const Connection none(QStringLiteral("unix:path=/nowhere/bus"));
    auto first = std::make_unique<SingleInstance>(identifier, runtime.path(), none.bus);
    EXPECT_TRUE(first->isFirst());
    const SingleInstance second(identifier, runtime.path(), none.bus);
    EXPECT_FALSE(second.isFirst());
    EXPECT_FALSE(second.activateOther());
    first.reset();
    EXPECT_TRUE(SingleInstance(identifier, runtime.path(), none.bus).isFirst());
}

/// As from a desktop and from a shell without its bus, or with another runtime directory.
TEST(SingleInstanceTest, LockAndNameEachKeepASecondOneOut) {
    const QTemporaryDir runtime;
    const QTemporaryDir elsewhere;
    const PrivateBus privateBus;
    const Connection one(privateBus.address());
    const Connection two(privateBus.address());
    const Connection none(QStringLiteral("unix:path=/nowhere/bus"));
    SingleInstance first(identifier, runtime.path(), one.bus);
    first.claimName();
    EXPECT_FALSE(SingleInstance(identifier, runtime.path(), none.bus).isFirst());
    EXPECT_FALSE(SingleInstance(identifier, elsewhere.path(), two.bus).isFirst());
    first.release();
    EXPECT_FALSE(first.isFirst());
    SingleInstance next(identifier, runtime.path(), two.bus);
    next.claimName();
    EXPECT_TRUE(next.isFirst());
}

} // namespace
} // namespace harbrix
