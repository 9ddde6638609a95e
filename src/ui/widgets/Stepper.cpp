#include "ui/widgets/Stepper.h"

#include <QLineEdit>
#include <QWheelEvent>

namespace harbrix {

Stepper::Stepper(const Range& range, std::function<QString(int)> textOf, QWidget* parent)
    : QSpinBox(parent), m_textOf(std::move(textOf)) {
    setRange(range.minimum, range.maximum);
    setSingleStep(range.step);
    setAlignment(Qt::AlignCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    lineEdit()->setReadOnly(true);
    lineEdit()->setMinimumWidth(fieldWidth);
    // What cannot be changed there need not be marked.
    connect(lineEdit(), &QLineEdit::selectionChanged, lineEdit(), &QLineEdit::deselect);
}

void Stepper::stepBy(int steps) {
    const int before = value();
    QSpinBox::stepBy(steps);
    if (value() != before)
        emit stepped(value());
}

// A form that is scrolled must not change what passes under the pointer.
void Stepper::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QSpinBox::wheelEvent(event);
    else
        event->ignore();
}

} // namespace harbrix
