#include "files/CacheManager.h"

#include "base/Scheduler.h"
#include "base/Worker.h"
#include "files/CacheStorage.h"
#include "files/FileUrl.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"

#include <QFileInfo>

#include <limits>

namespace harbrix {

CacheManager::CacheManager(UserDefaults& defaults, Scheduler& scheduler,
                           const QString& cachesDirectory)
    : m_defaults(defaults), m_scheduler(scheduler),
      m_defaultCacheDirectory(
          QUrl::fromLocalFile(cachesDirectory + QStringLiteral("/Harbrix/FileCache"))) {}

CacheManager::~CacheManager() = default;

QUrl CacheManager::cacheDirectory() const {
    const QString location = m_defaults.text(cacheLocationKey).value_or(QString());
    if (location.isEmpty())
        return m_defaultCacheDirectory;
    return QUrl::fromLocalFile(QFileInfo(location).absoluteFilePath());
}

OwnFolders CacheManager::ownFolders() const {
    if (cacheDirectory() == m_defaultCacheDirectory)
        return std::nullopt;
    QSet<QString> folders;
    for (const auto& record : m_index.snapshot())
        folders.insert(cacheFolderName(record->entry.configID));
    return folders;
}

qint64 CacheManager::effectiveMaxSize() const {
    return m_defaults.integer(maxCacheSizeKey).value_or(defaultMaxSize);
}

void CacheManager::ensureStarted() {
    if (std::exchange(m_isStarted, true))
        return;
    m_flows.launch(start());
}

Completion<SerialQueue::Turn> CacheManager::turn() {
    ensureStarted();
    return m_queue.turn();
}

Task<void> CacheManager::start() {
    // The first in the queue, so that every operation finds the index read.
    auto waiting = m_queue.turn();
    const auto held = co_await waiting;
    auto making = onWorker([path = nativePath(cacheDirectory())] {
        (void) makeCacheDirectory(path);
        removeUnfinishedIndexes(path);
    });
    co_await making;
    auto reading = readIndex();
    co_await reading;
    updateStatistics();
    m_isLoaded = true;
    const auto waiters = std::exchange(m_waitingForLoad, {});
    for (const auto& tell : waiters)
        tell({});
}

Completion<std::monostate> CacheManager::loaded() {
    ensureStarted();
    Completion<std::monostate> completion;
    if (m_isLoaded)
        completion.resolver()({});
    else
        m_waitingForLoad.push_back(completion.resolver());
    return completion;
}

Task<void> CacheManager::evictIfNeeded(qint64 requiredSpace) {
    {
        auto waiting = turn();
        const auto held = co_await waiting;
        auto evicting = evict(requiredSpace);
        co_await evicting;
    }
    auto written = saved();
    co_await written;
}

Task<void> CacheManager::evict(qint64 requiredSpace) {
    // Beyond what 64 bits hold, all has to go, and nothing less.
    qint64 excess = 0;
    if (__builtin_add_overflow(m_index.totalSize(), requiredSpace, &excess) ||
        __builtin_sub_overflow(excess, effectiveMaxSize(), &excess))
        excess = std::numeric_limits<qint64>::max();
    const auto victims = m_index.oldest(excess);
    if (victims.empty())
        co_return;
    const OwnFolders folders = ownFolders();
    auto removing = onWorker([victims] {
        for (const CacheEntry& victim : victims)
            removeCopy(victim);
    });
    co_await removing;
    for (const CacheEntry& victim : victims) {
        log(LogLevel::debug, QStringLiteral("Evicted cache entry (LRU): ") + victim.fileName,
            LogCategory::cache);
        m_index.remove(victim.id);
    }
    auto sweeping = onWorker(
        [path = nativePath(cacheDirectory()), folders] { sweepEmptyDirectories(path, folders); });
    co_await sweeping;
    indexChanged();
    log(LogLevel::info, QStringLiteral("LRU eviction: removed %1 entries").arg(victims.size()),
        LogCategory::cache);
}

Task<void> CacheManager::removeEntry(QUuid id) {
    {
        auto waiting = turn();
        const auto held = co_await waiting;
        const CacheEntry* found = m_index.find(id);
        if (!found)
            co_return;
        const CacheEntry entry = *found;
        auto removing = onWorker([entry] { removeCopy(entry); });
        co_await removing;
        m_index.remove(id);
        indexChanged();
        log(LogLevel::debug, QStringLiteral("Removed cache entry: ") + entry.fileName,
            LogCategory::cache);
    }
    auto written = saved();
    co_await written;
}

Task<void> CacheManager::clearAllCache() {
    {
        auto waiting = turn();
        const auto held = co_await waiting;
        // A save that is still being written would bring the directory back half way through.
        auto written = saved();
        co_await written;
        auto clearing = onWorker([path = nativePath(cacheDirectory()), folders = ownFolders()] {
            clearCacheDirectory(path, folders);
            (void) makeCacheDirectory(path);
        });
        co_await clearing;
        m_index = {};
        indexChanged();
        log(LogLevel::info, QStringLiteral("Cleared all cache"), LogCategory::cache);
    }
    auto written = saved();
    co_await written;
}

void CacheManager::indexChanged() {
    requestSave();
    updateStatistics();
}

void CacheManager::updateStatistics() {
    const CacheStatistics figures{static_cast<int>(m_index.size()), m_index.totalSize(),
                                  effectiveMaxSize()};
    if (figures == m_statistics)
        return;
    m_statistics = figures;
    emit changed();
}

void CacheManager::setProcessing(bool isProcessing) {
    if (m_isProcessing == isProcessing)
        return;
    m_isProcessing = isProcessing;
    emit changed();
}

void CacheManager::publishEntries(CacheIndex::Snapshot entries) {
    m_entries = std::move(entries);
    emit changed();
}

} // namespace harbrix
