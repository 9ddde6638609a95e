#pragma once

#include "ui/widgets/Theme.h"

#include <QIcon>
#include <QPixmap>
#include <QWidget>

namespace harbrix {

/// Makes the symbols, the icon and the translations that are built in known to the program. What
/// reads texts before the first widget calls it itself.
void ensureResources();

/// The symbol of that name in one colour, a square of `size` device-independent pixels. Null, with
/// a warning in the log, where there is no such symbol.
[[nodiscard]] QPixmap symbolPixmap(const QString& name, int size, const QColor& color,
                                   qreal devicePixelRatio);

/// An icon that is tinted when it is painted, so that it follows the colour scheme.
[[nodiscard]] QIcon symbolIcon(const QString& name, Tint tint = Tint::primary);

/// The icon of the application, as the desktop knows it or else our own copy.
[[nodiscard]] QIcon applicationIcon();

/// Shows a symbol. Decoration only: what it says stands beside it as text.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    SymbolView(const QString& name, int size, Tint tint, QWidget* parent = nullptr);

    void setSymbol(const QString& name, Tint tint);

    [[nodiscard]] QSize sizeHint() const override { return {m_size, m_size}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_name;
    int m_size;
    Tint m_tint;
};

} // namespace harbrix
