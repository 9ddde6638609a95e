#pragma once

#include "ui/widgets/Theme.h"

#include <QLabel>

namespace harbrix {

/// A label in a role of the type scale and a tint of the theme. Plain text only, so that names that
/// look like markup stay as they are.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    enum class Lines {
        One, ///< cut with an ellipsis; the whole text is the tool tip then
        Wrapped
    };

    TextLabel(TextRole role, Tint tint, Lines lines = Lines::Wrapped, QWidget* parent = nullptr);

    void setTint(Tint tint);
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void dress();

    TextRole m_role;
    Tint m_tint;
    Lines m_lines;
};

/// The tool tip that shows a name as it is: Qt guesses markup from the text otherwise.
[[nodiscard]] QString plainToolTip(const QString& text);

} // namespace harbrix
