#include "credentials/KeychainManager.h"

#include "fakes/InMemorySecretStore.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

using Call = InMemorySecretStore::Call;

class KeychainManagerTest : public testing::Test {
protected:
    QTemporaryDir directory;
    UserDefaults defaults{directory.filePath(QStringLiteral("defaults.json"))};
    LogManager logManager{defaults, directory.path(), directory.path()};
    InMemorySecretStore store;
    KeychainManager keychain{store};
    const QString account = QStringLiteral("account");
    const QString server = QStringLiteral("nas.local");
    const QString broken{QChar(0xd800)};

    void SetUp() override { defaults.set(QLatin1String(LogManager::fileLoggingKey), true); }

    static SecretIdentity itemOf(const QString& account) {
        return {SecretIdentity::Kind::GenericPassword,
                {{QStringLiteral("service"), QStringLiteral("com.harbrix.credentials")},
                 {QStringLiteral("account"), account}}};
    }
    SecretIdentity systemEntry() const {
        return {SecretIdentity::Kind::InternetPassword,
                {{QStringLiteral("server"), server},
                 {QStringLiteral("account"), account},
                 {QStringLiteral("protocol"), QStringLiteral("smb")}}};
    }
    /// The messages of all lines that were logged so far.
    std::vector<std::string> logged() {
        logManager.waitForWrites();
        std::vector<std::string> messages;
        QFile file(logManager.logDirectory() + QStringLiteral("/Harbrix.log"));
        if (file.open(QIODevice::ReadOnly))
            while (!file.atEnd()) {
                const QByteArray line = file.readLine().trimmed();
                EXPECT_TRUE(line.contains("[ERROR] [Keychain] ")) << line.constData();
                messages.push_back(line.mid(line.indexOf(" - ") + 3).toStdString());
            }
        return messages;
    }
};

TEST_F(KeychainManagerTest, SavingTwiceLeavesTheSecondPassword) {
    EXPECT_TRUE(keychain.savePassword(QStringLiteral("one"), account));
    EXPECT_TRUE(keychain.savePassword(QStringLiteral("z\u00fc\U0001F511"), account));
    EXPECT_EQ(store.size(), 1u);
    EXPECT_EQ(store.secret(itemOf(account)), QByteArray("z\xc3\xbc\xf0\x9f\x94\x91"));
    EXPECT_EQ(keychain.getPassword(account), QStringLiteral("z\u00fc\U0001F511"));
    EXPECT_TRUE(keychain.savePassword(QString(), account));
    EXPECT_EQ(keychain.getPassword(account), QString());
    EXPECT_TRUE(logged().empty());
}

TEST_F(KeychainManagerTest, AMissingItemIsNoError) {
    EXPECT_EQ(keychain.getPassword(account), std::nullopt);
    keychain.deletePassword(account);
    keychain.cleanupSystemSMBKeychain(server, account);
    EXPECT_TRUE(logged().empty());
}

TEST_F(KeychainManagerTest, WhatIsNoUtf8IsNeitherStoredNorRead) {
    EXPECT_TRUE(keychain.savePassword(QStringLiteral("kept"), account));
    EXPECT_FALSE(keychain.savePassword(broken, account));
    EXPECT_EQ(keychain.getPassword(account), QStringLiteral("kept")) << "it touches nothing";
    const auto written = keychain.writeSystemSMBKeychain(server, account, broken);
    EXPECT_EQ(written.error(),
              HarbrixError::keychainError(QStringLiteral("Failed to encode password as UTF-8")));
    store.put(itemOf(account), "\xff");
    EXPECT_EQ(keychain.getPassword(account), std::nullopt);
    EXPECT_TRUE(logged().empty());
}

TEST_F(KeychainManagerTest, LogsEveryOtherFailureWithItsStatus) {
    const struct {
        Call call;
        std::function<void()> operation;
        const char* name;
    } rows[] = {
        {Call::Add, [&] { EXPECT_FALSE(keychain.savePassword(server, account)); }, "savePassword"},
        {Call::Find, [&] { EXPECT_FALSE(keychain.getPassword(account).has_value()); },
         "getPassword"},
        {Call::Remove, [&] { keychain.deletePassword(account); }, "deletePassword"},
        {Call::Remove, [&] { keychain.cleanupSystemSMBKeychain(server, account); },
         "cleanupSystemSMBKeychain"},
    };
    std::vector<std::string> expected;
    for (const auto& row : rows) {
        store.failNext(row.call, SecretStore::InteractionNotAllowed);
        row.operation();
        const auto reason = SecretStore::statusText(SecretStore::InteractionNotAllowed);
        expected.push_back("[KeychainManager] " + std::string(row.name) +
                           " failed: " + reason.value_or(QStringLiteral("Unknown")).toStdString() +
                           " (OSStatus -25308)");
    }
    EXPECT_EQ(logged(), expected);
}

TEST_F(KeychainManagerTest, TheSystemEntryReplacesAStaleOne) {
    store.put(systemEntry(), "left by a crash");
    EXPECT_TRUE(keychain.writeSystemSMBKeychain(server, account, QStringLiteral("new")));
    EXPECT_EQ(store.secret(systemEntry()), QByteArray("new"));
    keychain.cleanupSystemSMBKeychain(server, account);
    EXPECT_EQ(store.size(), 0u);

    store.failNext(Call::Add, SecretStore::NotAvailable);
    const auto written = keychain.writeSystemSMBKeychain(server, account, QStringLiteral("new"));
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().kind(), HarbrixError::Case::keychainError);
    EXPECT_TRUE(written.error().payload().startsWith(
        QStringLiteral("Failed to write system SMB keychain entry: ")));
    EXPECT_TRUE(written.error().payload().endsWith(QStringLiteral(" (OSStatus -25291)")));
}

TEST(KeychainIdentifier, HashesAddressShareAndUser) {
    const QString address = QStringLiteral("nas");
    const QString share = QStringLiteral("media");
    // printf '%s' 'nas|media|' | sha256sum
    const std::string withoutUser =
        "9374e5a48a66bb7a7b33c4b10630d316a214d6d03a0fd688050aea268cd836ef";
    // printf '%s' 'nas|media|jürgen' | sha256sum
    const std::string withUser = "8c88c1be9e71f48b3e04f8b65e766d3e850877b380c099123f1c0a302d312775";
    const auto of = [&](const std::optional<QString>& user) {
        return KeychainManager::generateKeychainIdentifier(address, share, user).toStdString();
    };
    EXPECT_EQ(of(std::nullopt), withoutUser);
    EXPECT_EQ(of(QString()), withoutUser);
    EXPECT_EQ(of(QStringLiteral("j\u00fcrgen")), withUser);
    EXPECT_EQ(KeychainManager::generateKeychainIdentifier(QChar(0xd800), share, {}),
              QChar(0xd800) + QStringLiteral("|media|"));
}

} // namespace
} // namespace harbrix
