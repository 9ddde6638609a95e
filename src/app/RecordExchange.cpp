#include "app/RecordExchange.h"

#include "base/Json.h"
#include "base/Worker.h"
#include "config/NASConfigStore.h"
#include "credentials/KeychainManager.h"
#include "ctl/RemoteInterface.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace harbrix {
namespace {

std::unexpected<Refusal> refuse(const QString& text) {
    return std::unexpected(Refusal{QLatin1String(remote::invalidRecordsError), text});
}

bool bringsPassword(const NASConfig& config) {
    return config.protocol == NASProtocol::smb && config.authMethod == AuthMethod::password &&
           config.password && !config.password->isEmpty();
}

const NASConfig* findById(const std::vector<NASConfig>& configs, const QUuid& id) {
    const auto found = std::ranges::find(configs, id, &NASConfig::id);
    return found == configs.end() ? nullptr : &*found;
}

/// The account of a record that brings a password but no account, as a form would name it.
NASConfig withAccount(NASConfig config) {
    if (config.keychainIdentifier.isEmpty() && bringsPassword(config))
        config.keychainIdentifier = KeychainManager::generateKeychainIdentifier(
            config.address, config.sharePath, config.username);
    return config;
}

/// The record as the list is to hold it: a password that came along is in the secret store.
NASConfig asStored(NASConfig config, const NASConfig* present) {
    if (bringsPassword(config) || !present)
        config.password.reset();
    else
        config.password = present->password;
    return config;
}

QJsonArray namesAndIds(const std::vector<NASConfig>& configs) {
    QJsonArray array;
    for (const NASConfig& config : configs)
        array.append(QJsonObject{{"id", uuidText(config.id)}, {"name", config.name}});
    return array;
}

} // namespace

std::expected<std::vector<NASConfig>, Refusal> parseRecords(const QByteArray& json) {
    auto records = decodeConfigs(json);
    if (!records)
        return refuse(QStringLiteral("These are no records of shares: ") +
                      records.error().description);
    for (auto record = records->begin(); record != records->end(); ++record)
        if (std::find_if(records->begin(), record,
                         [&](const NASConfig& other) { return other.id == record->id; }) != record)
            return refuse(QStringLiteral("The id %1 comes twice.").arg(uuidText(record->id)));
    return std::move(*records);
}

ImportPlan planImport(std::vector<NASConfig> read, const std::vector<NASConfig>& present) {
    ImportPlan plan;
    for (NASConfig& record : read) {
        const NASConfig* before = findById(present, record.id);
        NASConfig config = withAccount(std::move(record));
        const bool isSame =
            before && !bringsPassword(config) && asStored(config, before) == *before;
        (!before ? plan.added : isSame ? plan.skipped : plan.updated).push_back(std::move(config));
    }
    return plan;
}

QJsonObject describe(const ImportPlan& plan) {
    return {{"added", namesAndIds(plan.added)},
            {"updated", namesAndIds(plan.updated)},
            {"skipped", namesAndIds(plan.skipped)}};
}

Task<QByteArray> RecordExchange::exported(Passwords passwords) {
    std::vector<NASConfig> configs = m_store.configs();
    for (NASConfig& config : configs) {
        const auto ownPassword = std::exchange(config.password, std::nullopt);
        if (passwords == Passwords::LeftOut || config.protocol != NASProtocol::smb ||
            config.authMethod != AuthMethod::password)
            continue;
        auto reading = onWorker([&keychain = m_keychain, account = config.keychainIdentifier] {
            return keychain.getPassword(account);
        });
        const auto stored = co_await reading;
        config.password = stored ? stored : ownPassword;
    }
    QJsonArray array;
    for (const NASConfig& config : configs)
        array.append(config.toJson());
    co_return QJsonDocument(array).toJson();
}

Task<std::expected<QJsonObject, Refusal>> RecordExchange::imported(QByteArray json, Run run) {
    const auto read = parseRecords(json);
    if (!read)
        co_return std::unexpected(read.error());
    if (run == Run::Dry)
        co_return describe(planImport(*read, m_store.configs()));
    QJsonArray notStored;
    for (const NASConfig& record : *read) {
        const NASConfig config = withAccount(record);
        if (!bringsPassword(config))
            continue;
        auto storing = storePassword(config);
        const bool isStored = co_await storing;
        if (!isStored)
            notStored.append(config.name);
    }
    // Now, since the list may have changed while the secret store was busy.
    const ImportPlan plan = planImport(*read, m_store.configs());
    for (const NASConfig& config : plan.added)
        m_store.add(asStored(config, nullptr));
    for (const NASConfig& config : plan.updated) {
        const auto before = m_store.config(config.id);
        m_store.update(asStored(config, before ? &*before : nullptr));
    }
    QJsonObject answer = describe(plan);
    answer.insert("passwordsNotStored", notStored);
    co_return answer;
}

Task<bool> RecordExchange::storePassword(NASConfig config) {
    auto call = onWorker([&keychain = m_keychain, config] {
        return keychain.savePassword(*config.password, config.keychainIdentifier);
    });
    co_return co_await call;
}

} // namespace harbrix
