#pragma once

#include "platform/SecretStore.h"
#include "platform/linux/SharedBusConnection.h"

#include <atomic>
#include <chrono>

namespace harbrix {

/// Items in the user's keyring, by the freedesktop.org Secret Service API (draft 0.2). An item
/// carries the attributes of its identity, and "xdg:schema" with "com.harbrix.GenericPassword" or
/// "com.harbrix.InternetPassword".
///
/// Secrets cross the bus as they are (algorithm "plain"): the session bus is a socket that only
/// this user can open, and whoever can read along there can ask the service for the secret itself.
class SecretServiceStore final : public SecretStore {
public:
    /// `limit` is how long one call may take altogether.
    explicit SecretServiceStore(BusAddress bus,
                                std::chrono::milliseconds limit = std::chrono::seconds(10));

    [[nodiscard]] Status add(const SecretIdentity& identity, const QByteArray& secret) override;
    Status remove(const SecretIdentity& identity) override;
    [[nodiscard]] std::expected<QByteArray, Status> find(const SecretIdentity& identity) override;

    /// Whether the service runs on the bus or would be started by a call.
    [[nodiscard]] bool isOnBus();

private:
    SharedBusConnection m_bus;
    std::chrono::milliseconds m_limit;
    std::atomic<bool> m_hasPrompted = false;
};

} // namespace harbrix
