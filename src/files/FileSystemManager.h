#pragma once

#include "base/Scheduler.h"
#include "base/TaskScope.h"
#include "files/FileItem.h"

#include <QObject>

#include <memory>
#include <optional>

namespace harbrix {

class CacheManager;

/// What a listing has changed of the rows. Their ids are new in any case.
enum class ListingChange { Rows, IdsOnly };

/// The model behind one browser window: the directory on screen and what it holds. Lists the share
/// while it can be reached and the cache from the moment on when it cannot; there is no way back
/// but a new window. A live listing also feeds the cache.
///
/// Main thread; all that touches the share runs on a worker. Goes before the cache does.
class FileSystemManager : public QObject {
    Q_OBJECT

public:
    FileSystemManager(QUrl mountPoint, QUuid configID, CacheManager& cache, Scheduler& scheduler);
    ~FileSystemManager() override;

    Task<void> navigateTo(QUrl url);
    /// To the parent directory, never above the mount point.
    Task<void> navigateUp();
    Task<void> refresh();
    /// Never fails: what cannot be listed live is listed from the cache.
    Task<void> loadDirectory(QUrl url);
    Task<void> loadCachedDirectory();

    /// Refreshes every `interval`, anew if it did so already.
    void startAutoRefresh(Seconds interval);
    void stopAutoRefresh();

    /// Runs a flow for a caller that does not wait: `manager.launch(manager.navigateUp());`
    void launch(Task<void> flow) { m_flows.launch(std::move(flow)); }

    /// The path below the mount point, empty for the mount point itself and for what does not begin
    /// with its path.
    [[nodiscard]] QString relativePath(const QUrl& url) const;

    using Items = std::shared_ptr<const std::vector<FileItem>>;
    /// Never null. Each listing is a new vector; whoever holds one may read it on any thread.
    [[nodiscard]] const Items& currentItems() const { return m_items; }
    [[nodiscard]] const std::optional<QUrl>& currentPath() const { return m_currentPath; }
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] const std::optional<QString>& lastError() const { return m_lastError; }
    [[nodiscard]] bool isAtRoot() const { return m_isAtRoot; }
    [[nodiscard]] bool isOfflineMode() const { return m_isOfflineMode; }
    [[nodiscard]] const QUrl& mountPoint() const { return m_mountPoint; }
    [[nodiscard]] const QUuid& configID() const { return m_configID; }

signals:
    /// Something of the above but the items has changed.
    void changed();
    void itemsChanged(ListingChange change);

private:
    // A tick that finds this many loads under way is left out: a share that hangs would take one
    // worker after the other.
    static constexpr int maxOverlappingTicks = 4;

    struct Listing {
        std::vector<FileItem> items;
        Items sameAs; ///< the listing before, if this one shows the same
    };

    [[nodiscard]] static Listing compared(std::vector<FileItem> items, const Items& former);
    Task<void> refreshByTimer();
    Task<void> prefetch(Items items);
    void finishLoad();
    void setItems(Listing listing);

    const QUrl m_mountPoint;
    const QString m_mountPath;
    const QUuid m_configID;
    CacheManager& m_cache;
    Scheduler& m_scheduler;

    Items m_items = std::make_shared<const std::vector<FileItem>>();
    std::optional<QUrl> m_currentPath;
    bool m_isLoading = false;
    std::optional<QString> m_lastError;
    bool m_isAtRoot = true;
    bool m_isOfflineMode = false;
    // Counts the navigations, by which a load finds out that it was overtaken by one.
    int m_navigation = 0;
    int m_runningTicks = 0;

    Timer m_refreshTimer;
    TaskScope m_flows;
};

} // namespace harbrix
