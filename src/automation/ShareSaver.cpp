#include "automation/ShareSaver.h"

#include "automation/AutoMountStrategy.h"
#include "base/Worker.h"
#include "config/NASConfigStore.h"
#include "credentials/KeychainManager.h"

namespace harbrix {
namespace {

/// An empty password leaves the stored one alone.
bool bringsPassword(const NASConfig& config) {
    return config.protocol == NASProtocol::smb && config.authMethod == AuthMethod::password &&
           config.password && !config.password->isEmpty();
}

} // namespace

void ShareSaver::save(const NASConfig& config, Target target) {
    m_requests.push_back({config, target});
    if (m_flow.running() == 0)
        m_flow.launch(saveAll());
}

Task<void> ShareSaver::saveAll() {
    while (!m_requests.empty()) {
        const auto [config, target] = m_requests.front();
        if (bringsPassword(config)) {
            auto saved = onWorker([&keychain = m_keychain, password = *config.password,
                                   account = config.keychainIdentifier] {
                return keychain.savePassword(password, account);
            });
            // A failure is in the log; the mount will say that there is no password.
            co_await saved;
        }
        if (target == Target::ExistingRecord)
            m_store.update(config);
        else
            m_store.add(config);
        m_strategy.launch(config.isEnabled ? m_strategy.mountSaved(config.id)
                                           : m_strategy.retryCorrected(config.id));
        m_requests.pop_front();
    }
}

} // namespace harbrix
