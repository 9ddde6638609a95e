#include "config/NASConfigStore.h"

#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "fakes/InMemorySecretStore.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

class NASConfigStoreTest : public testing::Test {
protected:
    QTemporaryDir directory;
    UserDefaults defaults{directory.filePath(QStringLiteral("defaults.json"))};
    AppStateManager appState{[] { return QDateTime::currentDateTimeUtc(); }};
    InMemorySecretStore secrets;
    KeychainManager keychain{secrets};
    std::unique_ptr<NASConfigStore> store = reopened();

    std::unique_ptr<NASConfigStore> reopened() {
        return std::make_unique<NASConfigStore>(defaults, appState, keychain);
    }
    static NASConfig named(const char* name) {
        NASConfig config = NASConfig::blank();
        config.name = QString::fromLatin1(name);
        return config;
    }
    QByteArray stored() const {
        return defaults.data(QLatin1String(NASConfigStore::userDefaultsKey)).value_or("none");
    }
    std::string names() const {
        QStringList names;
        for (const NASConfig& config : store->configs())
            names << config.name;
        return names.join(QLatin1Char(' ')).toStdString();
    }
};

TEST_F(NASConfigStoreTest, AFirstStartIsEmptyAndWritesNothing) {
    EXPECT_TRUE(store->configs().empty());
    EXPECT_EQ(appState.appState().kind, AppState::Kind::unconfigured);
    EXPECT_EQ(stored(), "none");
}

TEST_F(NASConfigStoreTest, ChangesAreStoredAtOnceInTheOrderOfAdding) {
    NASConfig a = named("a");
    NASConfig b = named("b");
    b.isEnabled = false;
    int told = 0;
    QObject::connect(store.get(), &NASConfigStore::changed, [&] {
        ++told;
        EXPECT_EQ(stored(), encodeConfigs(store->configs()));
    });
    store->add(a);
    store->add(b);
    EXPECT_EQ(appState.appState().kind, AppState::Kind::idle);
    a.name = QStringLiteral("renamed");
    store->update(a);
    EXPECT_EQ(told, 3);
    EXPECT_EQ(store->enabledConfigs(), std::vector{a});
    EXPECT_EQ(store->config(b.id), b);

    appState.clear();
    store = reopened();
    EXPECT_EQ(names(), "renamed b");
    EXPECT_TRUE(appState.status(a.id) && appState.status(b.id)) << "statuses are seeded";
}

TEST_F(NASConfigStoreTest, ARemovedRecordTakesItsStatusAlong) {
    const NASConfig config = named("a");
    store->add(config);
    store->remove(config.id);
    EXPECT_EQ(stored(), "[]");
    EXPECT_EQ(appState.appState().kind, AppState::Kind::unconfigured);
    EXPECT_EQ(store->config(config.id), std::nullopt);
}

TEST_F(NASConfigStoreTest, UnknownIdsChangeNothing) {
    store->add(named("a"));
    const QByteArray before = stored();
    QObject::connect(store.get(), &NASConfigStore::changed, [] { ADD_FAILURE(); });
    store->update(named("b"));
    store->remove(QUuid::createUuid());
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(names(), "a");
}

TEST_F(NASConfigStoreTest, OfTwoRecordsWithOneIdOnlyTheFirstIsReached) {
    NASConfig config = named("first");
    store->add(config);
    config.name = QStringLiteral("second");
    store->add(config);
    EXPECT_EQ(names(), "first second");
    config.name = QStringLiteral("updated");
    store->update(config);
    EXPECT_EQ(names(), "updated second");
    store->remove(config.id);
    EXPECT_EQ(names(), "second");
}

TEST_F(NASConfigStoreTest, DamagedDataIsKeptUntilTheNextChange) {
    const QByteArray damaged = "[{\"id\":1}]";
    defaults.set(QLatin1String(NASConfigStore::userDefaultsKey), damaged);
    store = reopened();
    EXPECT_TRUE(store->configs().empty());
    EXPECT_EQ(stored(), damaged);
    store->add(named("a"));
    EXPECT_EQ(stored(), encodeConfigs(store->configs()));
}

TEST_F(NASConfigStoreTest, RemovingForgetsThePasswordWithoutBlocking) {
    NASConfig config = named("a");
    config.keychainIdentifier = QStringLiteral("account");
    ASSERT_TRUE(keychain.savePassword(QStringLiteral("p"), config.keychainIdentifier));
    store->add(config);
    // Another share of the same server and user.
    NASConfig twin = named("b");
    twin.keychainIdentifier = config.keychainIdentifier;
    store->add(twin);
    store->remove(config.id);
    EXPECT_TRUE(store->whenIdle().await_ready()) << "the password of another share goes";
    store->remove(twin.id);
    bool idle = false;
    const auto watch = [](NASConfigStore* watched, bool* done) -> Task<void> {
        auto forgotten = watched->whenIdle();
        co_await forgotten;
        *done = true;
    };
    TaskScope scope;
    scope.launch(watch(store.get(), &idle));
    while (!idle)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(secrets.size(), 0u);
}

TEST_F(NASConfigStoreTest, ARecordWithoutAnIdentifierLeavesTheSecretsAlone) {
    ASSERT_TRUE(keychain.savePassword(QStringLiteral("p"), QString()));
    const auto callsBefore = secrets.calls().size();
    const NASConfig config = named("a");
    store->add(config);
    store->remove(config.id);
    EXPECT_EQ(secrets.calls().size(), callsBefore);
}

} // namespace
} // namespace harbrix
