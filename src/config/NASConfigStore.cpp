#include "config/NASConfigStore.h"

#include "base/Json.h"
#include "base/Worker.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "platform/UserDefaults.h"

#include <algorithm>

namespace harbrix {
namespace {

QString nameAndId(const NASConfig& config) {
    return config.name + QStringLiteral(" (") + uuidText(config.id) + QLatin1Char(')');
}

} // namespace

NASConfigStore::NASConfigStore(UserDefaults& userDefaults, AppStateManager& appState,
                               KeychainManager& keychain)
    : m_userDefaults(userDefaults), m_appState(appState), m_keychain(keychain),
      m_logger(QStringLiteral("com.harbrix"), QStringLiteral("ConfigStore")) {
    load();
}

std::vector<NASConfig> NASConfigStore::enabledConfigs() const {
    std::vector<NASConfig> enabled;
    std::ranges::copy_if(m_configs, std::back_inserter(enabled), &NASConfig::isEnabled);
    return enabled;
}

std::optional<NASConfig> NASConfigStore::config(const QUuid& id) const {
    const auto found = std::ranges::find(m_configs, id, &NASConfig::id);
    if (found == m_configs.end())
        return std::nullopt;
    return *found;
}

void NASConfigStore::add(const NASConfig& config) {
    m_configs.push_back(config);
    save();
    m_appState.ensureStatus(config.id);
    m_logger.write(SystemLog::Type::Info, QStringLiteral("Added NAS config: ") + nameAndId(config));
    emit changed();
}

void NASConfigStore::update(const NASConfig& config) {
    const auto found = std::ranges::find(m_configs, config.id, &NASConfig::id);
    if (found == m_configs.end()) {
        m_logger.write(SystemLog::Type::Error,
                       QStringLiteral("Attempted to update non-existent config: ") +
                           uuidText(config.id));
        return;
    }
    const NASConfig before = std::exchange(*found, config);
    save();
    m_logger.write(SystemLog::Type::Info,
                   QStringLiteral("Updated NAS config: ") + nameAndId(config));
    emit edited(before, config);
    emit changed();
}

void NASConfigStore::remove(const QUuid& id) {
    const auto found = std::ranges::find(m_configs, id, &NASConfig::id);
    if (found == m_configs.end()) {
        m_logger.write(SystemLog::Type::Error,
                       QStringLiteral("Attempted to delete non-existent config: ") + uuidText(id));
        return;
    }
    const NASConfig removed = *found;
    m_configs.erase(found);
    // Records of one server and user share the password.
    const bool isUsed = std::ranges::find(m_configs, removed.keychainIdentifier,
                                          &NASConfig::keychainIdentifier) != m_configs.end();
    if (!removed.keychainIdentifier.isEmpty() && !isUsed)
        m_forgetting.launch(forgetPassword(removed.keychainIdentifier));
    save();
    m_appState.removeStatus(id);
    m_logger.write(SystemLog::Type::Info,
                   QStringLiteral("Deleted NAS config: ") + nameAndId(removed));
    emit changed();
}

Completion<std::monostate> NASConfigStore::whenIdle() {
    return m_forgetting.whenIdle();
}

void NASConfigStore::load() {
    const auto data = m_userDefaults.data(QLatin1String(userDefaultsKey));
    if (!data) {
        m_logger.write(SystemLog::Type::Info,
                       QStringLiteral("No persisted configs found; starting fresh"));
        return;
    }
    auto decoded = decodeConfigs(*data);
    if (!decoded) {
        // The stored data stays as it is until the next change overwrites it.
        m_logger.write(SystemLog::Type::Error,
                       QStringLiteral("Failed to decode persisted configs: ") +
                           decoded.error().description);
        return;
    }
    m_configs = std::move(*decoded);
    m_logger.write(SystemLog::Type::Info, QStringLiteral("Loaded ") +
                                              QString::number(m_configs.size()) +
                                              QStringLiteral(" config(s) from UserDefaults"));
    for (const NASConfig& config : m_configs)
        m_appState.ensureStatus(config.id);
}

void NASConfigStore::save() {
    m_userDefaults.set(QLatin1String(userDefaultsKey), encodeConfigs(m_configs));
    if (const auto error = m_userDefaults.lastWriteError()) {
        m_logger.write(SystemLog::Type::Error, QStringLiteral("Failed to save configs to ") +
                                                   m_userDefaults.filePath() +
                                                   QStringLiteral(": ") + error->description);
        return;
    }
    m_logger.write(SystemLog::Type::Debug, QStringLiteral("Saved ") +
                                               QString::number(m_configs.size()) +
                                               QStringLiteral(" config(s) to UserDefaults"));
}

Task<void> NASConfigStore::forgetPassword(QString account) {
    // The secret service may take its time, and nobody waits for the outcome.
    auto call = onWorker([&keychain = m_keychain, account] { keychain.deletePassword(account); });
    co_await call;
}

} // namespace harbrix
