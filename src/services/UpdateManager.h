#pragma once

#include <QUrl>

#include <functional>

namespace harbrix {

/// Stands where an update framework would be: no such framework is part of the program, so a check
/// for updates leads to the web site.
class UpdateManager {
public:
    explicit UpdateManager(std::function<void(const QUrl&)> open) : m_open(std::move(open)) {}

    /// The feed's address, two path components below the web site's root. The first call counts.
    void configure(const QUrl& feedURL);
    /// Opens the web site; does nothing before configure().
    void checkForUpdates() const;

private:
    std::function<void(const QUrl&)> m_open;
    bool m_isInitialized = false;
    QUrl m_feedURL;
};

} // namespace harbrix
