#pragma once

#include <QRect>

class QPainter;
class QStyleOption;
class QStyleOptionComboBox;
class QStyleOptionHeader;
class QStyleOptionSlider;
class QStyleOptionSpinBox;

/// How the controls look that FlatStyle draws by itself.
namespace harbrix::flat {

void drawFocusRing(QPainter* painter, const QStyleOption* option);
/// A prominent one has the accent colour.
void drawButton(QPainter* painter, const QStyleOption* option, bool prominent);
/// A flat button of a tool bar shows its shape only under the pointer.
void drawToolButton(QPainter* painter, const QStyleOption* option);
void drawField(QPainter* painter, const QStyleOption* option);
void drawSwitch(QPainter* painter, const QStyleOption* option);
void drawPicker(QPainter* painter, const QStyleOptionComboBox* option, const QRect& arrow);
void drawStepper(QPainter* painter, const QStyleOptionSpinBox* option, const QRect& down,
                 const QRect& up);
void drawSlider(QPainter* painter, const QStyleOptionSlider* option, const QRect& handle);
/// The head of a table: flat, with hairlines between the columns.
void drawHeaderSection(QPainter* painter, const QStyleOption* option, bool isLast);
/// Points up while the column ascends.
void drawSortArrow(QPainter* painter, const QStyleOptionHeader* option);
void drawScrollBar(QPainter* painter, const QStyleOptionSlider* option, const QRect& handle);

} // namespace harbrix::flat
