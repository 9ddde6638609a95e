#pragma once

#include "ui/widgets/Pulse.h"

#include <QListView>
#include <QUrl>
#include <QUuid>

namespace harbrix {

class ShareListModel;

/// The list of shares in the sidebar.
class ShareListView : public QListView {
    Q_OBJECT

public:
    explicit ShareListView(ShareListModel& model, QWidget* parent = nullptr);

    [[nodiscard]] const Pulse& pulse() const { return m_pulse; }

signals:
    void openRequested(const QUrl& mountPoint);
    void discardRequested(const QUuid& id);
    void deleteRequested(const QUuid& id);

protected slots:
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex& index, const QEvent* event) const override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] std::optional<QUrl> linkAt(const QPoint& position) const;
    void forEachVisibleRow(const std::function<void(const QModelIndex&)>& visit) const;
    void updatePulse();
    void paintPulsingRows();

    ShareListModel& m_model;
    Pulse m_pulse;
    bool m_linkIsPressed = false;
};

} // namespace harbrix
