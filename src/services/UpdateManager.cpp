#include "services/UpdateManager.h"

#include "services/LogManager.h"

namespace harbrix {
namespace {

/// "https://host/a/b" and "https://host/a/" both become "https://host/".
QUrl withoutLastComponent(const QUrl& url) {
    return url.adjusted(QUrl::StripTrailingSlash).adjusted(QUrl::RemoveFilename);
}

} // namespace

void UpdateManager::configure(const QUrl& feedURL) {
    if (m_isInitialized)
        return;
    m_feedURL = feedURL;
    log(LogLevel::info,
        QStringLiteral("Sparkle not available. To enable auto-update, add Sparkle SPM package."));
    m_isInitialized = true;
}

void UpdateManager::checkForUpdates() const {
    log(LogLevel::warning,
        QStringLiteral("Sparkle not integrated. Please add Sparkle package to enable updates."));
    if (!m_feedURL.isEmpty())
        m_open(withoutLastComponent(withoutLastComponent(m_feedURL)));
}

} // namespace harbrix
