#include "base/Worker.h"
#include "files/CacheManager.h"
#include "files/CacheStorage.h"
#include "files/FileIo.h"
#include "files/FileUrl.h"
#include "platform/AtomicFile.h"
#include "services/LogManager.h"

#include <QFile>

#include <cerrno>

// How CacheManager reads and writes its index file.

namespace harbrix {
namespace {

struct LoadedIndex {
    CacheIndex index;
    std::size_t staleCount = 0;
};

QString indexPath(const QUrl& cacheDirectory) {
    return QFile::decodeName(nativePath(childUrl(cacheDirectory, cacheIndexFileName)));
}

/// Blocks: reads the file and drops the entries whose copy has gone.
Result<LoadedIndex, SystemError> loadIndexFile(const QString& path) {
    const auto text = readFile(path);
    if (!text && text.error().code == ENOENT)
        return LoadedIndex();
    if (!text)
        return std::unexpected(text.error());
    auto entries = decodeCacheIndex(*text);
    if (!entries)
        return std::unexpected(entries.error());
    const auto stale = std::erase_if(
        *entries, [](const CacheEntry& entry) { return !itemExists(nativePath(entry.localURL)); });
    return LoadedIndex{CacheIndex(std::move(*entries)), stale};
}

} // namespace

Task<void> CacheManager::loadIndex() {
    auto waiting = turn();
    const auto held = co_await waiting;
    auto reading = readIndex();
    co_await reading;
}

Task<void> CacheManager::readIndex() {
    auto loading = onWorker([path = indexPath(cacheDirectory())] { return loadIndexFile(path); });
    auto loaded = co_await loading;
    if (!loaded) {
        log(LogLevel::error,
            QStringLiteral("Failed to load cache index: ") + loaded.error().description,
            LogCategory::cache);
        loaded = LoadedIndex();
    }
    m_index = std::move(loaded->index);
    if (loaded->staleCount > 0) {
        log(LogLevel::info,
            QStringLiteral("Removed %1 stale cache entries on load").arg(loaded->staleCount),
            LogCategory::cache);
        requestSave();
    }
    publishEntries(m_index.snapshot());
}

Task<void> CacheManager::saveIndex() {
    requestSave();
    auto written = saved();
    co_await written;
}

void CacheManager::requestSave() {
    m_isSaveWanted = true;
    if (!m_isSaving)
        m_flows.launch(runSaves());
}

Completion<std::monostate> CacheManager::saved() {
    Completion<std::monostate> completion;
    if (m_isSaving)
        m_waitingForSave.push_back(completion.resolver());
    else
        completion.resolver()({});
    return completion;
}

Task<void> CacheManager::runSaves() {
    m_isSaving = true;
    while (m_isSaveWanted) {
        m_isSaveWanted = false;
        const auto waiters = std::exchange(m_waitingForSave, {});
        auto snapshot = m_index.snapshot();
        m_owesSyncedSave = m_isServingOffers;
        // Between the copies of a prefetch, to wait for the disk would make each wait for all of
        // their data; the last save makes up for it.
        auto writing =
            onWorker([snapshot, path = indexPath(cacheDirectory()), isSynced = !m_owesSyncedSave] {
                const QByteArray text = encodeCacheIndex(snapshot);
                return isSynced ? replaceFile(path, text)
                                : replaceIndexQuickly(QFile::encodeName(path), text);
            });
        const auto written = co_await writing;
        if (written)
            publishEntries(std::move(snapshot));
        else
            log(LogLevel::error,
                QStringLiteral("Failed to save cache index: ") + written.error().description,
                LogCategory::cache);
        for (const auto& tell : waiters)
            tell({});
    }
    m_isSaving = false;
    // Those who came during the last write, which held their change already.
    const auto waiters = std::exchange(m_waitingForSave, {});
    for (const auto& tell : waiters)
        tell({});
}

} // namespace harbrix
