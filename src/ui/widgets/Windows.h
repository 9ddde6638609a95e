#pragma once

#include <functional>

class QWidget;

namespace harbrix {

/// Shows the window, out of the dock if need be, and asks the desktop to put it before all others.
void bringToFront(QWidget& window);

/// The first of the program's windows that fits, or none.
[[nodiscard]] QWidget* findTopLevelWindow(const std::function<bool(const QWidget&)>& fits);

} // namespace harbrix
