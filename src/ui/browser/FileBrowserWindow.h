#pragma once

#include "ui/Environment.h"

#include <QWidget>

class QStackedLayout;

namespace harbrix {

class EmptyHint;
class FileBrowserView;

/// The browser window: the share that FileBrowserState names, or a hint while it names none. What
/// it shows, transfers included, goes when it is closed and is made anew when it is opened again.
class FileBrowserWindow : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize smallestHint{500, 300};

    explicit FileBrowserWindow(const Environment& environment);

    [[nodiscard]] FileBrowserView* view() const { return m_view; }

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void followState();
    void closeView();
    void retranslate();

    Environment m_environment;
    QStackedLayout* m_pages;
    EmptyHint* m_hint;
    FileBrowserView* m_view = nullptr;
};

} // namespace harbrix
