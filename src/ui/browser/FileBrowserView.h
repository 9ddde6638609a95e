#pragma once

#include "base/TaskScope.h"
#include "config/NASConfig.h"
#include "files/FileConflict.h"
#include "files/FileSystemManager.h"
#include "transfer/TransferManager.h"
#include "ui/Environment.h"
#include "ui/browser/QuickLookCoordinator.h"

#include <QPointer>
#include <QSet>
#include <QWidget>

class QMenu;
class QPushButton;
class QToolButton;

namespace harbrix {

class BreadcrumbView;
class ConflictResolutionSheet;
class FileListView;
class TransferQueueView;

/// Walks through one mounted share: tool bar, path bar, files, and the queue of its transfers. Owns
/// the listing, the queue and the preview, which go with it.
class FileBrowserView : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize smallest{700, 500};
    static constexpr Seconds refreshInterval{5.0};

    FileBrowserView(const Environment& environment, const NASConfig& config, const QUrl& mountPoint,
                    QWidget* parent = nullptr);
    ~FileBrowserView() override;

    [[nodiscard]] const NASConfig& config() const { return m_config; }
    [[nodiscard]] const QUrl& mountPoint() const { return m_fsManager.mountPoint(); }
    [[nodiscard]] FileSystemManager& fsManager() { return m_fsManager; }
    [[nodiscard]] TransferManager& transferManager() { return m_transferManager; }
    [[nodiscard]] QuickLookCoordinator& quickLook() { return m_quickLook; }
    [[nodiscard]] const QSet<QUuid>& selectedItems() const { return m_selectedItems; }
    [[nodiscard]] const std::optional<FileConflict>& pendingConflict() const {
        return m_pendingConflict;
    }

private:
    [[nodiscard]] QWidget* buildToolbar();
    [[nodiscard]] QWidget* buildPathBar();
    [[nodiscard]] FileListView* buildFileList();
    [[nodiscard]] std::unique_ptr<QMenu> buildContextMenu(const FileItem& item) const;
    [[nodiscard]] QUrl directoryOnScreen() const;
    Task<void> start();
    void open(const FileItem& item);
    Task<void> receiveDrop(QList<QUrl> urls);
    void setPendingConflict(const FileConflict& conflict);
    void settleConflict(ConflictResolution resolution);
    Task<void> resolve(FileConflict conflict, ConflictResolution resolution);
    void askForDownloads();
    void showState();
    void showItems(ListingChange change);
    void retranslate();

    Environment m_environment;
    NASConfig m_config;
    FileSystemManager m_fsManager;
    TransferManager m_transferManager;
    QuickLookCoordinator m_quickLook;
    QSet<QUuid> m_selectedItems;
    std::optional<FileConflict> m_pendingConflict;
    QPointer<ConflictResolutionSheet> m_sheet;

    QToolButton* m_back = nullptr;
    QToolButton* m_refresh = nullptr;
    QToolButton* m_home = nullptr;
    QPushButton* m_openInFinder = nullptr;
    QPushButton* m_download = nullptr;
    BreadcrumbView* m_path = nullptr;
    FileListView* m_list = nullptr;
    TransferQueueView* m_queue = nullptr;
    std::optional<QUrl> m_shownPath;
    TaskScope m_flows;
};

} // namespace harbrix
