#include "ui/widgets/AdaptiveGrid.h"

#include <QStyle>
#include <QWidget>

namespace harbrix {

AdaptiveGrid::AdaptiveGrid(int minimumColumnWidth, int gap, QWidget* parent)
    : QLayout(parent), m_minimumColumnWidth(minimumColumnWidth), m_gap(gap) {
    setContentsMargins(0, 0, 0, 0);
}

AdaptiveGrid::~AdaptiveGrid() {
    qDeleteAll(m_items);
}

void AdaptiveGrid::insertWidget(int index, QWidget* widget) {
    addChildWidget(widget);
    m_items.insert(index, new QWidgetItem(widget));
    invalidate();
}

void AdaptiveGrid::addItem(QLayoutItem* item) {
    m_items.append(item);
}

QLayoutItem* AdaptiveGrid::takeAt(int index) {
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int AdaptiveGrid::columnsFor(int width) const {
    return std::max(1, (width + m_gap) / (m_minimumColumnWidth + m_gap));
}

int AdaptiveGrid::heightForWidth(int width) const {
    return arrange({0, 0, width, 0}, false);
}

QSize AdaptiveGrid::sizeHint() const {
    return {m_minimumColumnWidth, heightForWidth(m_minimumColumnWidth)};
}

QSize AdaptiveGrid::minimumSize() const {
    int height = 0;
    for (const QLayoutItem* item : m_items)
        height = std::max(height, item->minimumSize().height());
    return {std::min(m_minimumColumnWidth, 120), height};
}

void AdaptiveGrid::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int AdaptiveGrid::arrange(const QRect& area, bool place) const {
    const int columns = columnsFor(area.width());
    const int width = (area.width() - (columns - 1) * m_gap) / columns;
    const auto direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int y = area.top();
    for (qsizetype first = 0; first < m_items.size(); first += columns) {
        const auto row = m_items.mid(first, columns);
        int height = 0;
        for (const QLayoutItem* item : row)
            height = std::max(height, item->sizeHint().height());
        int x = area.left();
        for (QLayoutItem* item : row) {
            if (place)
                item->setGeometry(QStyle::visualRect(direction, area, {x, y, width, height}));
            x += width + m_gap;
        }
        y += height + m_gap;
    }
    return (y > area.top() ? y - m_gap : y) - area.top();
}

} // namespace harbrix
