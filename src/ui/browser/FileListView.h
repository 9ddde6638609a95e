#pragma once

#include "ui/browser/FileListModel.h"

#include <QList>
#include <QSet>
#include <QWidget>

#include <functional>

class QMenu;
class QStackedWidget;
class QTableView;

namespace harbrix {

class EmptyHint;
class TextLabel;

/// The files of the directory on screen: a table, or what stands for it while there are no rows.
/// Files can be dropped anywhere on it.
class FileListView : public QWidget {
    Q_OBJECT

public:
    explicit FileListView(const Scheduler& clock, QWidget* parent = nullptr);

    void setItems(const FileListModel::Items& items, ListingChange change);
    void setLoading(bool isLoading);
    void retranslate(const QLocale& locale);

    /// The ids that the user has selected. Ids last for one listing, so after the next one they
    /// match no row any more.
    [[nodiscard]] const QSet<QUuid>& selection() const { return m_selection; }

    /// Builds the menu of a platform whose menus are handed over whole. The rows' menu is the
    /// table's own, so nothing asks for this one.
    std::function<std::unique_ptr<QMenu>(const FileItem&)> onContextMenu;

signals:
    void openRequested(const harbrix::FileItem& item);
    void showRequested(const QUrl& file);
    void selectionChanged(const QSet<QUuid>& selection);
    void dropped(const QList<QUrl>& urls);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QWidget* buildProgress();
    [[nodiscard]] QWidget* buildEmptyFolder();
    [[nodiscard]] QTableView* buildTable();
    void showPage();
    void takeSelection();
    void openSelected();
    void showRowMenu(const QPoint& position);
    void setDropHint(bool isShown);

    FileListModel m_model;
    QSet<QUuid> m_selection;
    bool m_isListing = false;
    bool m_isLoading = false;

    QStackedWidget* m_pages;
    TextLabel* m_loading = nullptr;
    EmptyHint* m_empty = nullptr;
    QTableView* m_table = nullptr;
    QWidget* m_dropFrame = nullptr;
};

} // namespace harbrix
