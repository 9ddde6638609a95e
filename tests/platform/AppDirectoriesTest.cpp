#include "platform/AppDirectories.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(AppDirectoriesTest, OnlyAbsolutePathsCount) {
    qputenv("HOME", "/home/u");
    qputenv("XDG_CONFIG_HOME", "relative/path");
    qputenv("XDG_DATA_HOME", "/data/");
    qputenv("XDG_CACHE_HOME", "");
    qunsetenv("XDG_RUNTIME_DIR");
    qunsetenv("TMPDIR");
    const AppDirectories directories = AppDirectories::ofThisUser();
    EXPECT_EQ(directories.home, QStringLiteral("/home/u"));
    EXPECT_EQ(directories.config, QStringLiteral("/home/u/.config"));
    EXPECT_EQ(directories.applicationSupport, QStringLiteral("/data"));
    EXPECT_EQ(directories.caches, QStringLiteral("/home/u/.cache"));
    EXPECT_EQ(directories.temporary, QStringLiteral("/tmp"));
    EXPECT_EQ(directories.runtime, QString());
}

} // namespace
} // namespace harbrix
