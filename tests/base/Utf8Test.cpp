#include "base/Utf8.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(Utf8, RefusesHalfASurrogatePair) {
    EXPECT_EQ(encodeUtf8(u"g\u00e9\U0001F511"), QByteArray("g\xc3\xa9\xf0\x9f\x94\x91"));
    EXPECT_EQ(encodeUtf8(u""), QByteArray(""));
    for (const auto& broken : {QString(QChar(0xd800)), QChar(0xdc00) + QStringLiteral("a"),
                               QStringLiteral("a") + QChar(0xd83d), QString(2, QChar(0xd83d))})
        EXPECT_EQ(encodeUtf8(broken), std::nullopt);
}

TEST(Utf8, RefusesInvalidBytesAndKeepsTheRest) {
    for (const char* text : {"", "abc", "g\xc3\xa9",
                             "\xef\xbb\xbf"
                             "abc",
                             "\xf0\x9f\x94\x91"}) {
        const auto decoded = decodeUtf8(text);
        ASSERT_TRUE(decoded.has_value()) << text;
        EXPECT_EQ(decoded->toUtf8(), QByteArray(text));
    }
    for (const char* broken : {"\xff", "a\xc3", "\xed\xa0\x80", "\xc0\xaf", "\xf0\x9f\x94"})
        EXPECT_EQ(decodeUtf8(broken), std::nullopt);
    EXPECT_EQ(decodeUtf8(QByteArray("a\0b", 3)), QStringLiteral("a") + QChar(0) + QLatin1Char('b'));
}

} // namespace
} // namespace harbrix
