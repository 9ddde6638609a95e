#include "services/UpdateManager.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(UpdateManagerTest, LeadsToTheRootOfTheFirstFeedsSite) {
    QList<QUrl> opened;
    UpdateManager updates([&](const QUrl& url) { opened << url; });
    updates.checkForUpdates();
    EXPECT_TRUE(opened.isEmpty());

    updates.configure(QUrl("https://harbrix.example/updates/appcast.xml"));
    updates.configure(QUrl("https://other.example/updates/appcast.xml"));
    updates.checkForUpdates();
    EXPECT_EQ(opened, QList<QUrl>{QUrl("https://harbrix.example/")});
}

} // namespace
} // namespace harbrix
