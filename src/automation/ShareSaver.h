#pragma once

#include "base/TaskScope.h"
#include "config/NASConfig.h"

#include <deque>

namespace harbrix {

class AutoMountStrategy;
class KeychainManager;
class NASConfigStore;

/// Carries out what the user asked for by saving a form: the password, then the record, then a
/// mount if the share is enabled. Saves are done one after another, and go on when the form is
/// closed meanwhile. Main thread.
class ShareSaver {
public:
    enum class Target { NewRecord, ExistingRecord };

    ShareSaver(NASConfigStore& store, KeychainManager& keychain, AutoMountStrategy& strategy)
        : m_store(store), m_keychain(keychain), m_strategy(strategy) {}

    void save(const NASConfig& config, Target target);

    [[nodiscard]] bool isSaving() const { return m_flow.running() > 0; }
    /// Ready once everything is saved. The keychain must live until then.
    [[nodiscard]] Completion<std::monostate> whenIdle() { return m_flow.whenIdle(); }

private:
    struct Request {
        NASConfig config;
        Target target;
    };

    Task<void> saveAll();

    NASConfigStore& m_store;
    KeychainManager& m_keychain;
    AutoMountStrategy& m_strategy;
    std::deque<Request> m_requests;
    TaskScope m_flow;
};

} // namespace harbrix
