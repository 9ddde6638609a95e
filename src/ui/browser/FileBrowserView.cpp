#include "ui/browser/FileBrowserView.h"

#include "base/Worker.h"
#include "files/DownloadPlan.h"
#include "files/FileUrl.h"
#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/browser/BreadcrumbView.h"
#include "ui/browser/ConflictResolutionSheet.h"
#include "ui/browser/FileListView.h"
#include "ui/transfer/TransferQueueView.h"
#include "ui/widgets/GroupedForm.h"
#include "ui/widgets/Panel.h"
#include "ui/widgets/SavePanel.h"
#include "ui/widgets/SymbolIcon.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>

namespace harbrix {
namespace {

constexpr int listStretch = 3;
constexpr int queueStretch = 1;

/// A button with a symbol only. Its name is the one of the key that does the same.
QToolButton* makeToolButton(const char* name, const char* symbol, Qt::Key key) {
    auto* button = new QToolButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setIcon(symbolIcon(QString::fromLatin1(symbol)));
    button->setAutoRaise(true);
    const QString title = QKeySequence(key).toString(QKeySequence::NativeText);
    button->setToolTip(title);
    button->setAccessibleName(title);
    return button;
}

} // namespace

FileBrowserView::FileBrowserView(const Environment& environment, const NASConfig& config,
                                 const QUrl& mountPoint, QWidget* parent)
    : QWidget(parent), m_environment(environment), m_config(config),
      m_fsManager(mountPoint, config.id, environment.files.cache, environment.files.scheduler),
      m_transferManager(environment.files.recentFiles, environment.files.scheduler,
                        environment.files.notifyTransferFinished),
      m_quickLook(*this, environment) {
    setObjectName(QStringLiteral("fileBrowser"));
    setMinimumSize(smallest);
    m_queue = new TransferQueueView(m_transferManager, m_environment);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(buildToolbar());
    rows->addWidget(buildPathBar());
    rows->addWidget(new Divider);
    m_list = buildFileList();
    rows->addWidget(m_list, listStretch);
    rows->addWidget(new Divider);
    rows->addWidget(m_queue, queueStretch);

    connect(&m_fsManager, &FileSystemManager::changed, this, &FileBrowserView::showState);
    connect(&m_fsManager, &FileSystemManager::itemsChanged, this, &FileBrowserView::showItems);
    connect(&m_environment.languageManager, &LanguageManager::localeChanged, this,
            &FileBrowserView::retranslate);
    retranslate();
    showState();
    m_flows.launch(start());
}

FileBrowserView::~FileBrowserView() = default;

QWidget* FileBrowserView::buildToolbar() {
    m_back = makeToolButton("back", "arrow.backward", Qt::Key_Back);
    connect(m_back, &QToolButton::clicked, this,
            [this] { m_fsManager.launch(m_fsManager.navigateUp()); });
    m_refresh = makeToolButton("refresh", "arrow.clockwise", Qt::Key_Refresh);
    connect(m_refresh, &QToolButton::clicked, this,
            [this] { m_fsManager.launch(m_fsManager.refresh()); });
    m_home = makeToolButton("home", "house", Qt::Key_HomePage);
    connect(m_home, &QToolButton::clicked, this,
            [this] { m_fsManager.launch(m_fsManager.navigateTo(mountPoint())); });
    m_openInFinder = new QPushButton;
    m_openInFinder->setObjectName(QStringLiteral("openInFinder"));
    m_openInFinder->setIcon(symbolIcon(QStringLiteral("finder")));
    connect(m_openInFinder, &QPushButton::clicked, this,
            [this] { m_environment.openUrl(directoryOnScreen()); });
    m_download = new QPushButton;
    m_download->setObjectName(QStringLiteral("download"));
    m_download->setIcon(symbolIcon(QStringLiteral("arrow.down.circle")));
    m_download->setEnabled(false);
    connect(m_download, &QPushButton::clicked, this, &FileBrowserView::askForDownloads);

    auto* walking = new QHBoxLayout;
    walking->setSpacing(spacing::tight);
    for (QToolButton* button : {m_back, m_refresh, m_home})
        walking->addWidget(button);
    auto* bar = new QWidget;
    bar->setObjectName(QStringLiteral("browserToolbar"));
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(spacing::medium, spacing::small, spacing::medium, spacing::small);
    row->setSpacing(spacing::medium);
    row->addLayout(walking);
    row->addStretch();
    row->addWidget(m_openInFinder);
    row->addWidget(m_download);

    const std::pair<QKeySequence, QToolButton*> shortcuts[] = {
        {QKeySequence(Qt::ALT | Qt::Key_Up), m_back},
        {QKeySequence(QKeySequence::Refresh), m_refresh},
        {QKeySequence(Qt::ALT | Qt::Key_Home), m_home}};
    for (const auto& [keys, button] : shortcuts)
        connect(new QShortcut(keys, this), &QShortcut::activated, button, &QToolButton::click);
    return bar;
}

QWidget* FileBrowserView::buildPathBar() {
    m_path = new BreadcrumbView;
    connect(m_path, &BreadcrumbView::navigateRequested, this,
            [this](const QUrl& url) { m_fsManager.launch(m_fsManager.navigateTo(url)); });
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(spacing::medium, spacing::tight, spacing::medium, spacing::tight);
    layout->addWidget(m_path);
    return row;
}

FileListView* FileBrowserView::buildFileList() {
    auto* list = new FileListView(m_environment.files.scheduler);
    list->onContextMenu = [this](const FileItem& item) { return buildContextMenu(item); };
    connect(list, &FileListView::openRequested, this, &FileBrowserView::open);
    connect(list, &FileListView::showRequested, this, m_environment.files.showInFileViewer);
    connect(list, &FileListView::selectionChanged, this, [this](const QSet<QUuid>& selection) {
        m_selectedItems = selection;
        m_download->setEnabled(!m_selectedItems.isEmpty());
    });
    connect(list, &FileListView::dropped, this,
            [this](const QList<QUrl>& urls) { m_flows.launch(receiveDrop(urls)); });
    return list;
}

std::unique_ptr<QMenu> FileBrowserView::buildContextMenu(const FileItem& item) const {
    auto menu = std::make_unique<QMenu>();
    const auto add = [&menu, &item](const QString& title) {
        QAction* action = menu->addAction(title);
        action->setData(item.id);
        return action;
    };
    add(text("browser.open"));
    menu->addSeparator();
    add(text("browser.downloadEllipsis"));
    add(text("browser.showInFinder"));
    add(text("browser.quickLook"))->setShortcut(Qt::Key_Space);
    return menu;
}

QUrl FileBrowserView::directoryOnScreen() const {
    return m_fsManager.currentPath().value_or(m_fsManager.mountPoint());
}

Task<void> FileBrowserView::start() {
    auto loading = m_fsManager.refresh();
    co_await loading;
    m_fsManager.startAutoRefresh(refreshInterval);
}

void FileBrowserView::open(const FileItem& item) {
    if (item.isDirectory)
        m_fsManager.launch(m_fsManager.navigateTo(item.url));
    else
        m_quickLook.preview(item.url);
}

Task<void> FileBrowserView::receiveDrop(QList<QUrl> urls) {
    const QUrl directory = directoryOnScreen();
    auto planning = onWorker([urls, directory] { return planDrop(urls, directory); });
    const auto plan = co_await planning;
    for (const QUrl& source : plan.uploads)
        m_transferManager.enqueueUpload(source, directory);
    if (plan.conflict)
        setPendingConflict(*plan.conflict);
}

// There is one slot: a conflict that comes while another one waits takes its place.
void FileBrowserView::setPendingConflict(const FileConflict& conflict) {
    if (m_sheet) {
        m_sheet->disconnect(this);
        m_sheet->close();
    }
    m_pendingConflict = conflict;
    m_sheet = new ConflictResolutionSheet(conflict, this);
    connect(m_sheet, &ConflictResolutionSheet::resolved, this, &FileBrowserView::settleConflict);
    m_sheet->open();
}

void FileBrowserView::settleConflict(ConflictResolution resolution) {
    const auto conflict = std::exchange(m_pendingConflict, std::nullopt);
    if (conflict)
        m_flows.launch(resolve(*conflict, resolution));
}

Task<void> FileBrowserView::resolve(FileConflict conflict, ConflictResolution resolution) {
    if (resolution == ConflictResolution::skip)
        co_return;
    const QUrl directory = directoryOnScreen();
    if (resolution == ConflictResolution::rename) {
        auto moving = onWorker([conflict, directory] { return moveAside(conflict, directory); });
        // The upload runs in any case, and replaces the file if it is still there.
        (void) co_await moving;
    }
    m_transferManager.enqueueUpload(conflict.source, directory);
}

// What is selected now is what the panel asks about: listings that come while it is open do not
// change that.
void FileBrowserView::askForDownloads() {
    auto* panel = new SavePanel(SavePanel::For::Folder, QStringLiteral("Downloads"), this);
    connect(
        panel, &SavePanel::chosen, this,
        [this, items = m_fsManager.currentItems(), selected = m_selectedItems](const QUrl& chosen) {
            for (const Download& wanted : planDownload(*items, selected, chosen))
                m_transferManager.enqueueDownload(wanted.source, wanted.directory);
        });
    panel->open();
}

void FileBrowserView::showState() {
    m_back->setEnabled(!m_fsManager.isAtRoot());
    if (m_shownPath != directoryOnScreen()) {
        m_shownPath = directoryOnScreen();
        m_path->setPath(*m_shownPath, mountPoint(), m_config.name);
    }
    m_list->setLoading(m_fsManager.isLoading());
}

void FileBrowserView::showItems(ListingChange change) {
    m_list->setItems(m_fsManager.currentItems(), change);
}

void FileBrowserView::retranslate() {
    m_openInFinder->setText(text("browser.openInFinder"));
    m_download->setText(text("browser.download"));
    m_list->retranslate(m_environment.languageManager.locale());
}

} // namespace harbrix
