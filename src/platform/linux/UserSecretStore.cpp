#include "platform/linux/FileSecretStore.h"
#include "platform/linux/SecretServiceStore.h"

#include <mutex>

namespace harbrix {

namespace {

/// The Secret Service where there is one, else the file; see createSecretStore().
class UserSecretStore final : public SecretStore {
public:
    UserSecretStore(const BusAddress& bus, const QString& filePath,
                    std::function<void()> onFileUsed)
        : m_service(bus), m_file(filePath), m_onFileUsed(std::move(onFileUsed)) {}

    [[nodiscard]] Status add(const SecretIdentity& identity, const QByteArray& secret) override;
    Status remove(const SecretIdentity& identity) override;
    [[nodiscard]] std::expected<QByteArray, Status> find(const SecretIdentity& identity) override;

private:
    enum class Place { Service, File, Lost };

    Place place();
    std::expected<QByteArray, Status> moveFromFile(const SecretIdentity& identity);

    SecretServiceStore m_service;
    FileSecretStore m_file;
    std::function<void()> m_onFileUsed;
    std::once_flag m_told;
    std::atomic<bool> m_serviceWasThere = false;
};

UserSecretStore::Place UserSecretStore::place() {
    if (m_service.isOnBus()) {
        m_serviceWasThere = true;
        return Place::Service;
    }
    if (m_serviceWasThere)
        return Place::Lost;
    if (m_onFileUsed)
        std::call_once(m_told, m_onFileUsed);
    return Place::File;
}

SecretStore::Status UserSecretStore::add(const SecretIdentity& identity, const QByteArray& secret) {
    switch (place()) {
    case Place::Lost:
        return NotAvailable;
    case Place::File:
        return m_file.add(identity, secret);
    case Place::Service:
        break;
    }
    const Status status = m_service.add(identity, secret);
    if (status == Success && m_file.hasFile())
        m_file.remove(identity);
    return status;
}

SecretStore::Status UserSecretStore::remove(const SecretIdentity& identity) {
    switch (place()) {
    case Place::Lost:
        return NotAvailable;
    case Place::File:
        return m_file.remove(identity);
    case Place::Service:
        break;
    }
    const Status status = m_service.remove(identity);
    // A copy that stayed in the file would come back at the next look.
    const Status inFile = m_file.hasFile() ? m_file.remove(identity) : NotFound;
    return status == NotFound ? inFile : status;
}

std::expected<QByteArray, SecretStore::Status>
UserSecretStore::find(const SecretIdentity& identity) {
    switch (place()) {
    case Place::Lost:
        return std::unexpected(NotAvailable);
    case Place::File:
        return m_file.find(identity);
    case Place::Service:
        break;
    }
    auto secret = m_service.find(identity);
    const bool mayBeInFile = !secret && secret.error() == NotFound && m_file.hasFile();
    return mayBeInFile ? moveFromFile(identity) : secret;
}

std::expected<QByteArray, SecretStore::Status>
UserSecretStore::moveFromFile(const SecretIdentity& identity) {
    auto secret = m_file.find(identity);
    // Where the keyring does not take it now, it stays in the file until the next look.
    if (secret && m_service.add(identity, *secret) == Success)
        m_file.remove(identity);
    return secret;
}

} // namespace

std::unique_ptr<SecretStore> createSecretStore(const BusAddress& sessionBus,
                                               const QString& filePath,
                                               std::function<void()> onFileUsed) {
    return std::make_unique<UserSecretStore>(sessionBus, filePath, std::move(onFileUsed));
}

} // namespace harbrix
