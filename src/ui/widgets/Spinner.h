#pragma once

#include "ui/widgets/Pulse.h"

#include <QElapsedTimer>
#include <QWidget>

namespace harbrix {

/// A small turning ring for work of unknown length. Turns only while it can be seen.
class Spinner : public QWidget {
    Q_OBJECT

public:
    explicit Spinner(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Pulse m_pulse;
    QElapsedTimer m_clock;
};

} // namespace harbrix
