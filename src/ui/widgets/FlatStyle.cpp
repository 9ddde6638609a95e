#include "ui/widgets/FlatStyle.h"

#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/Theme.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolButton>

namespace harbrix {
namespace {

constexpr auto prominentProperty = "prominent";
constexpr auto switchProperty = "switch";
constexpr qreal radius = 6;
constexpr int controlHeight = 30;
constexpr QSize switchSize(34, 20);

struct Look {
    QColor fill;
    QColor outline;
};

bool isProminent(const QStyleOption* option, const QWidget* widget) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool isDefault = button && (button->features & QStyleOptionButton::DefaultButton);
    return isDefault || (widget && widget->property(prominentProperty).toBool());
}

bool isSwitch(const QWidget* widget) {
    return widget && widget->property(switchProperty).toBool();
}

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

void drawFocusRing(QPainter* painter, const QRect& rect, const QPalette& palette) {
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

void drawButton(QPainter* painter, const QStyleOption* option, const QWidget* widget) {
    const bool prominent = isProminent(option, widget);
    drawPanel(painter, option->rect, buttonLook(option, prominent));
    if ((option->state & QStyle::State_HasFocus) &&
        (option->state & QStyle::State_KeyboardFocusChange))
        drawFocusRing(painter, prominent ? option->rect.adjusted(2, 2, -2, -2) : option->rect,
                      prominent ? paletteFor(ColorScheme::light) : option->palette);
}

/// A flat button of a tool bar shows its shape only under the pointer.
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
        drawFocusRing(painter, option->rect, option->palette);
}

void drawField(QPainter* painter, const QStyleOption* option) {
    const QPalette& palette = option->palette;
    drawPanel(painter, option->rect, {color(Tint::field, palette), color(Tint::border, palette)});
    if (option->state & QStyle::State_HasFocus)
        drawFocusRing(painter, option->rect, palette);
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

void drawChevron(QPainter* painter, const QRect& area, const QPalette& palette) {
    constexpr int size = 12;
    const QRect place(area.center().x() - size / 2, area.center().y() - size / 2 + 1, size, size);
    painter->drawPixmap(place, symbolPixmap(QStringLiteral("chevron.down"), size,
                                            color(Tint::secondary, palette),
                                            painter->device()->devicePixelRatioF()));
}

/// The head of a table: flat, with hairlines between the columns.
void drawHeaderSection(QPainter* painter, const QStyleOption* option, bool isLast) {
    const QRect& rect = option->rect;
    const QColor line = color(Tint::separator, option->palette);
    painter->fillRect(rect, color(Tint::window, option->palette));
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    const int edge = option->direction == Qt::RightToLeft ? rect.left() : rect.right();
    if (!isLast)
        painter->fillRect(QRect(edge, rect.top() + 5, 1, rect.height() - 10), line);
}

/// Points up while the column ascends.
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

} // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void FlatStyle::setProminent(QAbstractButton& button) {
    button.setProperty(prominentProperty, true);
}

