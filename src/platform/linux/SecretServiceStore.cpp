#include "platform/linux/SecretServiceStore.h"

#include "platform/linux/SecretServiceConversation.h"

namespace harbrix {

SecretServiceStore::SecretServiceStore(BusAddress bus, std::chrono::milliseconds limit)
    : m_bus(std::move(bus)), m_limit(limit) {}

bool SecretServiceStore::isOnBus() {
    return SecretServiceConversation(m_bus.get(), m_limit).serviceIsOnBus();
}

SecretStore::Status SecretServiceStore::add(const SecretIdentity& identity,
                                            const QByteArray& secret) {
    SecretServiceConversation service(m_bus.get(), m_limit);
    const auto items = service.search(identity);
    if (!items)
        return items.error();
    if (!items->unlocked.isEmpty() || !items->locked.isEmpty())
        return DuplicateItem;
    auto collection = service.collectionForNewItems();
    if (!collection && collection.error() == NotFound)
        collection = m_hasPrompted.exchange(true) ? std::unexpected(InteractionNotAllowed)
                                                  : service.makeCollection();
    if (!collection)
        return collection.error();
    const Status status = service.createItem(*collection, identity, secret);
    if (status != InteractionNotAllowed)
        return status;
    const Status unlocked = service.unlockQuietly({*collection});
    return unlocked == Success ? service.createItem(*collection, identity, secret) : unlocked;
}

SecretStore::Status SecretServiceStore::remove(const SecretIdentity& identity) {
    SecretServiceConversation service(m_bus.get(), m_limit);
    const auto items = service.search(identity);
    if (!items)
        return items.error();
    if (items->unlocked.isEmpty() && items->locked.isEmpty())
        return NotFound;
    Status status = items->locked.isEmpty() ? Success : service.unlockQuietly(items->locked);
    const auto removable = status == Success ? items->unlocked + items->locked : items->unlocked;
    for (const QDBusObjectPath& item : removable) {
        const Status removed = service.removeItem(item);
        // Someone else may have removed it meanwhile.
        if (removed != Success && removed != NotFound)
            status = removed;
    }
    return status;
}

std::expected<QByteArray, SecretStore::Status>
SecretServiceStore::find(const SecretIdentity& identity) {
    SecretServiceConversation service(m_bus.get(), m_limit);
    const auto items = service.search(identity);
    if (!items)
        return std::unexpected(items.error());
    if (!items->unlocked.isEmpty())
        return service.secretOf(items->unlocked.first());
    if (items->locked.isEmpty())
        return std::unexpected(NotFound);
    const auto item = items->locked.first();
    const Status unlocked = service.unlockQuietly({item});
    if (unlocked != Success)
        return std::unexpected(unlocked);
    return service.secretOf(item);
}

} // namespace harbrix
