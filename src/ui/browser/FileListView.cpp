#include "ui/browser/FileListView.h"

#include "files/BrowserContents.h"
#include "services/Text.h"
#include "ui/browser/FileRowDelegate.h"
#include "ui/widgets/EmptyHint.h"
#include "ui/widgets/Spinner.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <array>

namespace harbrix {
namespace {

struct ColumnWidths {
    int minimum;
    int ideal;
};
constexpr std::array<ColumnWidths, FileListModel::columnsInAll> columnWidths{
    {{150, 250}, {60, 80}, {100, 140}}};

/// Tells where a drop would land.
class DropFrame final : public QWidget {
public:
    explicit DropFrame(QWidget* parent) : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QColor veil = color(Tint::accent, palette());
        painter.setPen(QPen(veil, 2));
        veil.setAlphaF(0.08F);
        painter.setBrush(veil);
        painter.drawRoundedRect(QRectF(rect()).adjusted(3, 3, -3, -3), 8, 8);
    }
};

} // namespace

FileListView::FileListView(const Scheduler& clock, QWidget* parent)
    : QWidget(parent), m_model(clock), m_pages(new QStackedWidget) {
    setObjectName(QStringLiteral("fileList"));
    setAcceptDrops(true);
    m_table = buildTable();
    m_pages->addWidget(buildProgress());
    m_pages->addWidget(buildEmptyFolder());
    m_pages->addWidget(m_table);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_pages);
    m_dropFrame = new DropFrame(this);
}

QWidget* FileListView::buildProgress() {
    m_loading = new TextLabel(TextRole::body, Tint::secondary);
    m_loading->setAlignment(Qt::AlignCenter);
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("loading"));
    auto* column = new QVBoxLayout(page);
    column->setSpacing(spacing::medium);
    column->addStretch();
    column->addWidget(new Spinner, 0, Qt::AlignHCenter);
    column->addWidget(m_loading);
    column->addStretch();
    return page;
}

QWidget* FileListView::buildEmptyFolder() {
    m_empty = new EmptyHint({QStringLiteral("folder"), 48, TextRole::headline});
    m_empty->setObjectName(QStringLiteral("emptyFolder"));
    return m_empty;
}

QTableView* FileListView::buildTable() {
    auto* table = new QTableView;
    table->setObjectName(QStringLiteral("fileTable"));
    table->setModel(&m_model);
    table->setItemDelegate(new FileRowDelegate(table));
    table->setFrameShape(QFrame::NoFrame);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setSelectionBehavior(QTableView::SelectRows);
    table->setSelectionMode(QTableView::ExtendedSelection);
    table->setEditTriggers(QTableView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setVerticalScrollMode(QTableView::ScrollPerPixel);
    table->setHorizontalScrollMode(QTableView::ScrollPerPixel);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
    table->viewport()->setAcceptDrops(false); // the whole list takes drops
    QHeaderView* rows = table->verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setMinimumSectionSize(FileRowDelegate::rowHeight());
    rows->setDefaultSectionSize(FileRowDelegate::rowHeight());

    // The indicator moves with a click, the rows stay in the order of the listing.
    QHeaderView* header = table->horizontalHeader();
    header->setHighlightSections(false);
    header->setFont(fontFor(TextRole::caption));
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    header->setSortIndicator(FileListModel::Name, Qt::AscendingOrder);
    header->setSectionResizeMode(FileListModel::Name, QHeaderView::Stretch);
    for (int column = 0; column < FileListModel::columnsInAll; ++column)
        header->resizeSection(column, columnWidths.at(std::size_t(column)).ideal);
    header->setMinimumSectionSize(columnWidths[FileListModel::Size].minimum);
    connect(header, &QHeaderView::sectionResized, header,
            [header](int column, int former, int now) {
                if (column == FileListModel::Name || !header->isVisible())
                    return;
                // The name takes what the others leave, and at least its minimum.
                const int room = header->width() - header->length() + header->sectionSize(column) +
                                 header->sectionSize(FileListModel::Name) -
                                 columnWidths[FileListModel::Name].minimum;
                const int minimum = columnWidths.at(std::size_t(column)).minimum;
                const int allowed = std::max(minimum, now > former ? std::min(now, room) : now);
                if (allowed != now)
                    header->resizeSection(column, allowed);
            });

    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FileListView::takeSelection);
    connect(table, &QTableView::doubleClicked, this, &FileListView::openSelected);
    connect(table, &QWidget::customContextMenuRequested, this, &FileListView::showRowMenu);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* open = new QShortcut(key, table);
        open->setContext(Qt::WidgetShortcut);
        connect(open, &QShortcut::activated, this, &FileListView::openSelected);
    }
    return table;
}

