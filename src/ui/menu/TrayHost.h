#pragma once

#include <QDBusConnection>
#include <QObject>

class QDBusServiceWatcher;

namespace harbrix {

/// Whether the desktop has a place for status items (org.kde.StatusNotifierWatcher with a
/// registered host), now and from now on. Main thread.
class TrayHost : public QObject {
    Q_OBJECT

public:
    explicit TrayHost(QDBusConnection sessionBus);

    [[nodiscard]] bool isAvailable() const { return m_available; }

signals:
    void availabilityChanged(bool available);

private slots:
    void ask();

private:
    void setAvailable(bool available);

    QDBusConnection m_bus;
    QDBusServiceWatcher* m_watcher;
    bool m_available = false;
    int m_question = 0;
};

} // namespace harbrix
