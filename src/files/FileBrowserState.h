#pragma once

#include "config/NASConfig.h"

#include <QObject>
#include <QUrl>

#include <optional>

namespace harbrix {

/// Which share the browser window shows. Main thread.
class FileBrowserState : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void show(const NASConfig& config, const QUrl& mountPoint);

    [[nodiscard]] const std::optional<NASConfig>& config() const { return m_config; }
    [[nodiscard]] const std::optional<QUrl>& mountPoint() const { return m_mountPoint; }

signals:
    void changed();

private:
    std::optional<NASConfig> m_config;
    std::optional<QUrl> m_mountPoint;
};

} // namespace harbrix
