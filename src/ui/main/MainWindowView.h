#pragma once

#include "automation/ShareOverview.h"
#include "ui/Environment.h"
#include "ui/main/ShareListModel.h"

#include <QMainWindow>

#include <optional>

class QAction;
class QPushButton;
class QStackedWidget;
class QToolBar;

namespace harbrix {

class EmptyHint;
class MountedFoldersView;
class NASDetailView;
class NoticeBar;
class ShareListView;
class TextLabel;

/// The main window: the list of shares, and beside it the form of the selected share or what is
/// mounted. Holds its selection; all else comes from the environment.
class MainWindowView : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindowView(const Environment& environment);

    [[nodiscard]] const std::optional<QUuid>& selectedConfigID() const {
        return m_selectedConfigID;
    }
    void setSelectedConfigID(const std::optional<QUuid>& id);

private:
    void buildToolbar();
    QAction* addToolbarItem(QToolBar& bar, const char* name, const char* symbol);
    [[nodiscard]] QWidget* buildSidebar();
    [[nodiscard]] QWidget* buildDetail();
    void add();
    void discard(const QUuid& id);
    void remove(const QUuid& id);
    void openAbout();
    void showSettingsFault();
    void showSelection();
    void showDetail();
    void showForm(const NASConfig& config);
    void closeForm();
    void retranslate();

    Environment m_environment;
    ShareListModel m_model;
    std::optional<QUuid> m_selectedConfigID;

    QAction* m_about = nullptr;
    QAction* m_settings = nullptr;
    QPushButton* m_add = nullptr;
    NoticeBar* m_notice = nullptr;
    QStackedWidget* m_sidebar = nullptr;
    EmptyHint* m_noShares = nullptr;
    TextLabel* m_listTitle = nullptr;
    ShareListView* m_list = nullptr;
    QStackedWidget* m_detail = nullptr;
    EmptyHint* m_hint = nullptr;
    MountedFoldersView* m_folders = nullptr;
    NASDetailView* m_form = nullptr;
    std::optional<QUuid> m_formID;
};

} // namespace harbrix
