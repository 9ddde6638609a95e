#include "services/Text.h"

#include "services/MountStateText.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

#include <algorithm>

namespace harbrix {
namespace {

// Every string literal of the sources but for the catalogue's own.
QSet<QString>
literalsInSources(const QString& pattern = QStringLiteral("\"([a-z][A-Za-z0-9.]*)\"")) {
    const QString sources =
        QFileInfo(QString::fromUtf8(__FILE__)).path() + QStringLiteral("/../../src");
    const QRegularExpression literal(pattern);
    QSet<QString> literals;
    QDirIterator files(sources, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.fileName().endsWith(QLatin1String("/TextCatalogue.h")) ||
            !file.open(QIODevice::ReadOnly))
            continue;
        const QString content = QString::fromUtf8(file.readAll());
        for (auto matches = literal.globalMatch(content); matches.hasNext();)
            literals.insert(matches.next().captured(1));
    }
    return literals;
}

TEST(TextCatalogue, HoldsEachKeyOnceWithADefault) {
    QSet<QString> keys;
    for (const CatalogueEntry& entry : textCatalogue) {
        const QString key = QString::fromUtf8(entry.key);
        EXPECT_FALSE(keys.contains(key)) << entry.key;
        EXPECT_FALSE(QByteArray(entry.defaultText).isEmpty()) << entry.key;
        keys.insert(key);
    }
}

TEST(TextCatalogue, HoldsNoKeyThatNobodyUses) {
    const QSet<QString> literals = literalsInSources();
    ASSERT_TRUE(literals.contains(QStringLiteral("status.idle"))) << "the sources were not found";
    for (const CatalogueEntry& entry : textCatalogue)
        EXPECT_TRUE(literals.contains(QString::fromUtf8(entry.key))) << "nobody uses " << entry.key;
}

TEST(TextCatalogue, HoldsEveryTextThatIsItsOwnKey) {
    const QSet<QString> used = literalsInSources(QStringLiteral("literalText\\(\\s*\"([^\"]*)\""));
    EXPECT_GT(used.size(), 5);
    for (const QString& text : used)
        EXPECT_TRUE(std::ranges::any_of(selfKeyedTexts, [&](const char* known) {
            return text == QString::fromUtf8(known);
        })) << text.toStdString();
}

TEST(Text, KeepsBlanksAndDotsOfDefaultTexts) {
    EXPECT_EQ(text("menubar.browseFiles").toStdString(), "  浏览文件...");
    EXPECT_EQ(text("nas.testingConnection").toStdString(), "正在测试连接...");
    EXPECT_EQ(text("nas.connectionSuccess").toStdString(), "连接成功（延迟 %@ms）");
    EXPECT_EQ(text("browser.fileExistsMessage").toStdString(),
              "\"%@\" already exists in this location.");
}

TEST(Text, FillsPlaceholders) {
    const struct {
        const char* format;
        QStringList arguments;
        const char* filled;
    } rows[] = {
        {"%@ 已卸载", {QStringLiteral("NAS")}, "NAS 已卸载"},
        {"%1$@: %2$@", {QStringLiteral("a"), QStringLiteral("b")}, "a: b"},
        {"%2$@ %1$@", {QStringLiteral("a"), QStringLiteral("b")}, "b a"},
        {"%lld of %lld", {QStringLiteral("1"), QStringLiteral("2")}, "1 of 2"},
        {"%@%@", {QStringLiteral("%@"), QStringLiteral("%2$@")}, "%@%2$@"},
        {"%1$@", {QStringLiteral("100%")}, "100%"},
        {"%@ and %@", {QStringLiteral("a")}, "a and %@"},
        {"50%% of %@", {QStringLiteral("x")}, "50% of x"},
        {"100% %d %", {QStringLiteral("x")}, "100% %d %"},
        {"", {QStringLiteral("x")}, ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fillPlaceholders(QString::fromUtf8(row.format), row.arguments).toStdString(),
                  row.filled);
}

TEST(Text, TheKeyOfMountingHasTwoDefaults) {
    EXPECT_EQ(statusText(MountState::Kind::mounting).toStdString(), "挂载中...");
    EXPECT_EQ(accessibilityLabel(MountState::Kind::mounting).toStdString(), "挂载中");
    const auto failed = MountState::failed(HarbrixError::timeout(QStringLiteral("x")));
    EXPECT_EQ(statusText(failed).toStdString(), "失败: Operation timed out: x");
    EXPECT_EQ(accessibilityLabel(failed).toStdString(), "挂载失败");
}

} // namespace
} // namespace harbrix
