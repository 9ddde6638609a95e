#include "files/CacheDirectoryManager.h"

#include "base/Worker.h"
#include "files/CacheManager.h"
#include "files/FileIo.h"
#include "files/FileUrl.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"

#include <sys/statvfs.h>

namespace harbrix {
namespace {

// A setting may hold any number; beyond this one a timer could not count.
constexpr Seconds longestInterval{100.0 * 365 * 86'400};

/// Blocks.
std::optional<qint64> freeBytes(const QByteArray& path) {
    struct statvfs status {};
    if (::statvfs(path.constData(), &status) != 0)
        return std::nullopt;
    qint64 bytes = 0;
    if (__builtin_mul_overflow(status.f_bavail, status.f_frsize, &bytes))
        return std::nullopt;
    return bytes;
}

/// Blocks.
std::vector<QUuid> withoutCopy(const CacheIndex::Snapshot& entries) {
    std::vector<QUuid> ids;
    for (const auto& record : entries) {
        if (!itemExists(nativePath(record->entry.localURL)))
            ids.push_back(record->entry.id);
    }
    return ids;
}

/// The shortest form that reads back as the same number, with at least one digit after the point.
QString decimalText(double value) {
    const QString text = QString::number(value, 'g', QLocale::FloatingPointShortest);
    return text.contains(u'.') || text.contains(u'e') ? text : text + QStringLiteral(".0");
}

} // namespace

CacheDirectoryManager::CacheDirectoryManager(CacheManager& cache, UserDefaults& defaults,
                                             Scheduler& scheduler)
    : m_cache(cache), m_defaults(defaults), m_scheduler(scheduler),
      m_lastCleanupDate(defaults.date(lastCleanupKey)) {
    m_flows.launch(updateDiskSpace());
}

CacheDirectoryManager::~CacheDirectoryManager() = default;

Seconds CacheDirectoryManager::positiveSetting(const char* key, Seconds fallback) const {
    const double stored = m_defaults.number(key).value_or(0.0);
    return stored > 0.0 ? Seconds(stored) : fallback;
}

void CacheDirectoryManager::startPeriodicCleanup() {
    const Seconds interval = positiveSetting(cleanupIntervalKey, defaultCleanupInterval);
    m_cleanupTimer =
        m_scheduler.every(std::min(interval, longestInterval), [this] { launchCleanup(); });
    log(LogLevel::info,
        QStringLiteral("Periodic cache cleanup started (interval: %1h)")
            .arg(decimalText(interval.count() / 3600.0)),
        LogCategory::cache);
}

void CacheDirectoryManager::stopPeriodicCleanup() {
    m_cleanupTimer.cancel();
    log(LogLevel::info, QStringLiteral("Periodic cache cleanup stopped"), LogCategory::cache);
}

void CacheDirectoryManager::launchCleanup() {
    m_flows.launch(cleanUp());
}

Task<void> CacheDirectoryManager::cleanUp() {
    auto cleaning = performCleanup();
    co_await cleaning;
}

Task<void> CacheDirectoryManager::performStartupCleanup() {
    log(LogLevel::info, QStringLiteral("Performing startup cache cleanup..."), LogCategory::cache);
    auto cleaning = performCleanup();
    co_await cleaning;
    auto measuring = updateDiskSpace();
    co_await measuring;
}

std::vector<QUuid> CacheDirectoryManager::tooOld(const QDateTime& now) const {
    const Seconds maxAge = positiveSetting(maxEntryAgeKey, defaultMaxEntryAge);
    std::vector<QUuid> ids;
    for (const auto& record : m_cache.entries()) {
        const Seconds age = std::chrono::milliseconds(record->entry.cachedAt.msecsTo(now));
        if (age > maxAge)
            ids.push_back(record->entry.id);
    }
    return ids;
}

Task<int> CacheDirectoryManager::removeAll(std::vector<QUuid> ids) {
    std::vector<Task<void>> removals;
    for (const QUuid& id : ids)
        removals.push_back(m_cache.removeEntry(id));
    auto all = whenAll(std::move(removals));
    co_await all;
    co_return static_cast<int>(ids.size());
}

Task<int> CacheDirectoryManager::performCleanup() {
    if (m_isCleaningUp)
        co_return 0;
    m_isCleaningUp = true;
    emit changed();
    const QDateTime now = m_scheduler.wallClock();
    auto loaded = m_cache.loaded();
    co_await loaded;

    auto removingOld = removeAll(tooOld(now));
    int count = co_await removingOld;
    auto looking = onWorker([entries = m_cache.entries()] { return withoutCopy(entries); });
    auto missing = co_await looking;
    auto removingMissing = removeAll(std::move(missing));
    count += co_await removingMissing;
    auto evicting = m_cache.evictIfNeeded(0);
    co_await evicting;

    m_lastCleanupRemovedCount = count;
    m_lastCleanupDate = now;
    m_defaults.set(lastCleanupKey, now);
    m_isCleaningUp = false;
    emit changed();
    auto measuring = updateDiskSpace();
    co_await measuring;
    log(LogLevel::info, QStringLiteral("Cache cleanup completed: removed %1 entries").arg(count),
        LogCategory::cache);
    co_return count;
}

Task<void> CacheDirectoryManager::updateDiskSpace() {
    auto measuring =
        onWorker([path = nativePath(m_cache.cacheDirectory())] { return freeBytes(path); });
    const auto measured = co_await measuring;
    if (!measured)
        co_return;
    m_availableDiskSpace = *measured;
    emit changed();
    if (*measured < lowDiskSpaceThreshold)
        log(LogLevel::warning,
            QStringLiteral("Low disk space at cache location: %1 MB remaining")
                .arg(*measured / 1'048'576),
            LogCategory::cache);
}

} // namespace harbrix
