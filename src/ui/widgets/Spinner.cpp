#include "ui/widgets/Spinner.h"

#include "ui/widgets/Theme.h"

#include <QPainter>

namespace harbrix {
namespace {
constexpr int diameter = 14;
constexpr int turn = 1000; // milliseconds
} // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent), m_pulse(*this) {
    setFixedSize(sizeHint());
    m_clock.start();
    connect(&m_pulse, &Pulse::tick, this, qOverload<>(&QWidget::update));
    m_pulse.setActive(true);
}

QSize Spinner::sizeHint() const {
    return {diameter, diameter};
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.setPen(QPen(color(Tint::border, palette()), 2));
    painter.drawEllipse(ring);
    painter.setPen(QPen(color(Tint::accent, palette()), 2, Qt::SolidLine, Qt::RoundCap));
    const int start = int(-360 * 16 * (m_clock.elapsed() % turn) / turn);
    painter.drawArc(ring, start + 90 * 16, -100 * 16);
}

} // namespace harbrix
