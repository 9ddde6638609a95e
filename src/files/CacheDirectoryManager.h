#pragma once

#include "base/Scheduler.h"
#include "base/TaskScope.h"

#include <QDateTime>
#include <QObject>

#include <optional>

namespace harbrix {

class CacheManager;
class UserDefaults;

/// Keeps the cache tidy: removes entries that are too old or whose copy has gone, lets the cache
/// shrink to its limit and watches the free space of its disk, at start and on a timer. Main
/// thread; goes before the cache does.
class CacheDirectoryManager : public QObject {
    Q_OBJECT

public:
    static constexpr auto cleanupIntervalKey = "cache.cleanupInterval";
    static constexpr auto autoCleanupKey = "cache.autoCleanup";
    static constexpr auto maxEntryAgeKey = "cache.maxEntryAge";
    static constexpr auto lastCleanupKey = "cache.lastCleanupDate";
    static constexpr Seconds defaultCleanupInterval{21'600.0};
    static constexpr Seconds defaultMaxEntryAge{2'592'000.0};
    static constexpr qint64 lowDiskSpaceThreshold = 104'857'600; ///< bytes

    CacheDirectoryManager(CacheManager& cache, UserDefaults& defaults, Scheduler& scheduler);
    ~CacheDirectoryManager() override;

    /// Starts the timer, anew if it runs. The interval is read from the settings now.
    void startPeriodicCleanup();
    void stopPeriodicCleanup();
    /// Ends with the number of entries that were removed, those evicted not counted; with 0 at once
    /// while another cleanup runs.
    Task<int> performCleanup();
    Task<void> performStartupCleanup();
    Task<void> updateDiskSpace();

    /// Runs a flow for a caller that does not wait.
    void launch(Task<void> flow) { m_flows.launch(std::move(flow)); }
    void launchCleanup();

    [[nodiscard]] bool isCleaningUp() const { return m_isCleaningUp; }
    /// Bytes; 0 until it was measured.
    [[nodiscard]] qint64 availableDiskSpace() const { return m_availableDiskSpace; }
    [[nodiscard]] bool isLowDiskSpace() const {
        return m_availableDiskSpace > 0 && m_availableDiskSpace < lowDiskSpaceThreshold;
    }
    [[nodiscard]] const std::optional<QDateTime>& lastCleanupDate() const {
        return m_lastCleanupDate;
    }
    /// Of this run of the program.
    [[nodiscard]] int lastCleanupRemovedCount() const { return m_lastCleanupRemovedCount; }

signals:
    void changed();

private:
    [[nodiscard]] Seconds positiveSetting(const char* key, Seconds fallback) const;
    [[nodiscard]] std::vector<QUuid> tooOld(const QDateTime& now) const;
    Task<int> removeAll(std::vector<QUuid> ids);
    Task<void> cleanUp();

    CacheManager& m_cache;
    UserDefaults& m_defaults;
    Scheduler& m_scheduler;
    bool m_isCleaningUp = false;
    qint64 m_availableDiskSpace = 0;
    std::optional<QDateTime> m_lastCleanupDate;
    int m_lastCleanupRemovedCount = 0;
    Timer m_cleanupTimer;
    TaskScope m_flows;
};

} // namespace harbrix
