#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace harbrix {

/// Which secret is meant: its kind and the attributes that identify it within that kind.
struct SecretIdentity {
    enum class Kind {
        GenericPassword, ///< identified by "service" and "account"
        InternetPassword ///< identified by "server", "account" and "protocol"
    };

    Kind kind = Kind::GenericPassword;
    QMap<QString, QString> attributes;
};

/// Where passwords are kept. One item per identity; not found is no error.
/// Thread-safe; every call may block for up to ten seconds and must not be made on the main thread.
class SecretStore {
public:
    /// The status codes that the program's messages carry, as the original platform numbers them.
    enum Status : int {
        Success = 0,
        NotFound = -25300,
        InteractionNotAllowed = -25308, ///< the collection is locked and nobody unlocked it
        DuplicateItem = -25299,
        NotAvailable = -25291, ///< the service went away or did not answer in time
        IoError = -36,
        DecodeError = -26275 ///< the stored secrets cannot be read
    };

    SecretStore() = default;
    SecretStore(const SecretStore&) = delete;
    SecretStore& operator=(const SecretStore&) = delete;
    virtual ~SecretStore() = default;

    /// Stores a new item; DuplicateItem if there is one of that identity.
    [[nodiscard]] virtual Status add(const SecretIdentity& identity, const QByteArray& secret) = 0;
    /// Removes all items of that identity; NotFound if there is none.
    virtual Status remove(const SecretIdentity& identity) = 0;
    /// The secret, or the status that tells why there is none.
    [[nodiscard]] virtual std::expected<QByteArray, Status>
    find(const SecretIdentity& identity) = 0;

    /// The text of a status for messages, if there is one.
    [[nodiscard]] static std::optional<QString> statusText(int status);
};

class BusAddress;

/// The user's secret store. Where the Secret Service is on the session bus, running or startable,
/// secrets are there; otherwise they are in the file, mode 0600, and `onFileUsed` is called once,
/// on the thread of the first call that uses it, so that the log can warn.
///
/// It is looked for at each call. One that comes late is used from then on, and what the file holds
/// moves over as it is asked for. One that was there and has gone gives NotAvailable: a secret that
/// the user trusted to the keyring is not written to a file behind his back. A locked keyring gives
/// InteractionNotAllowed. The user is asked for something in one case only, at most once per
/// program run: to store a secret where no keyring exists at all, so that one must be made.
[[nodiscard]] std::unique_ptr<SecretStore> createSecretStore(const BusAddress& sessionBus,
                                                             const QString& filePath,
                                                             std::function<void()> onFileUsed);

} // namespace harbrix
