#include "ui/widgets/FlatStyle.h"

#include "ui/widgets/FlatPainters.h"
#include "ui/widgets/Theme.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolButton>

namespace harbrix {
namespace {

constexpr auto prominentProperty = "prominent";
constexpr auto switchProperty = "switch";
constexpr auto destructiveProperty = "destructive";
constexpr int controlHeight = 30;
constexpr QSize switchSize(34, 20);
constexpr int stepperButton = 28;

bool isProminent(const QStyleOption* option, const QWidget* widget) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool isDefault = button && (button->features & QStyleOptionButton::DefaultButton);
    return isDefault || (widget && widget->property(prominentProperty).toBool());
}

bool isSwitch(const QWidget* widget) {
    return widget && widget->property(switchProperty).toBool();
}

bool isDestructive(const QWidget* widget) {
    return widget && widget->property(destructiveProperty).toBool();
}

} // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void FlatStyle::setProminent(QAbstractButton& button) {
    button.setProperty(prominentProperty, true);
}

void FlatStyle::setDestructive(QAbstractButton& button) {
    button.setProperty(destructiveProperty, true);
}

void FlatStyle::setSwitch(QAbstractButton& checkBox) {
    checkBox.setProperty(switchProperty, true);
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
    switch (element) {
    case PE_PanelButtonCommand:
        return flat::drawButton(painter, option, isProminent(option, widget));
    case PE_PanelButtonTool:
        return flat::drawToolButton(painter, option);
    case PE_PanelLineEdit:
        // The inside of a combo box or spin box has no frame of its own.
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->lineWidth > 0)
            flat::drawField(painter, option);
        return;
    case PE_IndicatorCheckBox:
        if (isSwitch(widget))
            return flat::drawSwitch(painter, option);
        break;
    case PE_FrameFocusRect:
        // Buttons draw their own ring; views show the current row.
        if (isSwitch(widget))
            flat::drawFocusRing(painter, option);
        return;
    case PE_IndicatorHeaderArrow:
        if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option))
            flat::drawSortArrow(painter, header);
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
    if (element == CE_PushButtonLabel && (isProminent(option, widget) || isDestructive(widget))) {
        QStyleOptionButton label = *qstyleoption_cast<const QStyleOptionButton*>(option);
        const Tint ink = isProminent(option, widget) ? Tint::onAccent : Tint::red;
        label.palette.setColor(QPalette::ButtonText, color(ink, option->palette));
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
        return flat::drawHeaderSection(painter, option,
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
        flat::drawPicker(painter, box, subControlRect(control, option, SC_ComboBoxArrow, widget));
        return;
    }
    if (const auto* stepper = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
        control == CC_SpinBox && stepper)
        return flat::drawStepper(painter, stepper,
                                 subControlRect(control, option, SC_SpinBoxDown, widget),
                                 subControlRect(control, option, SC_SpinBoxUp, widget));
    if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_Slider && slider && slider->orientation == Qt::Horizontal)
        return flat::drawSlider(painter, slider,
                                subControlRect(control, option, SC_SliderHandle, widget));
    if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_ScrollBar && slider)
        return flat::drawScrollBar(painter, slider,
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
    case PM_SliderLength:
    case PM_SliderThickness:
    case PM_SliderControlThickness:
        return 20;
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
    case CT_SpinBox:
        size.setWidth(contents.width() + 2 * stepperButton + spacing::tight);
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
    if (control == CC_SpinBox) {
        const QRect& rect = option->rect;
        const QRect up(rect.right() + 1 - stepperButton, rect.top(), stepperButton, rect.height());
        if (part == SC_SpinBoxUp)
            return visualRect(option->direction, rect, up);
        if (part == SC_SpinBoxDown)
            return visualRect(option->direction, rect, up.translated(-stepperButton, 0));
        if (part == SC_SpinBoxEditField)
            return visualRect(option->direction, rect,
                              rect.adjusted(spacing::tight, 1, -2 * stepperButton, -1));
    }
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
        qobject_cast<QAbstractSlider*>(widget) || qobject_cast<QAbstractSpinBox*>(widget))
        widget->setAttribute(Qt::WA_Hover);
}

} // namespace harbrix
