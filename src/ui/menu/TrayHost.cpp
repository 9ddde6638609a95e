#include "ui/menu/TrayHost.h"

#include "services/LogManager.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace harbrix {
namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";

} // namespace

TrayHost::TrayHost(QDBusConnection sessionBus)
    : m_bus(std::move(sessionBus)),
      m_watcher(new QDBusServiceWatcher(QLatin1String(watcherService), m_bus,
                                        QDBusServiceWatcher::WatchForOwnerChange, this)) {
    connect(m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                // A new owner knows nothing of the items of the old one.
                setAvailable(false);
                if (!newOwner.isEmpty())
                    ask();
            });
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        const bool heeded = m_bus.connect(QLatin1String(watcherService), QLatin1String(watcherPath),
                                          QLatin1String(watcherService),
                                          QString::fromLatin1(signal), this, SLOT(ask()));
        if (!heeded && m_bus.isConnected())
            log(LogLevel::warning, QStringLiteral("The hosts of the tray are not followed"),
                LogCategory::ui);
    }
    if (m_bus.isConnected())
        ask();
}

void TrayHost::ask() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QLatin1String(watcherService), QLatin1String(watcherPath),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QString::fromLatin1(watcherService)
             << QStringLiteral("IsStatusNotifierHostRegistered");
    const int number = ++m_question;
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, number] {
        call->deleteLater();
        if (number != m_question)
            return; // asked again meanwhile
        const QDBusPendingReply<QDBusVariant> answer = *call;
        setAvailable(!answer.isError() && answer.value().variant().toBool());
    });
}

void TrayHost::setAvailable(bool available) {
    if (available == m_available)
        return;
    m_available = available;
    emit availabilityChanged(available);
}

} // namespace harbrix
