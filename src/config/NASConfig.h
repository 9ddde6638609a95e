#pragma once

#include "base/Result.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <vector>

namespace harbrix {

enum class NASProtocol { smb, nfs };
enum class AuthMethod { password, guest };
enum class SMBVersion { auto_, v2, v3 };
enum class NetworkBindingStrategy { ipRange, ssid, combined };

// For each of the four: all cases in order, the raw value that is stored, the fixed display name,
// and the case of a raw value.
template <typename Enumeration>
struct NamedCase {
    Enumeration value;
    const char* rawValue;
    const char* displayName;
};
[[nodiscard]] const std::vector<NamedCase<NASProtocol>>& allCases(NASProtocol);
[[nodiscard]] const std::vector<NamedCase<AuthMethod>>& allCases(AuthMethod);
[[nodiscard]] const std::vector<NamedCase<SMBVersion>>& allCases(SMBVersion);
[[nodiscard]] const std::vector<NamedCase<NetworkBindingStrategy>>&
    allCases(NetworkBindingStrategy);

template <typename Enumeration>
[[nodiscard]] QString rawValue(Enumeration value) {
    for (const auto& entry : allCases(value))
        if (entry.value == value)
            return QString::fromUtf8(entry.rawValue);
    return {};
}
template <typename Enumeration>
[[nodiscard]] QString displayName(Enumeration value) {
    for (const auto& entry : allCases(value))
        if (entry.value == value)
            return QString::fromUtf8(entry.displayName);
    return {};
}
template <typename Enumeration>
[[nodiscard]] std::optional<Enumeration> fromRawValue(const QString& raw) {
    for (const auto& entry : allCases(Enumeration{}))
        if (raw == QString::fromUtf8(entry.rawValue))
            return entry.value;
    return std::nullopt;
}

/// The description of one share: a plain value. A default-made one is the blank record of the add
/// command, but for its id, which is null until blank() gives it one.
struct NASConfig {
    struct MountOptions {
        SMBVersion smbVersion = SMBVersion::auto_;
        bool readOnly = false;
        std::optional<QString> customMountPoint;
        int connectionTimeout = 30; ///< seconds
        int retryCount = 3;
        double retryInterval = 10.0; ///< seconds
        bool enableCaching = true;

        bool operator==(const MountOptions&) const = default;
    };

    struct NetworkBindingConfig {
        NetworkBindingStrategy strategy = NetworkBindingStrategy::ipRange;
        QString ipRange = QStringLiteral("0.0.0.0/0");
        QStringList ssidList;

        bool operator==(const NetworkBindingConfig&) const = default;
    };

    QUuid id;
    QString name;
    bool isEnabled = true;
    NASProtocol protocol = NASProtocol::smb;
    QString address;
    QString sharePath;
    AuthMethod authMethod = AuthMethod::password;
    std::optional<QString> username;
    std::optional<QString> password;
    QString keychainIdentifier;
    MountOptions mountOptions;
    NetworkBindingConfig networkBinding;

    bool operator==(const NASConfig&) const = default;

    /// A blank record with a new random id.
    [[nodiscard]] static NASConfig blank();

    [[nodiscard]] QJsonObject toJson() const;
    /// Fails on a missing key, a wrong type or an unknown raw value; the text names the key.
    [[nodiscard]] static Result<NASConfig, SystemError> fromJson(const QJsonObject& object);
};

/// The whole list as the UTF-8 JSON text of an array, and back.
[[nodiscard]] QByteArray encodeConfigs(const std::vector<NASConfig>& configs);
[[nodiscard]] Result<std::vector<NASConfig>, SystemError> decodeConfigs(const QByteArray& json);

/// Where a share is mounted: its custom mount point if there is one, else "HarbrixVolumes" in the
/// home directory, "/" and the name, unchanged.
[[nodiscard]] QString mountPointPath(const NASConfig& config, const QString& homeDirectory);

/// What the user typed into a form, before the rules of the model are applied to it.
struct NASConfigDraft {
    QString name;
    QString address;
    QString sharePath;
    QString username;
    QString password;
    NASProtocol protocol = NASProtocol::smb;
    AuthMethod authMethod = AuthMethod::password;
    SMBVersion smbVersion = SMBVersion::auto_;
    bool readOnly = false;
    QString customMountPoint;
    bool isEnabled = true;
    NASConfig::NetworkBindingConfig networkBinding;

    bool operator==(const NASConfigDraft&) const = default;
};

/// A draft of what an existing record holds.
[[nodiscard]] NASConfigDraft draftOf(const NASConfig& config);
/// The record of a draft: empty texts become absent, an NFS record has no user and counts as guest,
/// the four fixed options return to their constants. An existing record lends its id and its
/// keychain identifier; without one both are made anew.
[[nodiscard]] NASConfig buildConfig(const NASConfigDraft& draft,
                                    const std::optional<NASConfig>& existing);

} // namespace harbrix
