#pragma once

#include "services/Text.h"
#include "ui/Environment.h"

#include <QWidget>

#include <vector>

class QButtonGroup;
class QStackedWidget;

namespace harbrix {

class SettingsTab;
class TabButton;

/// The settings: six pages, and a bar with a symbol and a title for each.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize defaultSize{580, 460};
    static constexpr QSize smallest{560, 400};

    explicit SettingsView(const Environment& environment, QWidget* parent = nullptr);

    /// Pages are counted from 0.
    void showTab(int index);

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Page {
        TextKey title;
        SettingsTab* tab;
        TabButton* button;
    };

    void addPage(const char* symbol, TextKey title, SettingsTab* tab);
    [[nodiscard]] QWidget* buildBar();
    void showPage(int index);
    void retranslate();

    std::vector<Page> m_pages;
    QButtonGroup* m_buttons;
    QStackedWidget* m_stack;
};

/// A settings window of its own, in the middle of the screen. Goes when it is closed.
[[nodiscard]] QWidget* makeSettingsWindow(const Environment& environment);

} // namespace harbrix
