#pragma once

#include <QAccessible>

class QWidget;

namespace harbrix {

/// What a screen reader is told the widget to be, where its class alone says nothing: a group of
/// controls, say. For widgets that have no actions of their own.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace harbrix
