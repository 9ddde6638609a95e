#pragma once

#include <QDBusConnection>
#include <QString>

#include <chrono>
#include <optional>

namespace harbrix {

/// The network of the first Wi-Fi device that NetworkManager has brought up; nothing where it does
/// not run, has none or does not answer within the limit.
[[nodiscard]] std::optional<QString> networkManagerSsid(const QDBusConnection& systemBus,
                                                        std::chrono::milliseconds limit);

/// The network of the first Wi-Fi interface in station mode that the kernel knows (nl80211).
[[nodiscard]] std::optional<QString> kernelSsid();

/// A network's name is up to 32 bytes of any kind: read as UTF-8 where it is that, else as Latin-1.
[[nodiscard]] QString ssidText(const QByteArray& bytes);

} // namespace harbrix
