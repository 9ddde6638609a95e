#include "platform/linux/SecretServiceStore.h"

#include "support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <thread>

namespace harbrix {
namespace {

using namespace std::chrono_literals;

const SecretIdentity generic = {
    SecretIdentity::Kind::GenericPassword,
    {{QStringLiteral("service"), QStringLiteral("com.harbrix.credentials")},
     {QStringLiteral("account"), QStringLiteral("0123")}}};
const SecretIdentity internet = {SecretIdentity::Kind::InternetPassword,
                                 {{QStringLiteral("server"), QStringLiteral("nas")},
                                  {QStringLiteral("account"), QStringLiteral("0123")},
                                  {QStringLiteral("protocol"), QStringLiteral("smb")}}};

/// GNOME's keyring on a private bus, with a home of its own.
class Keyring {
public:
    enum class Setup { Unlocked, WithoutCollection };

    explicit Keyring(const PrivateBus& bus) : m_bus(bus) {}

    [[nodiscard]] bool start(Setup setup = Setup::Unlocked) {
        m_daemon = std::make_unique<TestProcess>();
        auto environment = m_bus.environment();
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home.path());
        for (const char* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            environment.remove(QString::fromLatin1(variable));
        m_daemon->setProcessEnvironment(environment);
        m_daemon->setProcessChannelMode(QProcess::SeparateChannels);
        QStringList arguments{QStringLiteral("--foreground"),
                              QStringLiteral("--components=secrets")};
        if (setup == Setup::Unlocked)
            arguments << QStringLiteral("--unlock");
        m_daemon->start(QStringLiteral("gnome-keyring-daemon"), arguments);
        m_daemon->write("\n");
        m_daemon->waitForBytesWritten();
        m_daemon->closeWriteChannel();
        SecretServiceStore probe{BusAddress(m_bus.address())};
        const QDeadlineTimer deadline(10s);
        while (!probe.isOnBus() && !deadline.hasExpired())
            std::this_thread::sleep_for(10ms);
        return probe.isOnBus();
    }
    void stop() { m_daemon.reset(); }
    void freeze() const { ::kill(static_cast<pid_t>(m_daemon->processId()), SIGSTOP); }
    void thaw() const { ::kill(static_cast<pid_t>(m_daemon->processId()), SIGCONT); }
    /// Locks the collection that new items go to.
    [[nodiscard]] bool lock() const {
        qDBusRegisterMetaType<QList<QDBusObjectPath>>();
        QDBusConnection connection = BusAddress(m_bus.address()).connect();
        auto message = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
            QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("Lock"));
        const QList<QDBusObjectPath> collections{
            QDBusObjectPath(QStringLiteral("/org/freedesktop/secrets/aliases/default"))};
        message << QVariant::fromValue(collections);
        const bool done = connection.call(message).type() == QDBusMessage::ReplyMessage;
        QDBusConnection::disconnectFromBus(connection.name());
        return done;
    }

private:
    const PrivateBus& m_bus;
    QTemporaryDir m_home;
    std::unique_ptr<TestProcess> m_daemon;
};

class SecretServiceStoreTest : public testing::Test {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon")).isEmpty())
            GTEST_SKIP() << "gnome-keyring-daemon is not installed";
    }

    PrivateBus bus;
    Keyring keyring{bus};
    SecretServiceStore store{BusAddress(bus.address()), 2s};
};

TEST_F(SecretServiceStoreTest, StoresFindsAndRemovesByIdentity) {
    ASSERT_TRUE(keyring.start());
    const QByteArray secrets[] = {"", "plain", "挂载", QByteArray("\xff\0\n", 3),
                                  QByteArray(65536, 'x')};
    for (const QByteArray& secret : secrets) {
        EXPECT_EQ(store.find(generic), std::unexpected(SecretStore::NotFound));
        EXPECT_EQ(store.remove(generic), SecretStore::NotFound);
        ASSERT_EQ(store.add(generic, secret), SecretStore::Success);
        EXPECT_EQ(store.add(generic, "other"), SecretStore::DuplicateItem);
        EXPECT_EQ(store.find(internet), std::unexpected(SecretStore::NotFound));
        EXPECT_EQ(store.find(generic), secret);
        EXPECT_EQ(store.remove(generic), SecretStore::Success);
    }
}

