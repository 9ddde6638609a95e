#include "platform/linux/FileSecretStore.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <thread>

namespace harbrix {
namespace {

SecretIdentity generic(const QString& account) {
    return {SecretIdentity::Kind::GenericPassword,
            {{QStringLiteral("service"), QStringLiteral("com.harbrix.credentials")},
             {QStringLiteral("account"), account}}};
}

SecretIdentity internet(const QString& account, const QString& server) {
    return {SecretIdentity::Kind::InternetPassword,
            {{QStringLiteral("server"), server},
             {QStringLiteral("account"), account},
             {QStringLiteral("protocol"), QStringLiteral("smb")}}};
}

class FileSecretStoreTest : public testing::Test {
protected:
    void write(const QByteArray& text) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QByteArray contents() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("Harbrix/secrets.json"));
    FileSecretStore store{path};
};

TEST_F(FileSecretStoreTest, KeepsItemsApartByTheirWholeIdentity) {
    const SecretIdentity identities[] = {generic(QStringLiteral("a")), generic(QStringLiteral("b")),
                                         internet(QStringLiteral("a"), QStringLiteral("nas")),
                                         internet(QStringLiteral("a"), QStringLiteral("nas2"))};
    const QByteArray secrets[] = {"one", "", QByteArray("\xff\0\n", 3), "挂载"};
    for (std::size_t index = 0; index < std::size(identities); ++index) {
        EXPECT_EQ(store.find(identities[index]), std::unexpected(SecretStore::NotFound));
        EXPECT_EQ(store.remove(identities[index]), SecretStore::NotFound);
        EXPECT_EQ(store.add(identities[index], secrets[index]), SecretStore::Success);
        EXPECT_EQ(store.add(identities[index], "other"), SecretStore::DuplicateItem);
    }
    FileSecretStore again(path);
    for (std::size_t index = 0; index < std::size(identities); ++index) {
        EXPECT_EQ(again.find(identities[index]), secrets[index]);
        EXPECT_EQ(again.remove(identities[index]), SecretStore::Success);
        EXPECT_EQ(store.find(identities[index]), std::unexpected(SecretStore::NotFound));
    }
    EXPECT_FALSE(store.hasFile());
}

TEST_F(FileSecretStoreTest, TheFileIsPrivate) {
    ASSERT_EQ(store.add(generic(QStringLiteral("a")), "secret"), SecretStore::Success);
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
}

TEST_F(FileSecretStoreTest, WhatCannotBeReadIsKept) {
    ASSERT_EQ(store.add(generic(QStringLiteral("a")), "secret"), SecretStore::Success);
    const QByteArray whole = contents();
    const QByteArray damaged[] = {"", "[]", whole.left(whole.size() / 2),
                                  QByteArray(whole).replace("\"version\": 1", "\"version\": 2"),
                                  QByteArray(whole).replace("\"secret\"", "\"other\"")};
    for (const QByteArray& text : damaged) {
        write(text);
        EXPECT_EQ(store.find(generic(QStringLiteral("a"))),
                  std::unexpected(SecretStore::DecodeError));
        EXPECT_EQ(store.add(generic(QStringLiteral("b")), "x"), SecretStore::DecodeError);
        EXPECT_EQ(store.remove(generic(QStringLiteral("a"))), SecretStore::DecodeError);
        EXPECT_EQ(contents(), text);
    }
}

TEST_F(FileSecretStoreTest, WritersOfManyThreadsLoseNothing) {
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer)
        writers.emplace_back([&, writer] {
            FileSecretStore own(path);
            for (int index = 0; index < 10; ++index)
                EXPECT_EQ(own.add(generic(QStringLiteral("%1.%2").arg(writer).arg(index)), "x"),
                          SecretStore::Success);
        });
    for (std::thread& writer : writers)
        writer.join();
    for (int writer = 0; writer < 4; ++writer)
        for (int index = 0; index < 10; ++index)
            EXPECT_EQ(store.find(generic(QStringLiteral("%1.%2").arg(writer).arg(index))),
                      QByteArray("x"));
}

} // namespace
} // namespace harbrix
