#pragma once

#include <QStyledItemDelegate>

namespace harbrix {

class Pulse;
struct ShareRow;

/// Draws the rows of the list of shares, and opens a mount point that is clicked.
class ShareRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    ShareRowDelegate(const Pulse& pulse, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

    /// Where the mount point of the row stands within it; null for a row without one.
    [[nodiscard]] static QRect linkRect(const QRect& row, const ShareRow& share,
                                        Qt::LayoutDirection direction);

private:
    const Pulse& m_pulse;
};

} // namespace harbrix