TEST_F(SecretServiceStoreTest, ALockedKeyringIsNeitherPromptedForNorReadAsEmpty) {
    ASSERT_TRUE(keyring.start());
    ASSERT_EQ(store.add(generic, "secret"), SecretStore::Success);
    ASSERT_TRUE(keyring.lock());
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(store.find(generic), std::unexpected(SecretStore::InteractionNotAllowed));
    EXPECT_EQ(store.remove(generic), SecretStore::InteractionNotAllowed);
    EXPECT_EQ(store.add(internet, "x"), SecretStore::InteractionNotAllowed);
    EXPECT_EQ(store.find(internet), std::unexpected(SecretStore::NotFound));
    EXPECT_LT(elapsed.elapsed(), 1500) << "waited for somebody";
}

TEST_F(SecretServiceStoreTest, AServiceThatHangsIsGivenUpInTime) {
    ASSERT_TRUE(keyring.start());
    ASSERT_EQ(store.add(generic, "secret"), SecretStore::Success);
    keyring.freeze();
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(store.find(generic), std::unexpected(SecretStore::NotAvailable));
    EXPECT_LT(elapsed.elapsed(), 3000);
    keyring.thaw();
    EXPECT_EQ(store.find(generic), QByteArray("secret"));
}

TEST_F(SecretServiceStoreTest, PicksUpServiceAndBusAfterARestart) {
    EXPECT_EQ(store.find(generic), std::unexpected(SecretStore::NotAvailable));
    ASSERT_TRUE(keyring.start());
    ASSERT_EQ(store.add(generic, "secret"), SecretStore::Success);
    keyring.stop();
    EXPECT_EQ(store.find(generic), std::unexpected(SecretStore::NotAvailable));
    ASSERT_TRUE(keyring.start());
    EXPECT_EQ(store.find(generic), QByteArray("secret"));
    keyring.stop();
    bus.stop();
    EXPECT_EQ(store.find(generic), std::unexpected(SecretStore::NotAvailable));
    ASSERT_TRUE(bus.start());
    ASSERT_TRUE(keyring.start());
    EXPECT_EQ(store.find(generic), QByteArray("secret"));
}

TEST_F(SecretServiceStoreTest, WithoutAnyCollectionTheUserIsAskedOnce) {
    ASSERT_TRUE(keyring.start(Keyring::Setup::WithoutCollection));
    // Nobody is there to answer, so the first call ends at its limit.
    EXPECT_EQ(store.add(generic, "secret"), SecretStore::InteractionNotAllowed);
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(store.add(generic, "secret"), SecretStore::InteractionNotAllowed);
    EXPECT_LT(elapsed.elapsed(), 1000);
    EXPECT_EQ(store.find(generic), std::unexpected(SecretStore::NotFound));
}

TEST_F(SecretServiceStoreTest, ServesManyThreadsAtOnce) {
    ASSERT_TRUE(keyring.start());
    std::vector<std::thread> users;
    for (int user = 0; user < 6; ++user)
        users.emplace_back([&, user] {
            SecretIdentity identity = generic;
            identity.attributes[QStringLiteral("account")] = QString::number(user);
            const QByteArray secret = QByteArray::number(user);
            for (int round = 0; round < 5; ++round) {
                EXPECT_EQ(store.add(identity, secret), SecretStore::Success);
                EXPECT_EQ(store.find(identity), secret);
                EXPECT_EQ(store.remove(identity), SecretStore::Success);
            }
        });
    for (std::thread& user : users)
        user.join();
}

TEST_F(SecretServiceStoreTest, TheUsersStoreMovesFromFileToKeyringAndNeverBack) {
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("secrets.json"));
    int warnings = 0;
    const auto users = createSecretStore(BusAddress(bus.address()), path, [&] { ++warnings; });
    EXPECT_EQ(users->add(generic, "secret"), SecretStore::Success);
    EXPECT_EQ(users->add(internet, "other"), SecretStore::Success);
    EXPECT_EQ(users->find(generic), QByteArray("secret"));
    EXPECT_EQ(warnings, 1);

    ASSERT_TRUE(keyring.start());
    EXPECT_EQ(users->find(generic), QByteArray("secret"));
    EXPECT_EQ(store.find(generic), QByteArray("secret"));
    EXPECT_EQ(users->remove(internet), SecretStore::Success);
    EXPECT_EQ(users->find(internet), std::unexpected(SecretStore::NotFound));
    EXPECT_FALSE(QFile::exists(path));

    keyring.stop();
    EXPECT_EQ(users->find(generic), std::unexpected(SecretStore::NotAvailable));
    EXPECT_EQ(users->add(internet, "x"), SecretStore::NotAvailable);
    EXPECT_FALSE(QFile::exists(path));
}

} // namespace
} // namespace harbrix
