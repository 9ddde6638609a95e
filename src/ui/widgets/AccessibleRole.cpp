#include "ui/widgets/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace harbrix {
namespace {

constexpr auto roleProperty = "accessibleRole";

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    const QVariant role = object->property(roleProperty);
    auto* widget = qobject_cast<QWidget*>(object);
    return widget && role.isValid() ? new QAccessibleWidget(widget, QAccessible::Role(role.toInt()))
                                    : nullptr;
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    [[maybe_unused]] static const bool installed = (QAccessible::installFactory(interfaceOf), true);
    widget.setProperty(roleProperty, int(role));
}

} // namespace harbrix
