#pragma once

#include "platform/DesktopNotifications.h"
#include "platform/NetworkPathMonitor.h"
#include "platform/SleepMonitor.h"
#include "platform/WiFiNetworkName.h"

#include <mutex>
#include <vector>

namespace harbrix {

/// A network path that the test changes: `emit monitor.pathChanged(true)`.
class FakeNetworkPathMonitor final : public NetworkPathMonitor {
public:
    void start() override { ++starts; }

    int starts = 0;
};

/// The Wi-Fi that the test has joined. Thread-safe.
class FakeWiFiNetworkName final : public WiFiNetworkName {
public:
    void join(std::optional<QString> name) {
        const std::scoped_lock lock(m_mutex);
        m_name = std::move(name);
    }
    [[nodiscard]] std::optional<QString> current() override {
        const std::scoped_lock lock(m_mutex);
        return m_name;
    }

private:
    std::mutex m_mutex;
    std::optional<QString> m_name;
};

/// Keeps what was posted. Outcomes are told at once.
class FakeDesktopNotifications final : public DesktopNotifications {
public:
    struct Posted {
        QString identifier;
        Notification notification;
    };

    void post(const QString& identifier, const Notification& notification,
              std::function<void(Outcome)> done) override {
        if (outcome)
            posted.push_back({identifier, notification});
        if (done)
            done(outcome);
    }
    void withdraw(const QString& identifier) override { withdrawn << identifier; }
    void checkReachable(std::function<void(Outcome)> done) override { done(outcome); }

    Outcome outcome; ///< what every call gives
    std::vector<Posted> posted;
    QStringList withdrawn;
};

} // namespace harbrix
