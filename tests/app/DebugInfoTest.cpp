#include "app/DebugInfo.h"

#include "config/NASConfigStore.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(DebugInfo, SharesAreShownWithoutPasswordsAlsoWhenTheyCannotBeRead) {
    NASConfig config = NASConfig::blank();
    config.name = "Films";
    config.password = "geheim";
    const QByteArray good = encodeConfigs({config});
    ASSERT_TRUE(good.contains("geheim"));
    const QString shown = settingText(NASConfigStore::userDefaultsKey, good);
    EXPECT_TRUE(shown.contains("Films"));
    EXPECT_FALSE(shown.contains("geheim"));

    const QByteArray damaged = good.chopped(3);
    EXPECT_FALSE(settingText(NASConfigStore::userDefaultsKey, damaged).contains("geheim"));
    EXPECT_EQ(settingText("someone.else", good), QStringLiteral("%1 bytes").arg(good.size()));
}

} // namespace
} // namespace harbrix
