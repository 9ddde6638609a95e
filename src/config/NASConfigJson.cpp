#include "base/Json.h"
#include "config/NASConfig.h"

namespace harbrix {
namespace {

void insertIfPresent(QJsonObject& object, const char* key, const std::optional<QString>& text) {
    if (text)
        object.insert(QLatin1String(key), *text);
}

QJsonObject toJson(const NASConfig::MountOptions& options) {
    QJsonObject object{
        {QStringLiteral("smbVersion"), rawValue(options.smbVersion)},
        {QStringLiteral("readOnly"), options.readOnly},
        {QStringLiteral("connectionTimeout"), options.connectionTimeout},
        {QStringLiteral("retryCount"), options.retryCount},
        {QStringLiteral("retryInterval"), options.retryInterval},
        {QStringLiteral("enableCaching"), options.enableCaching},
    };
    insertIfPresent(object, "customMountPoint", options.customMountPoint);
    return object;
}

QJsonObject toJson(const NASConfig::NetworkBindingConfig& binding) {
    return {
        {QStringLiteral("strategy"), rawValue(binding.strategy)},
        {QStringLiteral("ipRange"), binding.ipRange},
        {QStringLiteral("ssidList"), QJsonArray::fromStringList(binding.ssidList)},
    };
}

template <typename Enumeration>
Enumeration readCase(JsonReader& reader, const char* key) {
    const QString raw = reader.text(key);
    const auto value = fromRawValue<Enumeration>(raw);
    if (!value)
        reader.fail(key, QStringLiteral("has the unknown value \"%1\"").arg(raw));
    return value.value_or(Enumeration{});
}

NASConfig::MountOptions readMountOptions(JsonReader reader) {
    NASConfig::MountOptions options;
    options.smbVersion = readCase<SMBVersion>(reader, "smbVersion");
    options.readOnly = reader.boolean("readOnly");
    options.customMountPoint = reader.optionalText("customMountPoint");
    options.connectionTimeout = reader.integer32("connectionTimeout");
    options.retryCount = reader.integer32("retryCount");
    options.retryInterval = reader.number("retryInterval");
    options.enableCaching = reader.boolean("enableCaching");
    return options;
}

NASConfig::NetworkBindingConfig readNetworkBinding(JsonReader reader) {
    NASConfig::NetworkBindingConfig binding;
    binding.strategy = readCase<NetworkBindingStrategy>(reader, "strategy");
    binding.ipRange = reader.text("ipRange");
    binding.ssidList = reader.texts("ssidList");
    return binding;
}

NASConfig readConfig(JsonReader& reader) {
    NASConfig config;
    config.id = reader.uuid("id");
    config.name = reader.text("name");
    config.isEnabled = reader.boolean("isEnabled");
    config.protocol = readCase<NASProtocol>(reader, "protocol");
    config.address = reader.text("address");
    config.sharePath = reader.text("sharePath");
    config.authMethod = readCase<AuthMethod>(reader, "authMethod");
    config.username = reader.optionalText("username");
    config.password = reader.optionalText("password");
    config.keychainIdentifier = reader.text("keychainIdentifier");
    config.mountOptions = readMountOptions(reader.object("mountOptions"));
    config.networkBinding = readNetworkBinding(reader.object("networkBinding"));
    return config;
}

} // namespace

QJsonObject NASConfig::toJson() const {
    QJsonObject object{
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("name"), name},
        {QStringLiteral("isEnabled"), isEnabled},
        {QStringLiteral("protocol"), rawValue(protocol)},
        {QStringLiteral("address"), address},
        {QStringLiteral("sharePath"), sharePath},
        {QStringLiteral("authMethod"), rawValue(authMethod)},
        {QStringLiteral("keychainIdentifier"), keychainIdentifier},
        {QStringLiteral("mountOptions"), harbrix::toJson(mountOptions)},
        {QStringLiteral("networkBinding"), harbrix::toJson(networkBinding)},
    };
    insertIfPresent(object, "username", username);
    insertIfPresent(object, "password", password);
    return object;
}

Result<NASConfig, SystemError> NASConfig::fromJson(const QJsonObject& object) {
    std::optional<SystemError> error;
    JsonReader reader(object, error);
    NASConfig config = readConfig(reader);
    if (error)
        return std::unexpected(*error);
    return config;
}

QByteArray encodeConfigs(const std::vector<NASConfig>& configs) {
    QJsonArray array;
    for (const NASConfig& config : configs)
        array.append(config.toJson());
    return encodeJson(array);
}

Result<std::vector<NASConfig>, SystemError> decodeConfigs(const QByteArray& json) {
    return decodeRecords<NASConfig>(json, readConfig);
}

} // namespace harbrix
