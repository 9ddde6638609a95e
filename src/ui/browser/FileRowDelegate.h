#pragma once

#include <QStyledItemDelegate>

namespace harbrix {

/// Paints the cells of the file table, whose rows are all of one height.
class FileRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] static int rowHeight();

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace harbrix
