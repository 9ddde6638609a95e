#pragma once

#include "services/UtilityQueue.h"

#include <QDateTime>
#include <QMap>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace harbrix {

class UserDefaults;

enum class AnalyticsEvent { appLaunch, nasMount, fileTransfer, cacheHit };

[[nodiscard]] QString rawValue(AnalyticsEvent event);

struct AnalyticsRecord {
    using Metadata = QMap<QString, QString>;

    QUuid id;
    QString event; ///< the raw value
    QDateTime timestamp;
    std::optional<Metadata> metadata;

    bool operator==(const AnalyticsRecord&) const = default;
};

/// A small usage log of named events in one JSON file; nothing of it leaves the machine.
class AnalyticsService {
public:
    static constexpr auto enabledKey = "analytics.enabled";
    static constexpr std::size_t maxRecords = 500;

    /// Loads the file "Harbrix/analytics.json" below `applicationSupport`; one that cannot be read
    /// counts as empty. `now` is asked on the calling thread of track().
    AnalyticsService(const UserDefaults& defaults, const QString& applicationSupport,
                     std::function<QDateTime()> now);

    /// On unless the user's settings say otherwise.
    [[nodiscard]] bool isEnabled() const;

    /// Returns at once; the file is written apart. Any thread.
    void track(AnalyticsEvent event,
               std::optional<AnalyticsRecord::Metadata> metadata = std::nullopt);

    /// Waits until what was tracked before is on disk.
    void waitForWrites() { m_queue.wait(); }

private:
    void load();
    void append(AnalyticsRecord record);
    void save() const;

    const UserDefaults& m_defaults;
    QString m_path;
    std::function<QDateTime()> m_now;
    std::vector<AnalyticsRecord> m_records; ///< oldest first; after the load only the queue's
    UtilityQueue m_queue;                   ///< ends before what it works on
};

} // namespace harbrix
