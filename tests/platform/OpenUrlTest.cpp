#include "platform/OpenUrl.h"

#include "platform/BusObjects.h"
#include "platform/MessageBus.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDesktopServices>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(OpenUrlTest, ShowsTheFileOrElseOpensItsFolder) {
    const PrivateBus privateBus;
    QDBusConnection bus = BusAddress(privateBus.address()).connect();
    DesktopOnBus desktop;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &desktop, "open");
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/my share/100% 挂"));

    showInFileViewer(file, bus);
    ASSERT_TRUE(waitUntil([&] { return !desktop.opened.isEmpty(); }));
    EXPECT_EQ(desktop.opened.first(), QUrl::fromLocalFile(QStringLiteral("/my share")));

    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &desktop,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.FileManager1")));
    showInFileViewer(file, bus);
    ASSERT_TRUE(waitUntil([&] { return !desktop.shown.isEmpty(); }));
    EXPECT_EQ(desktop.shown, QStringList(QStringLiteral("file:///my%20share/100%25%20%E6%8C%82")));
    EXPECT_EQ(desktop.opened.size(), 1);

    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QDBusConnection::disconnectFromBus(bus.name());
}

} // namespace
} // namespace harbrix
