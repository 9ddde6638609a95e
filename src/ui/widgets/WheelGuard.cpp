#include "ui/widgets/WheelGuard.h"

#include <QEvent>
#include <QWidget>

namespace harbrix {
namespace {

class WheelGuard final : public QObject {
public:
    explicit WheelGuard(QWidget& control) : QObject(&control), m_control(control) {}

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Wheel || m_control.hasFocus())
            return false;
        event->ignore(); // so that it goes on to the parent
        return true;
    }

private:
    QWidget& m_control;
};

} // namespace

void leaveWheelToScrolling(QWidget& control) {
    // With the policy of most controls the wheel itself would bring the focus.
    if (control.focusPolicy() == Qt::WheelFocus)
        control.setFocusPolicy(Qt::StrongFocus);
    control.installEventFilter(new WheelGuard(control));
}

} // namespace harbrix
