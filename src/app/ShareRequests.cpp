#include "app/ShareRequests.h"

#include "base/Json.h"
#include "base/Utf8.h"
#include "ctl/RemoteInterface.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace harbrix {
namespace {

std::unexpected<Refusal> refuse(const char* errorName, const QString& text) {
    return std::unexpected(Refusal{QLatin1String(errorName), text});
}

std::unexpected<Refusal> invalid(const QString& key, const QString& reason) {
    return refuse(remote::invalidSettingError,
                  QStringLiteral("The setting \"%1\" %2.").arg(key, reason));
}

// Each sets one member of the draft, or gives the reason why the value cannot be taken.

using Reason = std::optional<QString>;

Reason set(QString& target, const QJsonValue& value) {
    if (!value.isString())
        return QStringLiteral("is no text");
    target = value.toString();
    return std::nullopt;
}

Reason set(bool& target, const QJsonValue& value) {
    if (!value.isBool())
        return QStringLiteral("is neither true nor false");
    target = value.toBool();
    return std::nullopt;
}

template <typename Enumeration>
Reason set(Enumeration& target, const QJsonValue& value) {
    const auto chosen = fromRawValue<Enumeration>(value.toString());
    if (value.isString() && chosen) {
        target = *chosen;
        return std::nullopt;
    }
    QStringList choices;
    for (const auto& entry : allCases(Enumeration{}))
        choices << QLatin1String(entry.rawValue);
    return QStringLiteral("is none of ") + choices.join(QStringLiteral(", "));
}

Reason set(QStringList& target, const QJsonValue& value) {
    if (!value.isArray())
        return QStringLiteral("is no list");
    QStringList names;
    for (const QJsonValue& entry : value.toArray()) {
        const QString name = entry.toString().trimmed();
        if (name.isEmpty())
            return QStringLiteral("holds an entry that is no name");
        if (!names.contains(name))
            names << name;
    }
    target = names;
    return std::nullopt;
}

using Draft = NASConfigDraft;
using Value = QJsonValue;
using Apply = Reason (*)(Draft&, const Value&);

const std::map<QString, Apply>& appliers() {
    static const std::map<QString, Apply> table{
        {"name", [](Draft& d, const Value& v) { return set(d.name, v); }},
        {"protocol", [](Draft& d, const Value& v) { return set(d.protocol, v); }},
        {"address", [](Draft& d, const Value& v) { return set(d.address, v); }},
        {"share", [](Draft& d, const Value& v) { return set(d.sharePath, v); }},
        {"auth", [](Draft& d, const Value& v) { return set(d.authMethod, v); }},
        {"user", [](Draft& d, const Value& v) { return set(d.username, v); }},
        {"smbVersion", [](Draft& d, const Value& v) { return set(d.smbVersion, v); }},
        {"readOnly", [](Draft& d, const Value& v) { return set(d.readOnly, v); }},
        {"customMountPoint", [](Draft& d, const Value& v) { return set(d.customMountPoint, v); }},
        {"enabled", [](Draft& d, const Value& v) { return set(d.isEnabled, v); }},
        {"bindingStrategy",
         [](Draft& d, const Value& v) { return set(d.networkBinding.strategy, v); }},
        {"ipRange", [](Draft& d, const Value& v) { return set(d.networkBinding.ipRange, v); }},
        {"ssids", [](Draft& d, const Value& v) { return set(d.networkBinding.ssidList, v); }},
    };
    return table;
}

} // namespace

std::expected<NASConfig, Refusal> findShare(const std::vector<NASConfig>& configs,
                                            const QString& nameOrId) {
    std::vector<NASConfig> named;
    const auto id = parseUuid(nameOrId);
    for (const NASConfig& config : configs) {
        if (id && config.id == *id)
            return config;
        if (config.name == nameOrId)
            named.push_back(config);
    }
    if (named.size() == 1)
        return named.front();
    if (named.empty())
        return refuse(remote::noSuchShareError,
                      QStringLiteral("There is no share \"%1\".").arg(nameOrId));
    QStringList ids;
    for (const NASConfig& config : named)
        ids << uuidText(config.id);
    return refuse(remote::ambiguousNameError,
                  QStringLiteral("%1 shares are named \"%2\"; give the id of one: %3")
                      .arg(named.size())
                      .arg(nameOrId, ids.join(QStringLiteral(", "))));
}

std::expected<QJsonObject, Refusal> parseSettings(const QString& json) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(json.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        return refuse(remote::invalidSettingError,
                      QStringLiteral("The settings are no JSON text: ") + error.errorString());
    if (!document.isObject())
        return refuse(remote::invalidSettingError,
                      QStringLiteral("The settings are no JSON object."));
    return document.object();
}

std::expected<NASConfigDraft, Refusal>
applySettings(NASConfigDraft draft, const QJsonObject& settings, const QByteArray& password) {
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        const auto applier = appliers().find(setting.key());
        if (applier == appliers().end())
            return invalid(setting.key(), QStringLiteral("is unknown"));
        if (const auto reason = applier->second(draft, setting.value()))
            return invalid(setting.key(), *reason);
    }
    const auto passwordText = decodeUtf8(password);
    if (!passwordText)
        return refuse(remote::invalidSettingError, QStringLiteral("The password is not UTF-8."));
    if (!passwordText->isEmpty())
        draft.password = *passwordText;
    return draft;
}

} // namespace harbrix
