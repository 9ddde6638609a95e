#pragma once

#include <QLayout>
#include <QList>

namespace harbrix {

/// Items in one line, those of the trailing group at its trailing edge. Where that is too narrow
/// the trailing group gets a line of its own, and where that is too narrow as well all of them
/// wrap.
class FlowLayout : public QLayout {
    Q_OBJECT

public:
    explicit FlowLayout(int gap, QWidget* parent = nullptr);
    ~FlowLayout() override;

    /// What is added from now on belongs to the trailing group.
    void beginTrailingGroup() { m_trailingFrom = int(m_items.size()); }

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override { return int(m_items.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    struct Line {
        QList<QLayoutItem*> leading;
        QList<QLayoutItem*> trailing;
    };

    [[nodiscard]] QList<QLayoutItem*> visibleItems(int from, int to) const;
    [[nodiscard]] int widthOf(const QList<QLayoutItem*>& items) const;
    [[nodiscard]] QList<QList<QLayoutItem*>> wrapped(const QList<QLayoutItem*>& items,
                                                     int width) const;
    [[nodiscard]] QList<Line> linesFor(int width) const;
    [[nodiscard]] static int heightOf(const QLayoutItem& item, int width);
    int arrange(const QRect& area, bool place) const;
    void placeLine(const QList<QLayoutItem*>& items, int x, int y, int height, int width,
                   const QRect& area) const;

    int m_gap;
    int m_trailingFrom = -1;
    QList<QLayoutItem*> m_items;
};

} // namespace harbrix
