#include "ui/widgets/Stepper.h"

#include "ui/widgets/Theme.h"

#include <QLineEdit>
#include <QStyleOptionSpinBox>

#include <algorithm>

namespace harbrix {

Stepper::Stepper(const Range& range, std::function<QString(int)> textOf, QWidget* parent)
    : QSpinBox(parent), m_textOf(std::move(textOf)) {
    setRange(range.minimum, range.maximum);
    setSingleStep(range.step);
    setAlignment(Qt::AlignCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    lineEdit()->setReadOnly(true);
    // What cannot be changed there need not be marked.
    connect(lineEdit(), &QLineEdit::selectionChanged, lineEdit(), &QLineEdit::deselect);
}

QSize Stepper::sizeHint() const {
    int widest = 0;
    for (const int end : {minimum(), maximum()})
        widest = std::max(widest, fontMetrics().horizontalAdvance(textFromValue(end)));
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QSize field(std::max(fieldWidth, widest + 2 * spacing::medium), fontMetrics().height());
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, field, this);
}

void Stepper::stepBy(int steps) {
    const int before = value();
    QSpinBox::stepBy(steps);
    if (value() != before)
        emit stepped(value());
}

} // namespace harbrix
