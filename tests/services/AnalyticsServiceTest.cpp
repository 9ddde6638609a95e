#include "services/AnalyticsService.h"

#include "base/Json.h"
#include "platform/UserDefaults.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

class AnalyticsServiceTest : public testing::Test {
protected:
    QTemporaryDir directory;
    UserDefaults defaults{directory.filePath("defaults.json")};
    const QString path = directory.filePath("Harbrix/analytics.json");
    QDateTime now = *parseIso8601("2026-03-01T14:05:09Z");

    AnalyticsService service() {
        return AnalyticsService(defaults, directory.path(), [this] { return now; });
    }
    void trackOne() {
        auto analytics = service();
        analytics.track(AnalyticsEvent::appLaunch);
        analytics.waitForWrites();
    }
    [[nodiscard]] QJsonArray stored() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).array()
                                              : QJsonArray();
    }
    void store(const QByteArray& text) const {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
};

TEST_F(AnalyticsServiceTest, KeepsRecordsInTheirForm) {
    {
        auto analytics = service();
        analytics.track(AnalyticsEvent::appLaunch);
        analytics.track(AnalyticsEvent::nasMount, AnalyticsRecord::Metadata{{"kind", "smb"}});
        analytics.waitForWrites();
    }
    const QJsonArray records = stored();
    ASSERT_EQ(records.size(), 2);
    const QJsonObject plain = records[0].toObject();
    EXPECT_EQ(plain.keys(), (QStringList{"event", "id", "timestamp"}));
    EXPECT_EQ(plain["event"], "app_launch");
    EXPECT_TRUE(parseUuid(plain["id"].toString()));
    EXPECT_EQ(plain["timestamp"].toDouble(), 794'066'709.0);
    EXPECT_EQ(records[1].toObject()["metadata"], (QJsonObject{{"kind", "smb"}}));

    trackOne(); // of a later run
    EXPECT_EQ(stored().size(), 3);
    EXPECT_EQ(stored()[1], records[1]);
}

TEST_F(AnalyticsServiceTest, IsOnUnlessSwitchedOff) {
    const struct {
        UserDefaults::Value value;
        bool isEnabled;
    } rows[] = {{true, true}, {false, false}, {QString("false"), true}, {qint64(0), true}};
    for (const auto& row : rows) {
        defaults.set(AnalyticsService::enabledKey, row.value);
        EXPECT_EQ(service().isEnabled(), row.isEnabled) << row.value.index();
    }
    defaults.set(AnalyticsService::enabledKey, false);
    trackOne();
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(AnalyticsServiceTest, TheOldestGoAtTheNextEvent) {
    QJsonArray many;
    for (int i = 0; i < 600; ++i)
        many.append(QJsonObject{{"id", uuidText(QUuid::createUuid())},
                                {"event", QString::number(i)},
                                {"timestamp", i}});
    store(encodeJson(many));
    trackOne();
    const QJsonArray records = stored();
    ASSERT_EQ(records.size(), 500);
    EXPECT_EQ(records.first(), many[101]);
    EXPECT_EQ(records.last().toObject()["event"], "app_launch");
}

TEST_F(AnalyticsServiceTest, ADamagedFileCountsAsEmpty) {
    for (const char* text :
         {"", "[{]", R"({"id":1})", R"([{"id":"no","event":"x","timestamp":1}])"}) {
        store(text);
        trackOne();
        EXPECT_EQ(stored().size(), 1) << text;
    }
}

} // namespace
} // namespace harbrix
