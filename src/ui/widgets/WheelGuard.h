#pragma once

class QWidget;

namespace harbrix {

/// Leaves the wheel to the area that the control scrolls in until the user has put the focus on the
/// control: what passes under the pointer while a form is scrolled must not change.
void leaveWheelToScrolling(QWidget& control);

} // namespace harbrix
