#include "ui/main/ShareListView.h"

#include "services/Text.h"
#include "ui/main/ShareListModel.h"
#include "ui/main/ShareRowDelegate.h"
#include "ui/widgets/SymbolIcon.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>

namespace harbrix {

ShareListView::ShareListView(ShareListModel& model, QWidget* parent)
    : QListView(parent), m_model(model), m_pulse(*viewport()) {
    setObjectName(QStringLiteral("shareList"));
    setModel(&model);
    setItemDelegate(new ShareRowDelegate(m_pulse, this));
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    viewport()->setAutoFillBackground(false);

    connect(&m_pulse, &Pulse::tick, this, &ShareListView::paintPulsingRows);
    connect(&model, &QAbstractItemModel::modelReset, this, &ShareListView::updatePulse);
    connect(&model, &QAbstractItemModel::dataChanged, this, &ShareListView::updatePulse);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &ShareListView::updatePulse);
    updatePulse();
}

void ShareListView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    // The view would move the selection to a neighbour, which nobody has asked for.
    if (currentIndex().isValid() && currentIndex().row() >= start && currentIndex().row() <= end)
        selectionModel()->clear();
    QListView::rowsAboutToBeRemoved(parent, start, end);
}

std::optional<QUrl> ShareListView::linkAt(const QPoint& position) const {
    const QModelIndex index = indexAt(position);
    if (!index.isValid())
        return std::nullopt;
    const ShareRow row = m_model.row(index.row());
    const bool onLink =
        ShareRowDelegate::linkRect(visualRect(index), row, layoutDirection()).contains(position);
    return onLink ? row.mountPoint : std::nullopt;
}

void ShareListView::mouseMoveEvent(QMouseEvent* event) {
    viewport()->setCursor(linkAt(event->pos()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
    QListView::mouseMoveEvent(event);
}

QItemSelectionModel::SelectionFlags ShareListView::selectionCommand(const QModelIndex& index,
                                                                    const QEvent* event) const {
    // What is selected is the form that is open: neither Ctrl nor a click beside the rows takes
    // the highlight off it.
    if (!index.isValid())
        return QItemSelectionModel::NoUpdate;
    return event ? QItemSelectionModel::ClearAndSelect : QListView::selectionCommand(index, event);
}

void ShareListView::mousePressEvent(QMouseEvent* event) {
    // The menu of a row is about that row; the form that is open stays.
    if (event->button() == Qt::RightButton)
        return;
    // A click on the link opens the folder and leaves the selection alone.
    m_linkIsPressed = event->button() == Qt::LeftButton && linkAt(event->pos());
    if (!m_linkIsPressed)
        QListView::mousePressEvent(event);
}

void ShareListView::mouseReleaseEvent(QMouseEvent* event) {
    if (!std::exchange(m_linkIsPressed, false))
        return QListView::mouseReleaseEvent(event);
    if (const auto link = linkAt(event->pos()))
        emit openRequested(*link);
}

void ShareListView::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKeyboard ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    const ShareRow row = m_model.row(index.row());
    const QUuid id = row.id;
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("shareMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (row.isEdited) {
        QAction* discard = menu->addAction(symbolIcon(QStringLiteral("arrow.clockwise")),
                                           text("main.discardChanges"));
        discard->setObjectName(QStringLiteral("discardChanges"));
        connect(discard, &QAction::triggered, this, [this, id] { emit discardRequested(id); });
    }
    QAction* action = menu->addAction(symbolIcon(QStringLiteral("trash")), text("common.delete"));
    action->setObjectName(QStringLiteral("deleteShare"));
    connect(action, &QAction::triggered, this, [this, id] { emit deleteRequested(id); });
    menu->popup(byKeyboard ? viewport()->mapToGlobal(visualRect(index).center())
                           : event->globalPos());
}

void ShareListView::scrollContentsBy(int dx, int dy) {
    QListView::scrollContentsBy(dx, dy);
    updatePulse();
}

void ShareListView::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    updatePulse();
}

void ShareListView::forEachVisibleRow(const std::function<void(const QModelIndex&)>& visit) const {
    QModelIndex index = indexAt({viewport()->width() / 2, 1});
    for (int row = index.isValid() ? index.row() : 0; row < m_model.rowCount(); ++row) {
        index = m_model.index(row);
        if (visualRect(index).top() > viewport()->height())
            break;
        visit(index);
    }
}

void ShareListView::updatePulse() {
    bool pulses = false;
    forEachVisibleRow([&](const QModelIndex& index) {
        pulses = pulses || m_model.row(index.row()).state.kind() == MountState::Kind::mounting;
    });
    m_pulse.setActive(pulses);
}

void ShareListView::paintPulsingRows() {
    forEachVisibleRow([&](const QModelIndex& index) {
        if (m_model.row(index.row()).state.kind() == MountState::Kind::mounting)
            update(index);
    });
}

} // namespace harbrix
