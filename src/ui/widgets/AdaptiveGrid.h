#pragma once

#include <QLayout>
#include <QList>

namespace harbrix {

/// A grid of as many equally wide columns as fit. Rows are as high as their highest item.
class AdaptiveGrid : public QLayout {
    Q_OBJECT

public:
    AdaptiveGrid(int minimumColumnWidth, int gap, QWidget* parent = nullptr);
    ~AdaptiveGrid() override;

    void insertWidget(int index, QWidget* widget);

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override { return int(m_items.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

    [[nodiscard]] int columnsFor(int width) const;

private:
    int arrange(const QRect& area, bool place) const;

    int m_minimumColumnWidth;
    int m_gap;
    QList<QLayoutItem*> m_items;
};

} // namespace harbrix
