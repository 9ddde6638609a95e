#include "services/LaunchAtLoginManager.h"

#include "platform/LoginItem.h"
#include "services/LogManager.h"

namespace harbrix {

bool LaunchAtLoginManager::isEnabled() const {
    return m_item.isRegistered();
}

void LaunchAtLoginManager::setEnabled(bool enabled) {
    if (m_item.isRegistered() != enabled) {
        const auto done = enabled ? m_item.registerItem() : m_item.unregisterItem();
        if (!done) {
            log(LogLevel::error,
                QStringLiteral("Failed to set launch at login: ") + done.error().description,
                LogCategory::lifecycle);
            return;
        }
    }
    log(LogLevel::info,
        QStringLiteral("Launch at login set to %1").arg(QLatin1String(enabled ? "true" : "false")),
        LogCategory::lifecycle);
}

} // namespace harbrix
