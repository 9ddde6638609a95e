#include "platform/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cerrno>
#include <cmath>
#include <limits>
#include <thread>

namespace harbrix {
namespace {

class UserDefaultsTest : public testing::Test {
protected:
    QByteArray contents(const QString& name) const {
        QFile file(directory.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QString& name, const QByteArray& text) const {
        QFile file(directory.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    static mode_t modeOf(const QString& path) {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QTemporaryDir directory;
    const QString name = QStringLiteral("defaults.json");
    const QString path = directory.filePath(name);
    const QString key = QStringLiteral("key");
};

TEST_F(UserDefaultsTest, EveryTypeComesBackAsItself) {
    using Value = UserDefaults::Value;
    const QDateTime date(QDate(2026, 3, 1), QTime(14, 5, 9, 417), Qt::UTC);
    const std::vector<Value> values = {
        true,
        qint64(0),
        qint64(1),
        std::numeric_limits<qint64>::max(),
        std::numeric_limits<qint64>::min(),
        1.0,
        0.1,
        -1e300,
        HUGE_VAL,
        QString(),
        QStringLiteral("quote \" slash \\ line\nbreak \u0001 挂载 \U0001F600"),
        QStringList(),
        QStringList{QString(), QStringLiteral("Home")},
        QByteArray(),
        QByteArray("[{\"id\":1}]"),
        QByteArray("\xff\x00\xfe", 3),
        QByteArray("\xef\xbb\xbf text after a byte order mark"),
        QByteArray("nul\0inside", 10),
        date,
    };
    {
        UserDefaults defaults(path);
        for (std::size_t index = 0; index < values.size(); ++index)
            defaults.set(QString::number(index), values[index]);
        EXPECT_FALSE(defaults.lastWriteError());
    }
    const UserDefaults again(path);
    EXPECT_FALSE(again.loadError());
    for (std::size_t index = 0; index < values.size(); ++index)
        EXPECT_EQ(again.value(QString::number(index)), values[index]) << "value " << index;
}

TEST_F(UserDefaultsTest, AWrongTypeReadsLikeAnAbsentKey) {
    UserDefaults defaults(path);
    defaults.set(key, true);
    EXPECT_EQ(defaults.boolean(key), true);
    EXPECT_FALSE(defaults.integer(key));
    EXPECT_FALSE(defaults.text(key));
    defaults.set(key, qint64(1));
    EXPECT_FALSE(defaults.boolean(key));
    EXPECT_EQ(defaults.number(key), 1.0);
    defaults.set(key, 2.0);
    EXPECT_EQ(defaults.integer(key), 2);
    for (const double value : {2.5, 9223372036854775808.0, HUGE_VAL, std::nan("")}) {
        defaults.set(key, value);
        EXPECT_FALSE(defaults.integer(key)) << value;
    }
    defaults.set(key, QByteArray("text"));
    EXPECT_FALSE(defaults.text(key));
    defaults.set(key, QDateTime());
    EXPECT_FALSE(defaults.value(key));
}

TEST_F(UserDefaultsTest, FileAndNewDirectoriesArePrivate) {
    const QString below = directory.filePath(QStringLiteral("new/deeper/defaults.json"));
    UserDefaults defaults(below);
    defaults.set(key, true);
    EXPECT_EQ(modeOf(below), 0600U);
    EXPECT_EQ(modeOf(directory.filePath(QStringLiteral("new"))), 0700U);
    EXPECT_EQ(QDir(directory.filePath(QStringLiteral("new/deeper"))).entryList(QDir::Files).size(),
              1);
}

struct DamageCase {
    const char* text;
    int keysLeft;
};

TEST_F(UserDefaultsTest, ADamagedFileIsSetAsideWhole) {
    const DamageCase cases[] = {
        {"", 0},
        {"{", 0},
        {"[]", 0},
        {"null", 0},
        {"\xff\xfe binary", 0},
        {"{\"values\":{\"a\":1}}", 0},
        {"{\"version\":2,\"values\":{\"a\":1}}", 0},
        {"{\"version\":1,\"values\":[]}", 0},
        {"{\"version\":1,\"values\":{\"a\":1", 0},
        // What can still be understood is kept.
        {"{\"version\":1,\"values\":{\"a\":1,\"b\":null}}", 1},
        {"{\"version\":1,\"values\":{\"a\":1,\"b\":{\"data\":\"!\"}}}", 1},
        {"{\"version\":1,\"values\":{\"a\":1,\"b\":{\"date\":\"never\"}}}", 1},
        {"{\"version\":1,\"values\":{\"a\":1,\"b\":{\"double\":\"x\"}}}", 1},
        {"{\"version\":1,\"values\":{\"a\":1,\"b\":{\"later type\":1}}}", 1},
        {"{\"version\":1,\"values\":{\"a\":1,\"b\":[\"x\",1]}}", 1},
    };
    int number = 0;
    for (const DamageCase& damage : cases) {
        write(name, damage.text);
        {
            UserDefaults onlooker(path, UserDefaults::Access::ReadOnly);
            EXPECT_EQ(onlooker.keys().size(), damage.keysLeft) << damage.text;
            onlooker.set(key, true);
            EXPECT_EQ(contents(name), damage.text) << "changed by one that only reads";
        }
        UserDefaults defaults(path);
        EXPECT_FALSE(defaults.loadError()) << damage.text;
        EXPECT_EQ(defaults.keys().size(), damage.keysLeft) << damage.text;
        const QString aside = ++number == 1 ? name + QStringLiteral(".damaged")
                                            : QStringLiteral("%1.damaged-%2").arg(name).arg(number);
        EXPECT_EQ(contents(aside), damage.text);
        EXPECT_EQ(defaults.damagedCopy(), directory.filePath(aside));
        defaults.set(key, true);
        EXPECT_EQ(UserDefaults(path).keys().size(), damage.keysLeft + 1) << damage.text;
    }
}

TEST_F(UserDefaultsTest, WhatCannotBeReadIsLeftAlone) {
    ASSERT_TRUE(QDir(directory.path()).mkpath(name));
    UserDefaults defaults(path);
    ASSERT_TRUE(defaults.loadError());
    EXPECT_EQ(defaults.loadError()->code, EISDIR);
    defaults.set(key, qint64(5));
    EXPECT_EQ(defaults.integer(key), 5);
    EXPECT_EQ(defaults.lastWriteError(), defaults.loadError());
    EXPECT_TRUE(QFileInfo(path).isDir());
    ASSERT_TRUE(QDir().rmdir(path));
    defaults.set(key, qint64(6));
    EXPECT_FALSE(defaults.lastWriteError()) << "the folder in the way is gone";
    EXPECT_EQ(UserDefaults(path).integer(key), 6);
}

TEST_F(UserDefaultsTest, AnUnchangedValueIsNotWrittenAgain) {
    UserDefaults defaults(path);
    defaults.set(key, true);
    ASSERT_TRUE(QFile::remove(path));
    defaults.set(key, true);
    defaults.remove(QStringLiteral("absent"));
    EXPECT_FALSE(QFile::exists(path));
    defaults.set(key, qint64(1)); // another type is another value
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(UserDefaultsTest, AWriteThatFailsKeepsMemoryAndIsTriedAgain) {
    const QString folder = directory.filePath(QStringLiteral("folder"));
    const QString below = folder + QStringLiteral("/defaults.json");
    UserDefaults defaults(below);
    write(QStringLiteral("folder"), "a file where the directory should be");
    int news = 0;
    QObject::connect(&defaults, &UserDefaults::writeErrorChanged, [&] { ++news; });
    defaults.set(key, true);
    defaults.set(key, true);
    EXPECT_EQ(news, 1) << "each failure is news";
    ASSERT_TRUE(defaults.lastWriteError());
    EXPECT_EQ(defaults.lastWriteError()->code, ENOTDIR);
    EXPECT_EQ(defaults.boolean(key), true);
    ASSERT_TRUE(QFile::remove(folder));
    defaults.set(QStringLiteral("other"), true);
    EXPECT_FALSE(defaults.lastWriteError());
    EXPECT_EQ(UserDefaults(below).boolean(key), true);
}

TEST_F(UserDefaultsTest, ASymbolicLinkStays) {
    write(QStringLiteral("elsewhere"), "{\"version\":1,\"values\":{}}");
    ASSERT_TRUE(QFile::link(directory.filePath(QStringLiteral("elsewhere")), path));
    UserDefaults(path).set(key, true);
    EXPECT_TRUE(QFileInfo(path).isSymLink());
    EXPECT_EQ(UserDefaults(path).boolean(key), true);
}

TEST_F(UserDefaultsTest, WritersOnManyThreadsLoseNothing) {
    UserDefaults defaults(path);
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer)
        writers.emplace_back([&, writer] {
            for (int index = 0; index < 20; ++index)
                defaults.set(QStringLiteral("%1.%2").arg(writer).arg(index), qint64(index));
        });
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(UserDefaults(path).keys().size(), 80);
}

} // namespace
} // namespace harbrix
