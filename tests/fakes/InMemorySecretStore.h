#pragma once

#include "platform/SecretStore.h"

#include <deque>
#include <map>
#include <mutex>

namespace harbrix {

/// A secret store that a test can look into and make fail. Thread-safe, as callers use workers.
class InMemorySecretStore final : public SecretStore {
public:
    enum class Call { Add, Remove, Find };

    /// The next call of that kind gives this status and does nothing.
    void failNext(Call call, Status status) {
        const std::scoped_lock lock(m_mutex);
        m_failures[call].push_back(status);
    }
    /// Puts an item there behind the back of the program.
    void put(const SecretIdentity& identity, const QByteArray& secret) {
        const std::scoped_lock lock(m_mutex);
        m_items[keyOf(identity)] = secret;
    }
    [[nodiscard]] std::optional<QByteArray> secret(const SecretIdentity& identity) const {
        const std::scoped_lock lock(m_mutex);
        const auto item = m_items.find(keyOf(identity));
        return item == m_items.end() ? std::nullopt : std::optional(item->second);
    }
    [[nodiscard]] std::size_t size() const {
        const std::scoped_lock lock(m_mutex);
        return m_items.size();
    }
    [[nodiscard]] std::vector<Call> calls() const {
        const std::scoped_lock lock(m_mutex);
        return m_calls;
    }

    [[nodiscard]] Status add(const SecretIdentity& identity, const QByteArray& secret) override {
        const std::scoped_lock lock(m_mutex);
        if (const auto failure = begin(Call::Add))
            return *failure;
        return m_items.try_emplace(keyOf(identity), secret).second ? Success : DuplicateItem;
    }
    Status remove(const SecretIdentity& identity) override {
        const std::scoped_lock lock(m_mutex);
        if (const auto failure = begin(Call::Remove))
            return *failure;
        return m_items.erase(keyOf(identity)) ? Success : NotFound;
    }
    [[nodiscard]] std::expected<QByteArray, Status> find(const SecretIdentity& identity) override {
        const std::scoped_lock lock(m_mutex);
        if (const auto failure = begin(Call::Find))
            return std::unexpected(*failure);
        const auto item = m_items.find(keyOf(identity));
        if (item == m_items.end())
            return std::unexpected(NotFound);
        return item->second;
    }

private:
    using Key = std::pair<SecretIdentity::Kind, std::map<QString, QString>>;

    static Key keyOf(const SecretIdentity& identity) {
        return {identity.kind, identity.attributes.toStdMap()};
    }
    std::optional<Status> begin(Call call) {
        m_calls.push_back(call);
        auto& failures = m_failures[call];
        if (failures.empty())
            return std::nullopt;
        const Status status = failures.front();
        failures.pop_front();
        return status;
    }

    mutable std::mutex m_mutex;
    std::map<Key, QByteArray> m_items;
    std::map<Call, std::deque<Status>> m_failures;
    std::vector<Call> m_calls;
};

} // namespace harbrix
