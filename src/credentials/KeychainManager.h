#pragma once

#include "core/HarbrixError.h"

#include <QString>

#include <optional>

namespace harbrix {

class SecretStore;

/// Keeps each share's password in the user's secret store, and the one kind of entry that the mount
/// tool reads by itself. Synchronous and thread-safe; a call may block on the secret service, so it
/// is made on a worker.
class KeychainManager {
public:
    static constexpr auto service = "com.harbrix.credentials";

    explicit KeychainManager(SecretStore& store) : m_store(store) {}

    /// Whether the password is stored; the log holds the reason where it is not.
    bool savePassword(const QString& password, const QString& account);
    /// Nothing where there is no such item, or where it cannot be read.
    [[nodiscard]] std::optional<QString> getPassword(const QString& account);
    void deletePassword(const QString& account);

    [[nodiscard]] Result<void> writeSystemSMBKeychain(const QString& server, const QString& account,
                                                      const QString& password);
    void cleanupSystemSMBKeychain(const QString& server, const QString& account);

    /// SHA-256 of "address|sharePath|username", as 64 lower-case hexadecimal digits.
    [[nodiscard]] static QString generateKeychainIdentifier(const QString& address,
                                                            const QString& sharePath,
                                                            const std::optional<QString>& username);

private:
    static void logKeychainError(const QString& operation, int status);

    SecretStore& m_store;
};

} // namespace harbrix