void FileListView::setLoading(bool isLoading) {
    m_isLoading = isLoading;
    showPage();
}

void FileListView::showPage() {
    m_pages->setCurrentIndex(static_cast<int>(contentsToShow(m_isLoading, m_model.rowCount() > 0)));
}

void FileListView::setItems(const FileListModel::Items& items, ListingChange change) {
    m_isListing = true;
    QScrollBar* bar = m_table->verticalScrollBar();
    const int scrolledTo = bar->value();
    m_model.setItems(items, change);
    m_table->selectionModel()->clearSelection();
    bar->setValue(scrolledTo);
    m_isListing = false;
    m_table->viewport()->update(); // the dates are told as seen from now
    showPage();
}

// A listing gives all rows new ids. That takes the marks off the rows; what was selected stays as
// the user has left it.
void FileListView::takeSelection() {
    if (m_isListing)
        return;
    QSet<QUuid> chosen;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        chosen.insert(m_model.item(index.row()).id);
    if (chosen == m_selection)
        return;
    m_selection = std::move(chosen);
    emit selectionChanged(m_selection);
}

void FileListView::openSelected() {
    if (m_selection.isEmpty())
        return;
    if (const FileItem* item = m_model.find(*m_selection.cbegin())) {
        const FileItem opened = *item;
        emit openRequested(opened);
    }
}

void FileListView::showRowMenu(const QPoint& position) {
    const QModelIndex index = m_table->indexAt(position);
    if (!index.isValid())
        return;
    const FileItem item = m_model.item(index.row());
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("rowMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* open = menu->addAction(literalText("Open"));
    open->setObjectName(QStringLiteral("openRow"));
    connect(open, &QAction::triggered, this, [this, item] { emit openRequested(item); });
    menu->addSeparator();
    QAction* show = menu->addAction(literalText("Show in Finder"));
    show->setObjectName(QStringLiteral("showRow"));
    connect(show, &QAction::triggered, this, [this, item] { emit showRequested(item.url); });
    menu->popup(m_table->viewport()->mapToGlobal(position));
}

void FileListView::retranslate(const QLocale& locale) {
    m_model.setLocale(locale);
    m_loading->setText(literalText("Loading..."));
    m_empty->setTexts(literalText("Empty Folder"), literalText("Drag files here to upload"));
    QHeaderView* header = m_table->horizontalHeader();
    for (const int column : {FileListModel::Size, FileListModel::Modified})
        header->resizeSection(
            column, std::max(header->sectionSize(column), header->sectionSizeHint(column)));
    m_table->viewport()->update();
}

void FileListView::dragEnterEvent(QDragEnterEvent* event) {
    if (!event->mimeData()->hasUrls())
        return;
    event->setDropAction(Qt::CopyAction); // a drop copies, whatever the source would rather do
    event->accept();
    setDropHint(true);
}

void FileListView::dragLeaveEvent(QDragLeaveEvent*) {
    setDropHint(false);
}

void FileListView::dropEvent(QDropEvent* event) {
    setDropHint(false);
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!urls.isEmpty())
        emit dropped(urls);
}

void FileListView::setDropHint(bool isShown) {
    m_dropFrame->setVisible(isShown);
    m_dropFrame->raise();
}

void FileListView::resizeEvent(QResizeEvent*) {
    m_dropFrame->setGeometry(rect());
}

} // namespace harbrix
