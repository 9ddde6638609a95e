#include "ui/widgets/FlatPainters.h"

#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/Theme.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace harbrix::flat {
namespace {

constexpr qreal radius = 6;

struct Look {
    QColor fill;
    QColor outline;
};

/// Strokes lie on the middle of pixels, so that a one-pixel outline is crisp.
QRectF crisp(const QRect& rect) {
    return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

void drawPanel(QPainter* painter, const QRect& rect, const Look& look) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(look.outline);
    painter->setBrush(look.fill);
    painter->drawRoundedRect(crisp(rect), radius, radius);
    painter->restore();
}

void drawRing(QPainter* painter, const QRect& rect, const QPalette& palette) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(color(Tint::accent, palette), 2));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), radius, radius);
    painter->restore();
}

Look buttonLook(const QStyleOption* option, bool prominent) {
    const QPalette& palette = option->palette;
    const bool pressed = option->state & (QStyle::State_Sunken | QStyle::State_On);
    const bool hovered = option->state & QStyle::State_MouseOver;
    if (prominent) {
        QColor fill = color(Tint::accent, palette);
        if (pressed)
            fill = fill.darker(118);
        else if (hovered)
            fill = fill.lighter(108);
        return {fill, fill};
    }
    const Tint fill = pressed ? Tint::controlPressed : hovered ? Tint::controlHover : Tint::control;
    return {color(fill, palette), color(Tint::border, palette)};
}

void drawSymbol(QPainter* painter, const char* name, const QRect& area, const QColor& ink) {
    constexpr int size = 12;
    const QRect place(area.center().x() - size / 2, area.center().y() - size / 2 + 1, size, size);
    painter->drawPixmap(place, symbolPixmap(QString::fromLatin1(name), size, ink,
                                            painter->device()->devicePixelRatioF()));
}

} // namespace

void drawFocusRing(QPainter* painter, const QStyleOption* option) {
    drawRing(painter, option->rect, option->palette);
}

void drawButton(QPainter* painter, const QStyleOption* option, bool prominent) {
    drawPanel(painter, option->rect, buttonLook(option, prominent));
    if ((option->state & QStyle::State_HasFocus) &&
        (option->state & QStyle::State_KeyboardFocusChange))
        drawRing(painter, prominent ? option->rect.adjusted(2, 2, -2, -2) : option->rect,
                 prominent ? paletteFor(ColorScheme::light) : option->palette);
}

void drawToolButton(QPainter* painter, const QStyleOption* option) {
    const bool pressed = option->state & (QStyle::State_Sunken | QStyle::State_On);
    const bool hovered =
        (option->state & QStyle::State_MouseOver) && (option->state & QStyle::State_Enabled);
    if (pressed || hovered) {
        const QColor fill =
            color(pressed ? Tint::controlPressed : Tint::separator, option->palette);
        drawPanel(painter, option->rect, {fill, fill});
    }
    if ((option->state & QStyle::State_HasFocus) &&
        (option->state & QStyle::State_KeyboardFocusChange))
        drawRing(painter, option->rect, option->palette);
}

void drawField(QPainter* painter, const QStyleOption* option) {
    const QPalette& palette = option->palette;
    drawPanel(painter, option->rect, {color(Tint::field, palette), color(Tint::border, palette)});
    if (option->state & QStyle::State_HasFocus)
        drawRing(painter, option->rect, palette);
}

void drawSwitch(QPainter* painter, const QStyleOption* option) {
    const bool on = option->state & QStyle::State_On;
    const QRectF track = QRectF(option->rect);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color(on ? Tint::accent : Tint::gray, option->palette));
    painter->drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const qreal diameter = track.height() - 4;
    const bool right = on != (option->direction == Qt::RightToLeft);
    painter->setBrush(Qt::white);
    painter->drawEllipse(QRectF(right ? track.right() - diameter - 2 : track.left() + 2,
                                track.top() + 2, diameter, diameter));
    painter->restore();
}

void drawPicker(QPainter* painter, const QStyleOptionComboBox* option, const QRect& arrow) {
    drawPanel(painter, option->rect, buttonLook(option, false));
    if (option->state & QStyle::State_HasFocus)
        drawRing(painter, option->rect, option->palette);
    drawSymbol(painter, "chevron.down", arrow, color(Tint::secondary, option->palette));
}

