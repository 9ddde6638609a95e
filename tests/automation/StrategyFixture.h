#pragma once

#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "base/ManualScheduler.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "fakes/FakeMachineEvents.h"
#include "fakes/InMemorySecretStore.h"
#include "fakes/ScriptedMountOperations.h"
#include "platform/UserDefaults.h"
#include "services/MountNotifier.h"

#include <net/if.h>
#include <sys/socket.h>

namespace harbrix {

using namespace std::chrono_literals;

class RecordingNotifier final : public MountNotifier {
public:
    void notifyMountSuccess(const QString& nasName) override { told << "mounted " + nasName; }
    void notifyMountFailure(const QString& nasName, const HarbrixError& error) override {
        told << "failed " + nasName + ": " + error.payload();
    }
    void notifyUnmount(const QString& nasName) override { told << "unmounted " + nasName; }

    QStringList told;
};

/// The real conductor, store, state and binding code; only the machine is played.
class Automation {
public:
    explicit Automation(const QString& defaultsPath)
        : defaults(defaultsPath), appState([this] { return scheduler.wallClock(); }),
          keychain(secrets), store(defaults, appState, keychain),
          network(path, {[this] { return interfaces(); }, [this] { return wifiName(ssid); }},
                  scheduler),
          engine(scheduler),
          strategy(engine, store, appState, network, notifier, defaults, scheduler, sleepMonitor) {
        network.start();
    }

    /// A share that belongs to the range; by default the one that goOnline() joins.
    NASConfig add(const QString& name, const QString& range = "192.168.1.0/24") {
        NASConfig config = NASConfig::blank();
        config.name = name;
        config.address = "192.0.2.10";
        config.sharePath = name;
        config.networkBinding.ipRange = range;
        store.add(config);
        return config;
    }
    /// Leaves what follows from it posted.
    void goOnline(const QString& ipAddress = "192.168.1.5") {
        address = ipAddress;
        emit path.pathChanged(true);
    }
    void goOffline() {
        address.reset();
        emit path.pathChanged(false);
    }
    [[nodiscard]] MountState state(const NASConfig& config) const {
        const auto status = appState.status(config.id);
        return status ? status->mountState : MountState();
    }
    [[nodiscard]] QString mountPoint(const NASConfig& config) const {
        const auto status = appState.status(config.id);
        return status && status->mountPoint ? directoryPath(*status->mountPoint) : QString();
    }
    void mount(const NASConfig& config) { strategy.launch(strategy.mount(config.id)); }
    void unmount(const NASConfig& config) { strategy.launch(strategy.unmount(config.id)); }

    ManualScheduler scheduler;
    UserDefaults defaults;
    AppStateManager appState;
    InMemorySecretStore secrets;
    KeychainManager keychain;
    NASConfigStore store;
    FakeNetworkPathMonitor path;
    std::optional<QString> address;
    std::optional<QString> ssid;
    NetworkMonitor network;
    SleepMonitor sleepMonitor;
    RecordingNotifier notifier;
    ScriptedMountOperations engine;
    AutoMountStrategy strategy;

private:
    [[nodiscard]] std::vector<InterfaceAddress> interfaces() const {
        if (!address)
            return {};
        return {{"eth0", IFF_UP | IFF_RUNNING, AF_INET, address, 0xFFFFFF00}};
    }
    static Task<std::optional<QString>> wifiName(std::optional<QString> name) { co_return name; }
};

} // namespace harbrix
