#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QWidget;

namespace harbrix {

/// The clock of whatever breathes on a widget. It ticks only while something pulses and the widget
/// can be seen, so that a closed or covered window costs no wakeups.
class Pulse : public QObject {
    Q_OBJECT

public:
    explicit Pulse(QWidget& canvas);

    /// Whether anything on the canvas pulses at present.
    void setActive(bool active);
    [[nodiscard]] bool isTicking() const { return m_ticker.isActive(); }
    /// 0 at rest, 1 at the far end of the breath; there and back takes 1.6 seconds.
    [[nodiscard]] double phase() const;

signals:
    /// Time to paint again.
    void tick();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void decide();

    QWidget& m_canvas;
    QTimer m_ticker;
    QElapsedTimer m_clock;
    bool m_active = false;
};

} // namespace harbrix
