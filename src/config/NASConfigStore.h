#pragma once

#include "base/TaskScope.h"
#include "config/NASConfig.h"
#include "platform/SystemLog.h"

#include <QObject>

namespace harbrix {

class AppStateManager;
class KeychainManager;
class UserDefaults;

/// The list of all records, kept in the user defaults, and the one writer of that list. Keeps the
/// statuses of AppStateManager in step. Main thread.
class NASConfigStore : public QObject {
    Q_OBJECT

public:
    static constexpr auto userDefaultsKey = "com.harbrix.configs";

    /// Loads the list, so that the first reader sees it complete and the statuses seeded.
    NASConfigStore(UserDefaults& userDefaults, AppStateManager& appState,
                   KeychainManager& keychain);

    [[nodiscard]] const std::vector<NASConfig>& configs() const { return m_configs; }
    [[nodiscard]] std::vector<NASConfig> enabledConfigs() const;
    [[nodiscard]] std::optional<NASConfig> config(const QUuid& id) const;

    void add(const NASConfig& config);
    void update(const NASConfig& config);
    /// Removes the record and, on a worker, its stored password, unless another record uses that
    /// too. Does not unmount.
    void remove(const QUuid& id);

    /// Ready once no stored password is being removed any more. The keychain must live until then.
    [[nodiscard]] Completion<std::monostate> whenIdle();

signals:
    /// A record was replaced; changed() follows.
    void edited(const harbrix::NASConfig& before, const harbrix::NASConfig& after);
    /// The list has changed and is saved.
    void changed();

private:
    void load();
    void save();
    Task<void> forgetPassword(QString account);

    UserDefaults& m_userDefaults;
    AppStateManager& m_appState;
    KeychainManager& m_keychain;
    SystemLog m_logger;
    std::vector<NASConfig> m_configs;
    TaskScope m_forgetting;
};

} // namespace harbrix
