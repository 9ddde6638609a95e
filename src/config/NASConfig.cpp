#include "config/NASConfig.h"

#include "credentials/KeychainManager.h"

namespace harbrix {
namespace {

constexpr auto volumesFolder = "HarbrixVolumes";

std::optional<QString> absentWhenEmpty(const QString& text) {
    if (text.isEmpty())
        return std::nullopt;
    return text;
}

QString newKeychainIdentifier(const NASConfig& config) {
    if (config.protocol == NASProtocol::nfs)
        return QStringLiteral("nfs-") + config.address + QLatin1Char('-') + config.sharePath;
    return KeychainManager::generateKeychainIdentifier(config.address, config.sharePath,
                                                       config.username);
}

} // namespace

const std::vector<NamedCase<NASProtocol>>& allCases(NASProtocol) {
    static const std::vector<NamedCase<NASProtocol>> cases{
        {NASProtocol::smb, "smb", "SMB/CIFS"},
        {NASProtocol::nfs, "nfs", "NFS"},
    };
    return cases;
}

const std::vector<NamedCase<AuthMethod>>& allCases(AuthMethod) {
    static const std::vector<NamedCase<AuthMethod>> cases{
        {AuthMethod::password, "password", "Password"},
        {AuthMethod::guest, "guest", "Guest"},
    };
    return cases;
}

const std::vector<NamedCase<SMBVersion>>& allCases(SMBVersion) {
    static const std::vector<NamedCase<SMBVersion>> cases{
        {SMBVersion::auto_, "auto", "Auto"},
        {SMBVersion::v2, "2", "SMB 2.x"},
        {SMBVersion::v3, "3", "SMB 3.x"},
    };
    return cases;
}

const std::vector<NamedCase<NetworkBindingStrategy>>& allCases(NetworkBindingStrategy) {
    static const std::vector<NamedCase<NetworkBindingStrategy>> cases{
        {NetworkBindingStrategy::ipRange, "ipRange", "IP Range"},
        {NetworkBindingStrategy::ssid, "ssid", "SSID"},
        {NetworkBindingStrategy::combined, "combined", "Combined (IP + SSID)"},
    };
    return cases;
}

NASConfig NASConfig::blank() {
    NASConfig config;
    config.id = QUuid::createUuid();
    return config;
}

QString mountPointPath(const NASConfig& config, const QString& homeDirectory) {
    const auto& custom = config.mountOptions.customMountPoint;
    if (custom && !custom->isEmpty())
        return *custom;
    return homeDirectory + QLatin1Char('/') + QLatin1String(volumesFolder) + QLatin1Char('/') +
           config.name;
}

NASConfigDraft draftOf(const NASConfig& config) {
    NASConfigDraft draft;
    draft.name = config.name;
    draft.address = config.address;
    draft.sharePath = config.sharePath;
    draft.username = config.username.value_or(QString());
    draft.password = config.password.value_or(QString());
    draft.protocol = config.protocol;
    draft.authMethod = config.authMethod;
    draft.smbVersion = config.mountOptions.smbVersion;
    draft.readOnly = config.mountOptions.readOnly;
    draft.customMountPoint = config.mountOptions.customMountPoint.value_or(QString());
    draft.isEnabled = config.isEnabled;
    draft.networkBinding = config.networkBinding;
    return draft;
}

NASConfig buildConfig(const NASConfigDraft& draft, const std::optional<NASConfig>& existing) {
    const bool isSmb = draft.protocol == NASProtocol::smb;
    NASConfig config;
    config.name = draft.name;
    config.isEnabled = draft.isEnabled;
    config.protocol = draft.protocol;
    config.address = draft.address;
    config.sharePath = draft.sharePath;
    config.authMethod = isSmb ? draft.authMethod : AuthMethod::guest;
    if (isSmb) {
        config.username = absentWhenEmpty(draft.username);
        config.password = absentWhenEmpty(draft.password);
    }
    config.mountOptions.smbVersion = draft.smbVersion;
    config.mountOptions.readOnly = draft.readOnly;
    config.mountOptions.customMountPoint = absentWhenEmpty(draft.customMountPoint);
    config.networkBinding = draft.networkBinding;
    // An existing identifier stays even when what it was made of changes: the stored password hangs
    // on it.
    config.id = existing ? existing->id : QUuid::createUuid();
    config.keychainIdentifier =
        existing ? existing->keychainIdentifier : newKeychainIdentifier(config);
    return config;
}

} // namespace harbrix