void FlatStyle::setSwitch(QAbstractButton& checkBox) {
    checkBox.setProperty(switchProperty, true);
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    switch (element) {
    case PE_PanelButtonCommand:
        return drawButton(painter, option, widget);
    case PE_PanelButtonTool:
        return drawToolButton(painter, option);
    case PE_PanelLineEdit:
        // The inside of a combo box or spin box has no frame of its own.
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->lineWidth > 0)
            drawField(painter, option);
        return;
    case PE_IndicatorCheckBox:
        if (isSwitch(widget))
            return drawSwitch(painter, option);
        break;
    case PE_FrameFocusRect:
        // Buttons draw their own ring; views show the current row.
        if (isSwitch(widget))
            drawFocusRing(painter, option->rect, option->palette);
        return;
    case PE_IndicatorHeaderArrow:
        if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option))
            drawSortArrow(painter, header);
        return;
    case PE_PanelMenu:
    case PE_FrameMenu:
        painter->fillRect(option->rect, color(Tint::card, option->palette));
        painter->setPen(color(Tint::border, option->palette));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    if (element == CE_PushButtonLabel && isProminent(option, widget)) {
        QStyleOptionButton label = *qstyleoption_cast<const QStyleOptionButton*>(option);
        label.palette.setColor(QPalette::ButtonText, color(Tint::onAccent, option->palette));
        return QProxyStyle::drawControl(element, &label, painter, widget);
    }
    if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        element == CE_MenuItem && item && item->menuItemType == QStyleOptionMenuItem::Separator) {
        painter->fillRect(QRect(option->rect.left() + spacing::small, option->rect.center().y(),
                                option->rect.width() - 2 * spacing::small, 1),
                          color(Tint::separator, option->palette));
        return;
    }
    if (element == CE_ToolBar) {
        painter->fillRect(option->rect, color(Tint::window, option->palette));
        painter->fillRect(
            QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1),
            color(Tint::separator, option->palette));
        return;
    }
    if (element == CE_HeaderSection || element == CE_HeaderEmptyArea) {
        const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
        return drawHeaderSection(painter, option,
                                 !header || header->position == QStyleOptionHeader::End);
    }
    if (element == CE_Splitter) {
        const QPoint middle = option->rect.center();
        painter->fillRect(QRect(middle.x(), option->rect.top(), 1, option->rect.height()),
                          color(Tint::separator, option->palette));
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        control == CC_ComboBox && box && !box->editable) {
        drawPanel(painter, option->rect, buttonLook(option, false));
        if (option->state & State_HasFocus)
            drawFocusRing(painter, option->rect, option->palette);
        drawChevron(painter, subControlRect(control, option, SC_ComboBoxArrow, widget),
                    option->palette);
        return;
    }
    if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_ScrollBar && slider)
        return drawScrollBar(painter, slider,
                             subControlRect(control, option, SC_ScrollBarSlider, widget));
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return 10;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ToolBarFrameWidth:
        return 0;
    case PM_ScrollBarSliderMin:
        return 32;
    case PM_ButtonMargin:
        return 2 * spacing::small;
    case PM_ButtonIconSize:
    case PM_SmallIconSize:
        return 16;
    case PM_ToolBarIconSize:
        return 18;
    case PM_ToolBarItemMargin:
        return spacing::small;
    case PM_ToolBarItemSpacing:
        return spacing::tight;
    case PM_IndicatorWidth:
        return isSwitch(widget) ? switchSize.width() : 16;
    case PM_IndicatorHeight:
        return isSwitch(widget) ? switchSize.height() : 16;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return spacing::tight;
    case PM_HeaderMargin:
        return spacing::small;
    case PM_HeaderMarkSize:
        return 12;
    case PM_SplitterWidth:
        return 1;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
    switch (hint) {
    case SH_EtchDisabledText:
    case SH_ScrollBar_ContextMenu:
    case SH_ComboBox_Popup:
        return 0;
    case SH_ScrollView_FrameOnlyAroundContents:
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    switch (type) {
    case CT_PushButton:
        // No minimum width: short labels stay small, so that rows of buttons fit narrow windows.
        size.setWidth(contents.width() + 2 * spacing::medium + 2);
        size.setHeight(std::max(contents.height() + spacing::small, controlHeight));
        return size;
    case CT_LineEdit:
    case CT_ComboBox:
        size.setHeight(std::max(contents.height() + spacing::small, controlHeight));
        return size;
    case CT_MenuItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
            item && item->menuItemType == QStyleOptionMenuItem::Separator)
            size.setHeight(2 * spacing::tight + 1);
        return size;
    case CT_ToolButton:
        return size.expandedTo({controlHeight, controlHeight});
    default:
        return size;
    }
}

QRect FlatStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
        return visualRect(option->direction, option->rect,
                          option->rect.adjusted(spacing::small, 0, -26, 0));
    if (control == CC_ScrollBar) {
        // No arrow buttons: the groove is the whole bar.
        if (part == SC_ScrollBarAddLine || part == SC_ScrollBarSubLine)
            return {};
        const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        const bool vertical = slider && slider->orientation == Qt::Vertical;
        const int length = vertical ? option->rect.height() : option->rect.width();
        if (slider && part == SC_ScrollBarGroove)
            return option->rect;
        if (slider && part == SC_ScrollBarSlider) {
            const qint64 range = qint64(slider->maximum) - slider->minimum;
            int thumb = length;
            if (range > 0)
                thumb =
                    std::clamp(int(qint64(slider->pageStep) * length / (range + slider->pageStep)),
                               std::min(32, length), length);
            const int start =
                sliderPositionFromValue(slider->minimum, slider->maximum, slider->sliderPosition,
                                        length - thumb, slider->upsideDown);
            return vertical ? QRect(0, start, option->rect.width(), thumb)
                            : QRect(start, 0, thumb, option->rect.height());
        }
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect FlatStyle::subElementRect(SubElement element, const QStyleOption* option,
                                const QWidget* widget) const {
    // With the margin that a line edit adds by itself the text begins where that of a picker does.
    if (element == SE_LineEditContents)
        return option->rect.adjusted(spacing::small - 2, 1, 2 - spacing::small, -1);
    return QProxyStyle::subElementRect(element, option, widget);
}

void FlatStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
        qobject_cast<QScrollBar*>(widget))
        widget->setAttribute(Qt::WA_Hover);
}

} // namespace harbrix
