#pragma once

#include <QProxyStyle>

class QAbstractButton;

namespace harbrix {

/// Fusion with flat, rounded controls in the colours of the Theme. A check box that setSwitch() was
/// called on is drawn as a switch; a push button that is the default of its window, or that
/// setProminent() was called on, in the accent colour.
class FlatStyle : public QProxyStyle {
    Q_OBJECT

public:
    FlatStyle();

    static void setProminent(QAbstractButton& button);
    /// For a button that throws something away: its title is red.
    static void setDestructive(QAbstractButton& button);
    static void setSwitch(QAbstractButton& checkBox);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* data) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                         const QSize& contents,
                                         const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                       SubControl part, const QWidget* widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                       const QWidget* widget) const override;
    void polish(QWidget* widget) override;
    using QProxyStyle::polish;
};

} // namespace harbrix
