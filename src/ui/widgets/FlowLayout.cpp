#include "ui/widgets/FlowLayout.h"

#include <QStyle>
#include <QWidget>

namespace harbrix {

FlowLayout::FlowLayout(int gap, QWidget* parent) : QLayout(parent), m_gap(gap) {
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() {
    qDeleteAll(m_items);
}

void FlowLayout::addItem(QLayoutItem* item) {
    m_items.append(item);
}

QLayoutItem* FlowLayout::takeAt(int index) {
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int FlowLayout::heightForWidth(int width) const {
    return arrange({0, 0, width, 0}, false);
}

QSize FlowLayout::sizeHint() const {
    const QMargins margins = contentsMargins();
    const QList<QLayoutItem*> all = visibleItems(0, count());
    int height = 0;
    for (const QLayoutItem* item : all)
        height = std::max(height, item->sizeHint().height());
    return QSize(widthOf(all), height).grownBy(margins);
}

QSize FlowLayout::minimumSize() const {
    QSize size;
    for (const QLayoutItem* item : visibleItems(0, count()))
        size = size.expandedTo(item->minimumSize());
    return size.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

QList<QLayoutItem*> FlowLayout::visibleItems(int from, int to) const {
    QList<QLayoutItem*> visible;
    for (int index = from; index < to; ++index)
        if (!m_items.at(index)->isEmpty())
            visible << m_items.at(index);
    return visible;
}

int FlowLayout::widthOf(const QList<QLayoutItem*>& items) const {
    int width = 0;
    for (const QLayoutItem* item : items)
        width += item->sizeHint().width() + (width ? m_gap : 0);
    return width;
}

QList<QList<QLayoutItem*>> FlowLayout::wrapped(const QList<QLayoutItem*>& items, int width) const {
    QList<QList<QLayoutItem*>> lines;
    for (QLayoutItem* item : items) {
        if (lines.isEmpty() || widthOf(lines.last() + QList{item}) > width)
            lines << QList<QLayoutItem*>();
        lines.last() << item;
    }
    return lines;
}

QList<FlowLayout::Line> FlowLayout::linesFor(int width) const {
    const int split = m_trailingFrom < 0 ? count() : m_trailingFrom;
    const auto leading = visibleItems(0, split);
    const auto trailing = visibleItems(split, count());
    if (widthOf(leading + trailing) <= width)
        return {Line{leading, trailing}};
    QList<Line> lines;
    if (widthOf(trailing) <= width) {
        for (const auto& items : wrapped(leading, width))
            lines << Line{items, {}};
        return lines << Line{{}, trailing};
    }
    // The group comes apart anyway: then it fills the lines from the first one on.
    for (const auto& items : wrapped(leading + trailing, width)) {
        Line line;
        for (QLayoutItem* item : items)
            (trailing.contains(item) ? line.trailing : line.leading) << item;
        lines << line;
    }
    return lines;
}

int FlowLayout::heightOf(const QLayoutItem& item, int width) {
    const int available = std::min(width, item.sizeHint().width());
    return item.hasHeightForWidth() ? item.heightForWidth(available) : item.sizeHint().height();
}

int FlowLayout::arrange(const QRect& area, bool place) const {
    const QRect inner = area.marginsRemoved(contentsMargins());
    int y = inner.top();
    for (const Line& line : linesFor(inner.width())) {
        int height = 0;
        for (const QLayoutItem* item : line.leading + line.trailing)
            height = std::max(height, heightOf(*item, inner.width()));
        if (place) {
            placeLine(line.leading, inner.left(), y, height, inner.width(), area);
            placeLine(line.trailing, inner.left() + inner.width() - widthOf(line.trailing), y,
                      height, inner.width(), area);
        }
        y += height + m_gap;
    }
    const int bottom = y > inner.top() ? y - m_gap : y;
    return bottom + contentsMargins().bottom() - area.top();
}

void FlowLayout::placeLine(const QList<QLayoutItem*>& items, int x, int y, int height, int width,
                           const QRect& area) const {
    const auto direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    x = std::max(x, area.left());
    for (QLayoutItem* item : items) {
        const QSize size(std::min(item->sizeHint().width(), width), heightOf(*item, width));
        const QRect place(QPoint(x, y + (height - size.height()) / 2), size);
        item->setGeometry(QStyle::visualRect(direction, area, place));
        x += size.width() + m_gap;
    }
}

} // namespace harbrix
