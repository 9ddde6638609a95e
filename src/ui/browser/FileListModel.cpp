#include "ui/browser/FileListModel.h"

#include "files/BrowserContents.h"
#include "services/Text.h"

#include <algorithm>

namespace harbrix {

FileListModel::FileListModel(const Scheduler& clock, QObject* parent)
    : QAbstractTableModel(parent), m_clock(clock),
      m_items(std::make_shared<const std::vector<FileItem>>()) {
    setLocale(QLocale());
}

void FileListModel::setItems(const Items& items, ListingChange change) {
    if (change == ListingChange::IdsOnly) {
        m_items = items;
        return;
    }
    beginResetModel();
    m_items = items;
    endResetModel();
}

void FileListModel::setLocale(const QLocale& locale) {
    m_locale = locale;
    m_dates.emplace(RelativeDateText::Style::ShortNumeric, locale);
    emit headerDataChanged(Qt::Horizontal, 0, columnsInAll - 1);
}

const FileItem* FileListModel::find(const QUuid& id) const {
    const auto found = std::ranges::find(*m_items, id, &FileItem::id);
    return found == m_items->end() ? nullptr : &*found;
}

int FileListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_items->size());
}

int FileListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnsInAll;
}

QString FileListModel::cellText(int row, int column) const {
    const FileItem& shown = item(row);
    switch (column) {
    case Name:
        return shown.name;
    case Size:
        return sizeText(shown, m_locale);
    case Modified:
        return (*m_dates)(shown.modificationDate, m_clock.wallClock());
    default:
        return {};
    }
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return cellText(index.row(), index.column());
    case Qt::ToolTipRole: {
        const FileItem& shown = item(index.row());
        return index.column() == Modified
                   ? m_locale.toString(shown.modificationDate.toLocalTime(), QLocale::ShortFormat)
                   : QVariant();
    }
    default:
        return {};
    }
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignVCenter | Qt::AlignLeft);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return literalText("Name");
    case Size:
        return literalText("Size");
    case Modified:
        return literalText("Modified");
    default:
        return {};
    }
}

} // namespace harbrix
