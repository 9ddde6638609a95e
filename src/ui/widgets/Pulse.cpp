#include "ui/widgets/Pulse.h"

#include <QEasingCurve>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace harbrix {
namespace {

constexpr qint64 breath = 800; // milliseconds, one way
constexpr int frame = 40;

bool canBeSeen(const QWidget& widget) {
    if (!widget.isVisible() || widget.window()->isMinimized())
        return false;
    const QWindow* window = widget.window()->windowHandle();
    return !window || window->isExposed();
}

} // namespace

Pulse::Pulse(QWidget& canvas) : QObject(&canvas), m_canvas(canvas) {
    m_ticker.setInterval(frame);
    connect(&m_ticker, &QTimer::timeout, this, [this] {
        decide(); // a window that was covered meanwhile sends no event to its widgets
        if (m_ticker.isActive())
            emit tick();
    });
    canvas.installEventFilter(this);
}

void Pulse::setActive(bool active) {
    m_active = active;
    decide();
}

double Pulse::phase() const {
    if (!m_ticker.isActive())
        return 0;
    const qint64 time = m_clock.elapsed() % (2 * breath);
    const double forth = double(time < breath ? time : 2 * breath - time) / breath;
    static const QEasingCurve curve(QEasingCurve::InOutSine);
    return curve.valueForProgress(forth);
}

bool Pulse::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Paint:
        decide();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void Pulse::decide() {
    const bool ticks = m_active && canBeSeen(m_canvas);
    if (ticks == m_ticker.isActive())
        return;
    if (ticks) {
        m_clock.start();
        m_ticker.start();
    } else {
        m_ticker.stop();
    }
}

} // namespace harbrix
