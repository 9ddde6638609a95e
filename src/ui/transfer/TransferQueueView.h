#pragma once

#include "ui/Environment.h"

#include <QTimer>
#include <QWidget>

class QStackedWidget;
class QToolButton;

namespace harbrix {

class TextLabel;
class TransferList;
class LanguageManager;
class TransferManager;

/// The panel that shows a queue of transfers. It folds to its header.
class TransferQueueView : public QWidget {
    Q_OBJECT

public:
    static constexpr int foldedHeight = 36;
    static constexpr int smallestHeight = 180;
    static constexpr int largestHeight = 280;

    TransferQueueView(TransferManager& manager, const Environment& environment,
                      QWidget* parent = nullptr);

    [[nodiscard]] bool isExpanded() const { return m_isExpanded; }
    void setExpanded(bool isExpanded);

private:
    [[nodiscard]] QWidget* buildHeader();
    void showTasks();
    void retranslate();

    TransferManager& m_manager;
    const LanguageManager& m_languageManager;
    bool m_isExpanded = true;
    QTimer m_redraw;
    TextLabel* m_title = nullptr;
    TextLabel* m_active = nullptr;
    QToolButton* m_clear = nullptr;
    QToolButton* m_fold = nullptr;
    QStackedWidget* m_body;
    TextLabel* m_nothing;
    TransferList* m_list;
};

} // namespace harbrix
