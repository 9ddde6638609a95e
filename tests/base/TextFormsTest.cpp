#include "base/ByteCount.h"
#include "base/NaturalCompare.h"
#include "base/TimeText.h"

#include <gtest/gtest.h>

#include <limits>

namespace harbrix {
namespace {

TEST(ByteCount, RoundsAsFileManagersDo) {
    const struct {
        qint64 bytes;
        const char* text;
    } rows[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1'000, "1 KB"},
        {1'023, "1 KB"},
        {5'500, "6 KB"},
        {11'999, "12 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {12'345'678, "12.3 MB"},
        {123'456'789, "123.5 MB"},
        {550'000'000, "550 MB"},
        {999'900'000, "999.9 MB"},
        {999'950'000, "1 GB"},
        {1'234'567'898, "1.23 GB"},
        {1'050'000'000, "1.05 GB"},
        {12'345'678'987, "12.35 GB"},
        {999'995'000'000, "1 TB"},
        {std::numeric_limits<qint64>::max(), "9.22 EB"},
        {-1, "-1 byte"},
        {-1'023, "-1 KB"},
        {std::numeric_limits<qint64>::min(), "-9.22 EB"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(byteCountText(row.bytes, QLocale::c()).toStdString(), row.text) << row.bytes;
}

TEST(ByteCount, SpeaksTheLanguageOfTheLocale) {
    const struct {
        const char* language;
        qint64 bytes;
        const char* text;
    } rows[] = {
        {"en", 0, "Zero KB"},          {"de", 0, "0 KB"},         {"de", 12'345'678, "12,3 MB"},
        {"de", 2, "2 Byte"},           {"fr", 1, "1\u00a0octet"}, {"fr", 2, "2\u00a0octets"},
        {"fr", 12'345'678, "12,3 Mo"}, {"ja", 999, "999 バイト"}, {"ko", 999, "999바이트"},
        {"it", 2, "2 byte"},           {"es", 1, "1 byte"},       {"pt", 2, "2 bytes"},
        {"zh-Hans", 2, "2字节"},       {"tlh", 2, "2 bytes"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(
            byteCountText(row.bytes, QLocale(QString::fromLatin1(row.language))).toStdString(),
            row.text);
}

TEST(NaturalCompare, OrdersNamesAsFileManagersDo) {
    const struct {
        const char* smaller;
        const char* larger;
    } rows[] = {
        {"file9", "file10"},
        {"IMG_2.jpg", "img_11.jpg"},
        {"a", "B"},
        {"2", "10"},
        {"a1b2", "a1b10"},

        {"", "a"},
        {"1.9", "1.10"},
        {"A2", "a10"},
        {"caf\u00e9", "cafz"},
        {"!", "1"},
        {"9", "a"},
        {"99999999999999999999999998", "99999999999999999999999999"},
    };
    for (const QLocale& locale :
         {QLocale::c(), QLocale(QLocale::German), QLocale(QStringLiteral("zh-Hans"))}) {
        const NaturalCompare order(locale);
        for (const auto& row : rows) {
            const QString smaller = QString::fromUtf8(row.smaller);
            const QString larger = QString::fromUtf8(row.larger);
            EXPECT_LT(order.compare(smaller, larger), 0) << row.smaller << " " << row.larger;
            EXPECT_TRUE(order(smaller, larger) && !order(larger, smaller));
            EXPECT_LT(order.sortKey(smaller), order.sortKey(larger)) << row.smaller;
        }
        EXPECT_EQ(order.compare(u"Readme", u"README"), 0);
        EXPECT_EQ(order.sortKey(u"Readme"), order.sortKey(u"README"));
        EXPECT_EQ(order.compare(u"e\u0301", u"\u00e9"), 0) << "both forms of one letter";
    }
}

TEST(NaturalCompare, MakesKeysOfAnyLength) {
    const NaturalCompare order;
    const QString longName(10'000, QChar(0x4e2d));
    EXPECT_LT(order.sortKey(longName + u'1'), order.sortKey(longName + u'2'));
}

class RelativeDateTest : public testing::Test {
protected:
    const QDateTime now{QDate(2026, 3, 31), QTime(12, 0)};
    const QLocale english{QLocale::English};
    RelativeDateText shortText{RelativeDateText::Style::ShortNumeric, english};
    RelativeDateText wideText{RelativeDateText::Style::WideNamed, english};
};

TEST_F(RelativeDateTest, UsesTheLargestUnitThatHasPassedWhole) {
    const struct {
        QDateTime then;
        const char* shortText;
        const char* wideText;
    } rows[] = {
        {now, "0 sec. ago", "now"},
        {now.addSecs(-59), "59 sec. ago", "59 seconds ago"},
        {now.addSecs(-60), "1 min. ago", "1 minute ago"},
        {now.addSecs(-3599), "59 min. ago", "59 minutes ago"},
        {now.addSecs(-7200), "2 hr. ago", "2 hours ago"},
        {now.addDays(-1), "1 day ago", "yesterday"},
        {now.addDays(-1).addSecs(1), "23 hr. ago", "23 hours ago"},
        {now.addDays(-13), "1 wk. ago", "last week"},
        {now.addMonths(-1), "1 mo. ago", "last month"},
        {now.addMonths(-11), "11 mo. ago", "11 months ago"},
        {now.addYears(-2), "2 yr. ago", "2 years ago"},
        {now.addSecs(300), "in 5 min.", "in 5 minutes"},
        {now.addDays(1), "in 1 day", "tomorrow"},
        {QDateTime(), "", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(shortText(row.then, now).toStdString(), row.shortText);
        EXPECT_EQ(wideText(row.then, now).toStdString(), row.wideText);
    }
    EXPECT_EQ(shortText(now.toUTC().addSecs(-60), now).toStdString(), "1 min. ago");
}

TEST_F(RelativeDateTest, SpeaksTheLanguageOfItsLocale) {
    const RelativeDateText chinese(RelativeDateText::Style::ShortNumeric,
                                   QLocale(QStringLiteral("zh-Hans")));
    EXPECT_EQ(chinese(now.addSecs(-300), now).toStdString(), "5分钟前");
}

TEST(Duration, ShowsAtMostTwoUnits) {
    const struct {
        double seconds;
        const char* text;
    } rows[] = {
        {0.2, "0s"},
        {0.6, "1s"},
        {59.4, "59s"},
        {59.6, "1m"},
        {65, "1m 5s"},
        {3'600, "1h"},
        {3'605, "1h"},
        {3'900, "1h 5m"},
        {7'190, "2h"},
        {86'400, "24h"},
        {-5, "0s"},
        {1e300, "999,999h"},
        {std::numeric_limits<double>::infinity(), "999,999h"},
    };
    const QLocale english(QLocale::English);
    for (const auto& row : rows)
        EXPECT_EQ(durationText(Seconds(row.seconds), english).toStdString(), row.text)
            << row.seconds;
    EXPECT_EQ(durationText(Seconds(3'900), QLocale(QStringLiteral("zh-Hans"))).toStdString(),
              "1小时5分钟");
}

} // namespace
} // namespace harbrix
