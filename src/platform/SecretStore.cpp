#include "platform/SecretStore.h"

namespace harbrix {

std::optional<QString> SecretStore::statusText(int status) {
    switch (status) {
    case Success:
        return QStringLiteral("No error.");
    case NotFound:
        return QStringLiteral("The item was not found in the keyring.");
    case InteractionNotAllowed:
        return QStringLiteral("The keyring is locked.");
    case DuplicateItem:
        return QStringLiteral("The item exists in the keyring already.");
    case NotAvailable:
        return QStringLiteral("No keyring is available.");
    case IoError:
        return QStringLiteral("The keyring could not be read or written.");
    case DecodeError:
        return QStringLiteral("The stored secrets cannot be decoded.");
    default:
        return std::nullopt;
    }
}

} // namespace harbrix
