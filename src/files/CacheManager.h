#pragma once

#include "base/TaskScope.h"
#include "files/CacheIndex.h"
#include "files/CacheStorage.h"
#include "files/SerialQueue.h"

#include <QObject>
#include <QSet>

#include <deque>

namespace harbrix {

class Scheduler;
class UserDefaults;

/// Keeps local copies of files seen on the shares, so that they can be listed and looked at when a
/// share has gone: a directory of copies, one index file, and a limit kept by evicting what was not
/// accessed for longest. Nothing fails to a caller: failures are logged.
///
/// Main thread; all that touches a disk runs on a worker. Operations are served one after the
/// other, in the order of the calls. Each change is saved at once; changes that come while a save
/// is being written go into the next one, which follows without delay. An operation ends when a
/// save that holds its change has ended.
class CacheManager : public QObject {
    Q_OBJECT

public:
    static constexpr qint64 maxSingleFileSize = 52'428'800; ///< bytes
    static constexpr qint64 defaultMaxSize = 524'288'000;   ///< bytes
    static constexpr auto maxCacheSizeKey = "cache.maxSize";
    static constexpr auto cacheLocationKey = "cache.location";

    /// Touches nothing yet: the first operation reads the index, loaded() tells when it has. A
    /// second instance of the program, which is about to end, must leave the files alone.
    CacheManager(UserDefaults& defaults, Scheduler& scheduler, const QString& cachesDirectory);
    ~CacheManager() override;

    /// Copies a file of a share into the cache, unless it is there already, which counts as an
    /// access. Nothing on any refusal or failure.
    Task<std::optional<CacheEntry>> cacheFile(QUrl sourceURL, QUuid configID, QString relativePath);
    /// The same at leisure: offers are served one at a time after the call, and one that is still
    /// waiting is not taken twice.
    void offer(const QUrl& sourceURL, const QUuid& configID, const QString& relativePath);
    /// Makes room for this many offers more. Without it, one of a hundred thousand would have to
    /// move all the others, which takes longer than a frame.
    void expectOffers(std::size_t count);

    /// Evicts until this many bytes more fit below the limit, or until nothing is left.
    Task<void> evictIfNeeded(qint64 requiredSpace);
    Task<void> removeEntry(QUuid id);
    /// Removes all copies and the index, and whatever else lies in the cache directory. In a
    /// directory that the user has named ("cache.location"), foreign files stay.
    Task<void> clearAllCache();
    Task<void> saveIndex();
    Task<void> loadIndex();
    /// Publishes the figures, e.g. after the limit was changed.
    void updateStatistics();

    /// Ready once the index has been read for the first time.
    [[nodiscard]] Completion<std::monostate> loaded();
    /// Runs an operation for a caller that does not wait: `cache.launch(cache.clearAllCache());`
    void launch(Task<void> operation) { m_flows.launch(std::move(operation)); }
    /// Ready once nothing is under way, offers and saves included.
    [[nodiscard]] Completion<std::monostate> whenIdle() { return m_flows.whenIdle(); }

    /// Where copies and index are put now; copies made elsewhere before keep working.
    [[nodiscard]] QUrl cacheDirectory() const;
    [[nodiscard]] qint64 effectiveMaxSize() const; ///< bytes

    [[nodiscard]] bool isProcessing() const { return m_isProcessing; }
    [[nodiscard]] const CacheStatistics& statistics() const { return m_statistics; }
    /// The entries as they were last saved or loaded.
    [[nodiscard]] const CacheIndex::Snapshot& entries() const { return m_entries; }
    /// The entries as they are.
    [[nodiscard]] const CacheIndex& index() const { return m_index; }

signals:
    /// One of isProcessing(), statistics() and entries() has changed.
    void changed();

private:
    struct Offer {
        QUrl sourceURL;
        QUuid configID;
        QString relativePath;
    };

    /// For every operation: its place in the queue, behind the first reading of the index.
    [[nodiscard]] Completion<SerialQueue::Turn> turn();
    void ensureStarted();
    Task<void> start();
    Task<void> readIndex();
    Task<std::optional<CacheEntry>> store(Offer offer);
    Task<std::optional<CacheEntry>> enter(Offer offer, CopyRequest request, CopyOutcome outcome);
    Task<CopyOutcome> copyAfterEviction(CopyRequest request, CopyOutcome outcome);
    CacheEntry enterCopy(const Offer& offer, const CopyTarget& target, const CopyOutcome& outcome);
    [[nodiscard]] CopyRequest requestFor(const Offer& offer, const QByteArray& directory) const;
    [[nodiscard]] qint64 roomLeft() const;
    /// In a directory that the user has named, only what the index knows of.
    [[nodiscard]] OwnFolders ownFolders() const;
    Task<void> evict(qint64 requiredSpace);
    Task<void> serveOffers();
    Task<void> serveSomeOffers();
    Task<void> runSaves();

    void indexChanged();
    void requestSave();
    [[nodiscard]] Completion<std::monostate> saved();
    void setProcessing(bool isProcessing);
    void publishEntries(CacheIndex::Snapshot entries);

    UserDefaults& m_defaults;
    Scheduler& m_scheduler;
    const QUrl m_defaultCacheDirectory;

    CacheIndex m_index;
    CacheIndex::Snapshot m_entries;
    CacheStatistics m_statistics;
    bool m_isProcessing = false;
    bool m_isStarted = false;
    bool m_isLoaded = false;
    std::vector<Completion<std::monostate>::Resolver> m_waitingForLoad;

    std::deque<Offer> m_offers;
    QSet<std::pair<QUuid, QString>> m_offered;
    bool m_isServingOffers = false;
    // Special files that the log has told of: each listing offers them again.
    QSet<std::pair<QUuid, QString>> m_reportedSpecials;

    bool m_isSaveWanted = false;
    bool m_isSaving = false;
    // The last save did not wait for the disk.
    bool m_owesSyncedSave = false;
    std::vector<Completion<std::monostate>::Resolver> m_waitingForSave;

    TaskScope m_flows;
    // Goes before the flows do, so that none is let through while they are abandoned.
    SerialQueue m_queue;
};

} // namespace harbrix
