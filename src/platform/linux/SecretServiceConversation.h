#pragma once

#include "platform/SecretStore.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDeadlineTimer>
#include <QList>

namespace harbrix {

/// What one call on the secret store says to the service: the single requests of the Secret Service
/// API, which together end by one deadline. Nothing here shows a prompt but makeCollection().
class SecretServiceConversation {
public:
    using Status = SecretStore::Status;
    template <typename T>
    using Answer = std::expected<T, Status>;
    using Paths = QList<QDBusObjectPath>;

    struct Items {
        Paths unlocked;
        Paths locked;
    };

    SecretServiceConversation(QDBusConnection bus, std::chrono::milliseconds limit);
    /// Closes the session, if one was opened.
    ~SecretServiceConversation();
    SecretServiceConversation(const SecretServiceConversation&) = delete;
    SecretServiceConversation& operator=(const SecretServiceConversation&) = delete;

    [[nodiscard]] bool serviceIsOnBus();
    [[nodiscard]] Answer<Items> search(const SecretIdentity& identity);
    /// Unlocks what can be unlocked without asking the user; InteractionNotAllowed for the rest.
    [[nodiscard]] Status unlockQuietly(const Paths& objects);
    [[nodiscard]] Answer<QByteArray> secretOf(const QDBusObjectPath& item);
    [[nodiscard]] Status removeItem(const QDBusObjectPath& item);
    [[nodiscard]] Status createItem(const QDBusObjectPath& collection,
                                    const SecretIdentity& identity, const QByteArray& secret);

    /// The collection that new items belong in: the one called default, else the login one.
    /// NotFound where there is neither.
    [[nodiscard]] Answer<QDBusObjectPath> collectionForNewItems();
    /// Lets the service ask the user for a new default collection and waits, up to the deadline,
    /// until there is one.
    [[nodiscard]] Answer<QDBusObjectPath> makeCollection();

private:
    [[nodiscard]] Answer<QVariantList> call(const QString& path, const QString& interface,
                                            const QString& method, const QVariantList& arguments);
    [[nodiscard]] Answer<QVariantList> callService(const QString& method,
                                                   const QVariantList& arguments);
    [[nodiscard]] Status openSession();
    /// Takes back a question that the service wants to put to the user.
    void dismiss(const QDBusObjectPath& prompt);

    QDBusConnection m_bus;
    QDeadlineTimer m_deadline;
    QDBusObjectPath m_session;
};

} // namespace harbrix
