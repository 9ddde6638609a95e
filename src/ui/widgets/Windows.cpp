#include "ui/widgets/Windows.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>

namespace harbrix {

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

QWidget* findTopLevelWindow(const std::function<bool(const QWidget&)>& fits) {
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found =
        std::ranges::find_if(windows, [&](const QWidget* window) { return fits(*window); });
    return found == windows.end() ? nullptr : *found;
}

} // namespace harbrix
