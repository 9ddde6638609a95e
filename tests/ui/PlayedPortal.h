#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace harbrix {

/// The settings portal of a desktop that has a colour scheme.
class PlayedPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    PlayedPortal(QDBusConnection bus, uint scheme) : scheme(scheme) {
        bus.registerObject("/org/freedesktop/portal/desktop", this,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        bus.registerService("org.freedesktop.portal.Desktop");
    }

    void change(const QString& group, const QString& key, uint value) {
        emit SettingChanged(group, key, QDBusVariant(value));
    }

    uint scheme;

public slots:
    /// This call wraps its value twice.
    QDBusVariant Read(const QString&, const QString&) const {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(scheme)));
    }

signals:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

} // namespace harbrix
