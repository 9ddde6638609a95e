#include "app/RecordExchange.h"

#include "base/Json.h"
#include "base/TaskScope.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "ctl/RemoteInterface.h"
#include "fakes/InMemorySecretStore.h"
#include "platform/UserDefaults.h"
#include "support/WaitUntil.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

using Passwords = RecordExchange::Passwords;
using Run = RecordExchange::Run;

/// A program's list of shares with its secrets.
struct Installation {
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath("defaults.json")};
    AppStateManager appState{[] { return QDateTime::currentDateTimeUtc(); }};
    InMemorySecretStore secrets;
    KeychainManager keychain{secrets};
    NASConfigStore store{defaults, appState, keychain};
    RecordExchange exchange{store, keychain};
    TaskScope scope;

    template <typename Value>
    Value await(Task<Value> flow) {
        std::optional<Value> outcome;
        scope.launch(keep(std::move(flow), &outcome));
        EXPECT_TRUE(waitUntil([&] { return outcome.has_value(); }));
        return std::move(*outcome);
    }
    QByteArray exported(Passwords passwords) { return await(exchange.exported(passwords)); }
    std::expected<QJsonObject, Refusal> imported(const QByteArray& json, Run run = Run::Real) {
        return await(exchange.imported(json, run));
    }
    NASConfig add(const QString& name, const QString& password) {
        NASConfig config = NASConfig::blank();
        config.name = name;
        config.address = "nas";
        config.sharePath = "media";
        config.keychainIdentifier = "account of " + name;
        store.add(config);
        EXPECT_TRUE(keychain.savePassword(password, config.keychainIdentifier));
        return config;
    }

private:
    template <typename Value>
    static Task<void> keep(Task<Value> flow, std::optional<Value>* outcome) {
        *outcome = co_await flow;
    }
};

QString names(const QJsonObject& answer, const char* what) {
    QStringList names;
    for (const QJsonValue& share : answer.value(QLatin1String(what)).toArray())
        names << share.toObject().value("name").toString();
    return names.join(' ');
}

TEST(RecordExchange, AnExportHoldsPasswordsOnlyWhenAskedFor) {
    Installation here;
    NASConfig config = here.add("Films", "geheim-1");
    config.password = "geheim-0"; // as a form leaves it
    here.store.update(config);
    EXPECT_FALSE(here.exported(Passwords::LeftOut).contains("geheim"));
    const QByteArray whole = here.exported(Passwords::Included);
    EXPECT_TRUE(whole.contains("geheim-1"));
    EXPECT_FALSE(whole.contains("geheim-0"));
}

TEST(RecordExchange, AnotherInstallationTakesItInWithThePasswordsInTheSecretStoreAlone) {
    Installation here;
    const NASConfig films = here.add("Films", "geheim-1");
    here.add("Music", "geheim-2");
    const QByteArray json = here.exported(Passwords::Included);

    Installation there;
    const auto trial = there.imported(json, Run::Dry);
    ASSERT_TRUE(trial);
    EXPECT_EQ(names(*trial, "added"), "Films Music");
    EXPECT_TRUE(there.store.configs().empty());
    EXPECT_EQ(there.secrets.size(), 0);

    const auto answer = there.imported(json);
    ASSERT_TRUE(answer);
    EXPECT_EQ(names(*answer, "added"), "Films Music");
    EXPECT_EQ(there.store.configs(), here.store.configs());
    EXPECT_EQ(there.keychain.getPassword(films.keychainIdentifier), "geheim-1");
    EXPECT_FALSE(encodeConfigs(there.store.configs()).contains("geheim"));
}

TEST(RecordExchange, TheSameIdIsTheSameShare) {
    Installation here;
    const NASConfig films = here.add("Films", "geheim-1");
    here.add("Music", "geheim-2");
    const QByteArray json = here.exported(Passwords::LeftOut);
    NASConfig renamed = films;
    renamed.name = "Cinema";
    here.store.update(renamed);

    const auto answer = here.imported(json);
    ASSERT_TRUE(answer);
    EXPECT_EQ(names(*answer, "added"), "");
    EXPECT_EQ(names(*answer, "updated"), "Films");
    EXPECT_EQ(names(*answer, "skipped"), "Music");
    EXPECT_EQ(here.store.configs().size(), 2);
    EXPECT_EQ(here.store.config(films.id), films);
    EXPECT_EQ(here.keychain.getPassword(films.keychainIdentifier), "geheim-1");
}

TEST(RecordExchange, ADamagedListChangesNothing) {
    Installation here;
    here.add("Films", "geheim");
    const QByteArray good = here.exported(Passwords::LeftOut);
    const auto broken = [&good](const char* what, const char* by) {
        return QByteArray(good).replace(what, by);
    };
    Installation there;
    for (const QByteArray& json :
         {QByteArray(), QByteArray("{}"), QByteArray("[1]"), good.left(good.size() / 2),
          broken("\"retryCount\"", "\"retries\""), broken("\"smb\"", "\"ftp\""),
          broken("\"isEnabled\": true", "\"isEnabled\": 1"), QByteArray(good).append("x"),
          broken("\"id\": \"", "\"id\": \"x")}) {
        const auto answer = there.imported(json);
        ASSERT_FALSE(answer) << json.toStdString();
        EXPECT_EQ(answer.error().errorName, remote::invalidRecordsError);
        EXPECT_FALSE(answer.error().text.contains("geheim"));
    }
    EXPECT_TRUE(there.store.configs().empty());
}

TEST(RecordExchange, AnIdThatComesTwiceIsRefused) {
    const NASConfig config = NASConfig::blank();
    const auto refused = parseRecords(encodeConfigs({config, NASConfig::blank(), config}));
    ASSERT_FALSE(refused);
    EXPECT_TRUE(refused.error().text.contains(uuidText(config.id)));
}

TEST(RecordExchange, ASecretStoreThatRefusesIsTold) {
    Installation here;
    here.add("Films", "geheim");
    const QByteArray json = here.exported(Passwords::Included);
    Installation there;
    there.secrets.failNext(InMemorySecretStore::Call::Add, SecretStore::NotAvailable);
    const auto answer = there.imported(json);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->value("passwordsNotStored").toArray(), QJsonArray{"Films"});
    EXPECT_EQ(there.store.configs().size(), 1);
}

TEST(RecordExchange, ARecordWithoutAnAccountGetsOneForItsPassword) {
    NASConfig config = NASConfig::blank();
    config.password = "geheim";
    const ImportPlan plan = planImport({config}, {});
    ASSERT_EQ(plan.added.size(), 1);
    EXPECT_FALSE(plan.added[0].keychainIdentifier.isEmpty());
}

} // namespace
} // namespace harbrix
