#pragma once

#include "platform/SecretStore.h"

#include <QJsonArray>

namespace harbrix {

/// Secrets in a JSON file of mode 0600, not encrypted: what is left where no keyring runs. Several
/// threads and processes may use one file. A file that cannot be read or understood gives
/// DecodeError to every call and stays as it is; one that cannot be written gives IoError.
class FileSecretStore final : public SecretStore {
public:
    explicit FileSecretStore(QString path) : m_path(std::move(path)) {}

    [[nodiscard]] Status add(const SecretIdentity& identity, const QByteArray& secret) override;
    Status remove(const SecretIdentity& identity) override;
    [[nodiscard]] std::expected<QByteArray, Status> find(const SecretIdentity& identity) override;

    /// Whether there is a file, and so something that may have to move to a keyring.
    [[nodiscard]] bool hasFile() const;

private:
    [[nodiscard]] std::expected<QJsonArray, Status> load() const;
    [[nodiscard]] Status save(const QJsonArray& items) const;

    QString m_path;
};

} // namespace harbrix
