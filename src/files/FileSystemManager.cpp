#include "files/FileSystemManager.h"

#include "base/Worker.h"
#include "files/CacheManager.h"
#include "files/FileIo.h"
#include "files/FileUrl.h"
#include "services/LogManager.h"
#include "services/Text.h"

#include <algorithm>

namespace harbrix {
namespace {

/// Whether a path of the cache lies directly in the directory.
bool liesDirectlyIn(const QString& relativePath, const QString& directory) {
    if (directory.isEmpty() || directory == QLatin1String("."))
        return !relativePath.contains(u'/');
    const QString prefix = directory.endsWith(u'/') ? directory : directory + u'/';
    return relativePath.startsWith(prefix) && relativePath.indexOf(u'/', prefix.size()) < 0;
}

std::vector<FileItem> listFromCache(const CacheIndex::Snapshot& index, const QUuid& configID,
                                    const QString& directory, const NaturalCompare& names) {
    std::vector<const CacheEntry*> entries;
    for (const auto& record : index) {
        const CacheEntry& entry = record->entry;
        if (entry.configID == configID && liesDirectlyIn(entry.relativePath, directory))
            entries.push_back(&entry);
    }
    // Decides between names that compare the same.
    std::ranges::stable_sort(entries, [](const CacheEntry* a, const CacheEntry* b) {
        return a->lastAccessedAt > b->lastAccessedAt;
    });
    return listCopies(entries, names);
}

/// The name of an item in the cache. That of a file whose name is no text is shown with escapes.
QString cachedName(const FileItem& item) {
    return item.name.contains(u'%') ? distinctNameText(nativeName(item.url)) : item.name;
}

/// Counts what runs, also where a flow is abandoned.
class Running {
public:
    explicit Running(int& count) : m_count(count) { ++m_count; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() { --m_count; }

private:
    int& m_count;
};

} // namespace

FileSystemManager::FileSystemManager(QUrl mountPoint, QUuid configID, CacheManager& cache,
                                     Scheduler& scheduler)
    : m_mountPoint(std::move(mountPoint)), m_mountPath(pathText(m_mountPoint)),
      m_configID(configID), m_cache(cache), m_scheduler(scheduler), m_currentPath(m_mountPoint) {}

FileSystemManager::~FileSystemManager() = default;

Task<void> FileSystemManager::navigateTo(QUrl url) {
    ++m_navigation;
    m_currentPath = url;
    m_isAtRoot = pathText(url) == m_mountPath;
    emit changed();
    auto loading = loadDirectory(url);
    co_await loading;
}

Task<void> FileSystemManager::navigateUp() {
    if (!m_currentPath || pathText(*m_currentPath) == m_mountPath)
        co_return;
    const QUrl parent = parentUrl(*m_currentPath);
    auto navigating = navigateTo(pathText(parent).startsWith(m_mountPath) ? parent : m_mountPoint);
    co_await navigating;
}

Task<void> FileSystemManager::refresh() {
    if (!m_currentPath)
        co_return;
    auto loading = loadDirectory(*m_currentPath);
    co_await loading;
}

void FileSystemManager::finishLoad() {
    m_isLoading = false;
    emit changed();
}

/// Blocks for a while: workers only.
FileSystemManager::Listing FileSystemManager::compared(std::vector<FileItem> items,
                                                       const Items& former) {
    const bool isSame = showTheSame(*former, items);
    return {std::move(items), isSame ? former : nullptr};
}

void FileSystemManager::setItems(Listing listing) {
    // Another load may have brought its own since this one was compared.
    const auto change = listing.sameAs == m_items ? ListingChange::IdsOnly : ListingChange::Rows;
    listing.sameAs.reset();
    Items former = std::exchange(
        m_items, std::make_shared<const std::vector<FileItem>>(std::move(listing.items)));
    emit itemsChanged(change);
    // To free a hundred thousand items takes longer than a frame.
    workerPool().start([former = std::move(former)] {});
}

Task<void> FileSystemManager::loadDirectory(QUrl url) {
    const int navigation = m_navigation;
    m_isLoading = true;
    m_lastError.reset();
    emit changed();
    bool isReachable = false;
    // Once offline, always offline: a window must not flip to and fro with a failing network.
    if (!m_isOfflineMode) {
        auto testing = onWorker([path = nativePath(m_mountPoint)] { return itemExists(path); });
        isReachable = co_await testing;
    }
    if (isReachable) {
        auto listing = onWorker([url, names = NaturalCompare(), now = m_scheduler.wallClock(),
                                 former = m_items]() -> Result<Listing, SystemError> {
            auto items = listDirectory(url, names, now);
            if (!items)
                return std::unexpected(items.error());
            return compared(std::move(*items), former);
        });
        auto listed = co_await listing;
        // The window shows another directory by now, whose own load will end by itself.
        if (navigation != m_navigation)
            co_return;
        if (listed) {
            m_isOfflineMode = false;
            setItems(std::move(*listed));
            auto prefetching = prefetch(m_items);
            co_await prefetching;
            finishLoad();
            co_return;
        }
        log(LogLevel::warning,
            QStringLiteral("Live directory listing failed: %1. Trying cache.")
                .arg(listed.error().description),
            LogCategory::cache);
    }
    auto loading = loadCachedDirectory();
    co_await loading;
    finishLoad();
}

Task<void> FileSystemManager::loadCachedDirectory() {
    m_isOfflineMode = true;
    emit changed();
    if (!m_currentPath) {
        setItems({});
        co_return;
    }
    auto loaded = m_cache.loaded();
    co_await loaded;
    const int navigation = m_navigation;
    auto listing = onWorker([index = m_cache.index().snapshot(), id = m_configID,
                             directory = relativePath(*m_currentPath), names = NaturalCompare(),
                             former = m_items] {
        return compared(listFromCache(index, id, directory, names), former);
    });
    auto listed = co_await listing;
    if (navigation != m_navigation)
        co_return;
    const auto count = listed.items.size();
    setItems(std::move(listed));
    if (count == 0) {
        m_lastError = text("filesystem.offline.empty");
        emit changed();
    }
    log(LogLevel::debug, QStringLiteral("Loaded %1 cached entries for offline browsing").arg(count),
        LogCategory::cache);
}

/// Offers what the cache does not hold yet. In slices, each of which ends with a wait for a worker,
/// so that the window stays live in between.
Task<void> FileSystemManager::prefetch(Items items) {
    constexpr std::size_t sliceSize = 1000;
    struct Candidate {
        const FileItem* item;
        QString relativePath;
        std::vector<QUrl> copies;
    };
    const QString directory = relativePath(m_currentPath.value_or(m_mountPoint));
    auto loaded = m_cache.loaded();
    co_await loaded;
    for (std::size_t start = 0; start < items->size(); start += sliceSize) {
        std::vector<Candidate> candidates;
        const std::size_t end = std::min(start + sliceSize, items->size());
        for (std::size_t place = start; place < end; ++place) {
            const FileItem& item = (*items)[place];
            if (item.isDirectory)
                continue;
            const QString name = cachedName(item);
            const QString path = directory.isEmpty() ? name : directory + u'/' + name;
            candidates.push_back({&item, path, m_cache.index().copiesOf(m_configID, path)});
        }
        auto dropping = onWorker([candidates, items]() mutable {
            std::erase_if(candidates, [](const Candidate& candidate) {
                return std::ranges::any_of(candidate.copies, [](const QUrl& copy) {
                    return itemExists(nativePath(copy));
                });
            });
            return candidates;
        });
        const auto missing = co_await dropping;
        if (!missing.empty())
            m_cache.expectOffers(items->size() - start);
        for (const Candidate& candidate : missing)
            m_cache.offer(candidate.item->url, m_configID, candidate.relativePath);
    }
}

void FileSystemManager::startAutoRefresh(Seconds interval) {
    m_refreshTimer = m_scheduler.every(interval, [this] { m_flows.launch(refreshByTimer()); });
}

void FileSystemManager::stopAutoRefresh() {
    m_refreshTimer.cancel();
}

Task<void> FileSystemManager::refreshByTimer() {
    if (m_runningTicks >= maxOverlappingTicks)
        co_return;
    const Running running(m_runningTicks);
    auto refreshing = refresh();
    co_await refreshing;
}

QString FileSystemManager::relativePath(const QUrl& url) const {
    const QByteArray path = nativePath(url);
    const QByteArray mountPath = nativePath(m_mountPoint);
    if (!path.startsWith(mountPath))
        return {};
    QByteArray rest = path.mid(mountPath.size());
    if (rest.startsWith('/'))
        rest.remove(0, 1);
    return distinctNameText(rest);
}

} // namespace harbrix
