#include "files/FileUrl.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(FileUrl, ReachesEveryNameThatLinuxAllows) {
    const QList<QPair<QByteArray, QString>> names = {
        {"plain.txt", "plain.txt"},
        {"a b%41#?;[x].txt", "a b%41#?;[x].txt"},
        {"line\nbreak\t\x01", "line\nbreak\t\x01"},
        {"\xe6\xa1\x8c\xe9\x9d\xa2", QStringLiteral("桌面")},
        {"caf\xe9.txt", "caf%E9.txt"},
        {"\xff\xfe", "%FF%FE"},
        {"x\xf0\x9f\x98\x80\xf0\x9f", QStringLiteral("x😀%F0%9F")},
    };
    for (const auto& [bytes, shown] : names) {
        const QUrl url = childUrl(QUrl::fromLocalFile(QStringLiteral("/mnt/nas/")), bytes);
        EXPECT_EQ(nativePath(url), "/mnt/nas/" + bytes);
        EXPECT_EQ(lastPathComponent(url), shown);
        // The form in which the URL is stored leads to the same file.
        EXPECT_EQ(nativePath(QUrl::fromEncoded(url.toEncoded(), QUrl::StrictMode)),
                  "/mnt/nas/" + bytes);
    }
}

TEST(FileUrl, TellsPathsOfUrls) {
    const QList<QPair<QByteArray, QByteArray>> rows = {
        {"file:///mnt/nas/", "/mnt/nas"},
        {"file:///", "/"},
        {"file://localhost/mnt", "/mnt"},
        {"file://server/mnt", ""},
        {"https://example.com/mnt", ""},
        {"file:///mnt/a%00b", ""},
        {"", ""},
    };
    for (const auto& [url, path] : rows)
        EXPECT_EQ(nativePath(QUrl::fromEncoded(url)), path) << url.toStdString();
}

TEST(FileUrl, GoesUpToTheRootAndNoFurther) {
    QUrl url = QUrl::fromLocalFile(QStringLiteral("/mnt/nas/"));
    QStringList paths;
    for (int step = 0; step < 3; ++step) {
        url = parentUrl(url);
        paths << pathText(url);
    }
    EXPECT_EQ(paths, (QStringList{"/mnt", "/", "/"}));
}

TEST(FileUrl, CutsNamesAtTheirLastDot) {
    const QList<std::array<QByteArray, 3>> rows = {
        {"a.txt", "a", "txt"},    {"a.tar.gz", "a.tar", "gz"},
        {"README", "README", ""}, {".bashrc", ".bashrc", ""},
        {"a.", "a.", ""},
    };
    for (const auto& [name, base, extension] : rows) {
        EXPECT_EQ(splitName(name).base, base);
        EXPECT_EQ(splitName(name).extension, extension);
    }
}

} // namespace
} // namespace harbrix
