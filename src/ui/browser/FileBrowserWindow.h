#pragma once

#include "ui/Environment.h"

#include <QPointer>
#include <QWidget>

class QMessageBox;
class QStackedLayout;

namespace harbrix {

class EmptyHint;
class FileBrowserView;

/// The browser window: the share that FileBrowserState names, or a hint while it names none. What
/// it shows, transfers included, goes when it is closed and is made again when it is opened again.
/// While transfers have not ended, the user is asked before that, except where the program quits.
class FileBrowserWindow : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize smallestHint{500, 300};

    explicit FileBrowserWindow(const Environment& environment);

    [[nodiscard]] FileBrowserView* view() const { return m_view; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followState();
    void closeView();
    void askToStopTransfers();
    void retranslate();

    Environment m_environment;
    QStackedLayout* m_pages;
    EmptyHint* m_hint;
    FileBrowserView* m_view = nullptr;
    QPointer<QMessageBox> m_question;
    bool m_isQuitting = false;
};

} // namespace harbrix