void drawStepper(QPainter* painter, const QStyleOptionSpinBox* option, const QRect& down,
                 const QRect& up) {
    const QPalette& palette = option->palette;
    drawPanel(painter, option->rect, {color(Tint::control, palette), color(Tint::border, palette)});
    const struct {
        QStyle::SubControl part;
        QAbstractSpinBox::StepEnabledFlag isPossible;
        const char* symbol;
        QRect place;
    } buttons[] = {{QStyle::SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled, "minus", down},
                   {QStyle::SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled, "plus", up}};
    for (const auto& button : buttons) {
        const bool isPossible = option->stepEnabled & button.isPossible;
        const bool isActive = option->activeSubControls == button.part && isPossible;
        if (isActive && option->state & (QStyle::State_Sunken | QStyle::State_MouseOver)) {
            const bool isPressed = option->state & QStyle::State_Sunken;
            const QColor fill =
                color(isPressed ? Tint::controlPressed : Tint::controlHover, palette);
            drawPanel(painter, button.place.adjusted(2, 2, -2, -2), {fill, fill});
        }
        painter->fillRect(
            QRect(button.place.left(), option->rect.top() + 6, 1, option->rect.height() - 12),
            color(Tint::border, palette));
        drawSymbol(painter, button.symbol, button.place,
                   color(isPossible ? Tint::primary : Tint::tertiary, palette));
    }
    if (option->state & QStyle::State_HasFocus)
        drawRing(painter, option->rect, palette);
}

void drawSlider(QPainter* painter, const QStyleOptionSlider* option, const QRect& handle) {
    constexpr qreal grooveHeight = 4;
    const QPalette& palette = option->palette;
    const QRectF groove(option->rect.left(), option->rect.center().y() - 1, option->rect.width(),
                        grooveHeight);
    const QPointF knob = QRectF(handle).center();
    QRectF filled = groove;
    if (option->upsideDown)
        filled.setLeft(knob.x());
    else
        filled.setRight(knob.x());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color(Tint::border, palette));
    painter->drawRoundedRect(groove, grooveHeight / 2, grooveHeight / 2);
    painter->setBrush(color(Tint::accent, palette));
    painter->drawRoundedRect(filled, grooveHeight / 2, grooveHeight / 2);
    const qreal size = std::min(handle.width(), handle.height()) - 1;
    const bool hasFocus = option->state & QStyle::State_HasFocus;
    painter->setPen(hasFocus ? QPen(color(Tint::accent, palette), 2)
                             : QPen(color(Tint::border, palette), 1));
    painter->setBrush(Qt::white);
    painter->drawEllipse(QPointF(knob.x(), groove.center().y()), size / 2, size / 2);
    painter->restore();
}

void drawHeaderSection(QPainter* painter, const QStyleOption* option, bool isLast) {
    const QRect& rect = option->rect;
    const QColor line = color(Tint::separator, option->palette);
    painter->fillRect(rect, color(Tint::window, option->palette));
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    const int edge = option->direction == Qt::RightToLeft ? rect.left() : rect.right();
    if (!isLast)
        painter->fillRect(QRect(edge, rect.top() + 5, 1, rect.height() - 10), line);
}

void drawSortArrow(QPainter* painter, const QStyleOptionHeader* option) {
    constexpr int size = 10;
    painter->save();
    // The base style lets it hang five pixels below the top, whatever the margins.
    painter->translate(QRectF(option->rect).center() + QPointF(0, spacing::small - 5));
    if (option->sortIndicator == QStyleOptionHeader::SortDown)
        painter->rotate(180);
    painter->drawPixmap(-size / 2, -size / 2,
                        symbolPixmap(QStringLiteral("chevron.down"), size,
                                     color(Tint::secondary, option->palette),
                                     painter->device()->devicePixelRatioF()));
    painter->restore();
}

void drawScrollBar(QPainter* painter, const QStyleOptionSlider* option, const QRect& handle) {
    if (option->minimum == option->maximum)
        return;
    const bool active = option->state & (QStyle::State_MouseOver | QStyle::State_Sunken);
    const bool vertical = option->orientation == Qt::Vertical;
    const QRectF thumb = QRectF(handle).adjusted(vertical ? 2 : 1, vertical ? 1 : 2,
                                                 vertical ? -2 : -1, vertical ? -1 : -2);
    const qreal round = std::min(thumb.width(), thumb.height()) / 2;
    QColor fill = color(Tint::gray, option->palette);
    fill.setAlphaF(active ? 0.8F : 0.45F);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(thumb, round, round);
    painter->restore();
}

} // namespace harbrix::flat
