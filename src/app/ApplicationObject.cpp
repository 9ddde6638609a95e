#include "app/ApplicationObject.h"

namespace harbrix {

bool ApplicationObject::publish(QDBusConnection connection) {
    return connection.registerObject(QStringLiteral("/com/harbrix/app"), this,
                                     QDBusConnection::ExportScriptableContents);
}

void ApplicationObject::Activate(const QVariantMap&) {
    emit activated();
}

void ApplicationObject::Open(const QStringList&, const QVariantMap&) {
    emit activated();
}

void ApplicationObject::ActivateAction(const QString&, const QVariantList&, const QVariantMap&) {
    emit activated();
}

} // namespace harbrix
