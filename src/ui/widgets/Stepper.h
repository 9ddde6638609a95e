#pragma once

#include <QSpinBox>

#include <functional>

namespace harbrix {

/// A number that two buttons, the arrow keys and the wheel move by steps within its range, shown in
/// words of the caller's: "3 min". It cannot be typed.
class Stepper : public QSpinBox {
    Q_OBJECT

public:
    struct Range {
        int minimum;
        int maximum;
        int step;
    };
    static constexpr int fieldWidth = 60;

    Stepper(const Range& range, std::function<QString(int)> textOf, QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    /// By the user, not by setValue().
    void stepped(int value);

protected:
    [[nodiscard]] QString textFromValue(int value) const override { return m_textOf(value); }
    void stepBy(int steps) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    std::function<QString(int)> m_textOf;
};

} // namespace harbrix
