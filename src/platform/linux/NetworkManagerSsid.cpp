#include "platform/linux/JoinedWiFi.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDeadlineTimer>

namespace harbrix {

namespace {

const QString service = QStringLiteral("org.freedesktop.NetworkManager");
constexpr uint wiFiDevice = 2;       // NM_DEVICE_TYPE_WIFI
constexpr uint activatedState = 100; // NM_DEVICE_STATE_ACTIVATED

class Conversation {
public:
    Conversation(const QDBusConnection& bus, std::chrono::milliseconds limit)
        : m_bus(bus), m_deadline(limit) {}

    QVariant call(const QString& path, const QString& interface, const QString& method,
                  const QVariantList& arguments) const {
        auto message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        // Not to be woken for this: where it is not running, somebody else looks after the Wi-Fi.
        message.setAutoStartService(false);
        const auto left = static_cast<int>(std::max<qint64>(m_deadline.remainingTime(), 1));
        const QDBusMessage reply = m_bus.call(message, QDBus::Block, left);
        return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
    }
    QVariant property(const QString& path, const QString& interface, const QString& name) const {
        const QVariant answer = call(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                     QStringLiteral("Get"), {service + interface, name});
        return qvariant_cast<QDBusVariant>(answer).variant();
    }
    [[nodiscard]] bool hasTime() const { return !m_deadline.hasExpired(); }

private:
    QDBusConnection m_bus;
    QDeadlineTimer m_deadline;
};

std::optional<QString> ssidOf(const Conversation& manager, const QString& device) {
    const QString general = QStringLiteral(".Device");
    if (manager.property(device, general, QStringLiteral("DeviceType")).toUInt() != wiFiDevice ||
        manager.property(device, general, QStringLiteral("State")).toUInt() != activatedState)
        return std::nullopt;
    const auto accessPoint = qvariant_cast<QDBusObjectPath>(manager.property(
        device, QStringLiteral(".Device.Wireless"), QStringLiteral("ActiveAccessPoint")));
    if (accessPoint.path().size() <= 1)
        return std::nullopt;
    const QByteArray ssid =
        manager.property(accessPoint.path(), QStringLiteral(".AccessPoint"), QStringLiteral("Ssid"))
            .toByteArray();
    return ssid.isEmpty() ? std::nullopt : std::optional(ssidText(ssid));
}

} // namespace

QString ssidText(const QByteArray& bytes) {
    QString text = QString::fromUtf8(bytes);
    return text.toUtf8() == bytes ? text : QString::fromLatin1(bytes);
}

std::optional<QString> networkManagerSsid(const QDBusConnection& systemBus,
                                          std::chrono::milliseconds limit) {
    if (!systemBus.isConnected())
        return std::nullopt;
    const Conversation manager(systemBus, limit);
    const QVariant devices = manager.call(QStringLiteral("/org/freedesktop/NetworkManager"),
                                          service, QStringLiteral("GetDevices"), {});
    for (const QDBusObjectPath& device : qdbus_cast<QList<QDBusObjectPath>>(devices)) {
        if (!manager.hasTime())
            break;
        if (auto ssid = ssidOf(manager, device.path()))
            return ssid;
    }
    return std::nullopt;
}

} // namespace harbrix
