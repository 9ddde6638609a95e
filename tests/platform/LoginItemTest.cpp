#include "platform/LoginItem.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

class LoginItemTest : public testing::Test {
protected:
    QTemporaryDir config;
    const QString path = config.filePath("autostart/com.harbrix.app.desktop");

    [[nodiscard]] LoginItem item(const QString& command = "/usr/bin/harbrix") const {
        return {config.path(), "com.harbrix.app", command};
    }
    [[nodiscard]] QByteArray entry() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(LoginItemTest, IsThereOnceRegistered) {
    EXPECT_FALSE(item().isRegistered());
    EXPECT_TRUE(item().unregisterItem());
    EXPECT_TRUE(item().registerItem());
    EXPECT_TRUE(item().isRegistered());
    EXPECT_TRUE(entry().contains("\nExec=\"/usr/bin/harbrix\"\n"));
    EXPECT_TRUE(item().unregisterItem());
    EXPECT_FALSE(item().isRegistered());
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(LoginItemTest, ADesktopMaySwitchItOff) {
    for (const char* line : {"Hidden=true", "X-GNOME-Autostart-enabled = false"}) {
        ASSERT_TRUE(item().registerItem());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(line);
        file.close();
        EXPECT_FALSE(item().isRegistered()) << line;
    }
}

TEST_F(LoginItemTest, AnOddPathIsEscapedAsArgumentAndAsText) {
    ASSERT_TRUE(item(R"(/opt/100% $my "own\)").registerItem());
    EXPECT_TRUE(entry().contains("\nExec="
                                 R"("/opt/100%% \\$my \\"own\\\\")"
                                 "\n"))
        << entry().constData();
}

TEST_F(LoginItemTest, AFolderInTheWayIsAnError) {
    ASSERT_TRUE(QDir().mkpath(path + "/in"));
    EXPECT_FALSE(item().registerItem());
    EXPECT_FALSE(item().unregisterItem());
}

} // namespace
} // namespace harbrix
