#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

namespace harbrix {

/// The interface by which desktops and a second instance bring the program to the front
/// (org.freedesktop.Application, Desktop Entry Specification, D-Bus activation).
class ApplicationObject : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Makes the object visible on the connection; false where the bus refuses.
    [[nodiscard]] bool publish(QDBusConnection connection);

public slots:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    /// There is nothing to open by URL and no action by name: both bring the program forward.
    Q_SCRIPTABLE void Open(const QStringList& urls, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameter,
                                     const QVariantMap& platformData);

signals:
    /// Asked to come forward with all windows.
    void activated();
};

} // namespace harbrix
