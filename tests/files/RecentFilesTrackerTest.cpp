#include "files/RecentFilesTracker.h"

#include "CacheFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace harbrix {
namespace {

class RecentFilesTrackerTest : public CacheFixture {
protected:
    static QUrl url(const QString& name) { return QUrl::fromLocalFile("/home/me/" + name); }
    static QStringList namesOf(const RecentFilesTracker& tracker) {
        QStringList names;
        for (const RecentFile& file : tracker.recentFiles())
            names << file.name;
        return names;
    }
};

TEST_F(RecentFilesTrackerTest, KeepsTheNewestTwentyOnceEach) {
    RecentFilesTracker tracker(defaults, scheduler);
    for (int number = 1; number <= 21; ++number)
        tracker.record(url(QString::number(number)));
    EXPECT_EQ(tracker.recentFiles().size(), RecentFilesTracker::maxStoredCount);
    EXPECT_EQ(namesOf(tracker).first(), "21");
    EXPECT_EQ(namesOf(tracker).last(), "2");
    const QUuid id = tracker.recentFiles()[18].id;
    tracker.record(url("3"), "by another name");
    EXPECT_EQ(tracker.recentFiles().size(), RecentFilesTracker::maxStoredCount);
    EXPECT_EQ(namesOf(tracker).first(), "by another name");
    EXPECT_NE(tracker.recentFiles().front().id, id);
    EXPECT_FALSE(namesOf(tracker).contains("3"));
    RecentFilesTracker other(defaults, scheduler);
    EXPECT_EQ(other.recentFiles(), tracker.recentFiles());
}

TEST_F(RecentFilesTrackerTest, ComparesExactly) {
    RecentFilesTracker tracker(defaults, scheduler);
    tracker.record(url("a b"));
    tracker.record(url("A b"));
    EXPECT_EQ(namesOf(tracker), (QStringList{"A b", "a b"}));
    const QByteArray stored = *defaults.data(RecentFilesTracker::defaultsKey);
    const QJsonObject last = QJsonDocument::fromJson(stored).array().last().toObject();
    EXPECT_EQ(last.value("url"), "file:///home/me/a%20b");
    EXPECT_EQ(last.value("accessedAt"), "2026-01-01T00:00:00Z");
    EXPECT_EQ(last.value("id").toString().size(), 36);
}

TEST_F(RecentFilesTrackerTest, LeavesDamagedDataUntilTheNextRecord) {
    defaults.set(RecentFilesTracker::defaultsKey, QByteArray("[{\"id\": 7}]"));
    RecentFilesTracker tracker(defaults, scheduler);
    EXPECT_TRUE(tracker.recentFiles().empty());
    EXPECT_TRUE(messages().last().startsWith("Failed to load recent files: "));
    EXPECT_EQ(defaults.data(RecentFilesTracker::defaultsKey), "[{\"id\": 7}]");
    tracker.record(url("a"));
    EXPECT_EQ(decodeRecentFiles(*defaults.data(RecentFilesTracker::defaultsKey))->size(), 1U);
}

} // namespace
} // namespace harbrix
