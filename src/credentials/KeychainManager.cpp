#include "credentials/KeychainManager.h"

#include "base/Utf8.h"
#include "platform/SecretStore.h"
#include "services/LogManager.h"

#include <QCryptographicHash>

namespace harbrix {
namespace {

SecretIdentity applicationItem(const QString& account) {
    return {SecretIdentity::Kind::GenericPassword,
            {{QStringLiteral("service"), QLatin1String(KeychainManager::service)},
             {QStringLiteral("account"), account}}};
}

SecretIdentity systemSMBEntry(const QString& server, const QString& account) {
    return {SecretIdentity::Kind::InternetPassword,
            {{QStringLiteral("server"), server},
             {QStringLiteral("account"), account},
             {QStringLiteral("protocol"), QStringLiteral("smb")}}};
}

bool isGone(SecretStore::Status status) {
    return status == SecretStore::Success || status == SecretStore::NotFound;
}

} // namespace

bool KeychainManager::savePassword(const QString& password, const QString& account) {
    const auto secret = encodeUtf8(password);
    if (!secret)
        return false;
    deletePassword(account);
    const auto status = m_store.add(applicationItem(account), *secret);
    if (status != SecretStore::Success)
        logKeychainError(QStringLiteral("savePassword"), status);
    return status == SecretStore::Success;
}

std::optional<QString> KeychainManager::getPassword(const QString& account) {
    const auto secret = m_store.find(applicationItem(account));
    if (secret)
        return decodeUtf8(*secret);
    if (secret.error() != SecretStore::NotFound)
        logKeychainError(QStringLiteral("getPassword"), secret.error());
    return std::nullopt;
}

void KeychainManager::deletePassword(const QString& account) {
    const auto status = m_store.remove(applicationItem(account));
    if (!isGone(status))
        logKeychainError(QStringLiteral("deletePassword"), status);
}

Result<void> KeychainManager::writeSystemSMBKeychain(const QString& server, const QString& account,
                                                     const QString& password) {
    const auto secret = encodeUtf8(password);
    if (!secret)
        return std::unexpected(
            HarbrixError::keychainError(QStringLiteral("Failed to encode password as UTF-8")));
    // What a crash left behind would make the add collide.
    cleanupSystemSMBKeychain(server, account);
    const auto status = m_store.add(systemSMBEntry(server, account), *secret);
    if (status == SecretStore::Success)
        return {};
    const QString reason =
        SecretStore::statusText(status).value_or(QStringLiteral("Unknown error"));
    return std::unexpected(HarbrixError::keychainError(
        QStringLiteral("Failed to write system SMB keychain entry: ") + reason +
        QStringLiteral(" (OSStatus ") + QString::number(status) + QLatin1Char(')')));
}

void KeychainManager::cleanupSystemSMBKeychain(const QString& server, const QString& account) {
    const auto status = m_store.remove(systemSMBEntry(server, account));
    if (!isGone(status))
        logKeychainError(QStringLiteral("cleanupSystemSMBKeychain"), status);
}

QString KeychainManager::generateKeychainIdentifier(const QString& address,
                                                    const QString& sharePath,
                                                    const std::optional<QString>& username) {
    const QString joined =
        address + QLatin1Char('|') + sharePath + QLatin1Char('|') + username.value_or(QString());
    const auto bytes = encodeUtf8(joined);
    if (!bytes)
        return joined;
    return QString::fromLatin1(
        QCryptographicHash::hash(*bytes, QCryptographicHash::Sha256).toHex());
}

void KeychainManager::logKeychainError(const QString& operation, int status) {
    const QString reason = SecretStore::statusText(status).value_or(QStringLiteral("Unknown"));
    log(LogLevel::error,
        QStringLiteral("[KeychainManager] ") + operation + QStringLiteral(" failed: ") + reason +
            QStringLiteral(" (OSStatus ") + QString::number(status) + QLatin1Char(')'),
        LogCategory::keychain);
}

} // namespace harbrix
