#include "Simulation.h"

namespace harbrix {

using Plan = ScriptedMountOperations::Plan;

// A path below a file: settings stay in memory, and ten thousand lives cost no disk.
Simulation::Simulation(quint64 seed, Trace trace)
    : m_random(seed), m_world("/dev/null/defaults.json"), m_tracing(trace) {
    m_slowLooks = pick(4) == 0;
    script();
    populate();
}

Seconds Simulation::upTo(double seconds) {
    return Seconds(seconds * static_cast<double>(pick(1'000'003)) / 1'000'003);
}

const NASConfig* Simulation::anyShare() {
    const auto& configs = m_world.store.configs();
    return configs.empty() ? nullptr : &configs[pick(configs.size())];
}

void Simulation::script() {
    auto& engine = m_world.engine;
    engine.planMount = [this](const NASConfig&) {
        switch (pick(6)) {
        case 0:
            return Plan{};
        case 1:
        case 2:
            return Plan{upTo(20), std::nullopt};
        case 3:
            return Plan{Seconds(30) + upTo(0.1), HarbrixError::timeout("hung")};
        case 4:
            return Plan{Seconds(0), HarbrixError::mountFailed("at once")};
        default:
            return Plan{upTo(5), HarbrixError::mountFailed("refused")};
        }
    };
    engine.planUnmount = [this](const QString&) {
        const auto busy = HarbrixError::unmountFailed("busy");
        return Plan{pick(2) ? upTo(5) : Seconds(0), pick(4) ? std::nullopt : std::optional(busy)};
    };
    if (m_slowLooks)
        engine.planLook = [this](const QString&) { return pick(3) ? Seconds(0) : upTo(3); };
    engine.onMount = [this](const NASConfig& config) {
        Share& share = m_shares.at(config.name);
        ++share.mounting;
        ++share.mounts;
    };
}

void Simulation::randomBinding(NASConfig& config) {
    static const QStringList ranges{"192.168.1.0/24", "10.0.0.0/8", "0.0.0.0/0", ""};
    auto& binding = config.networkBinding;
    binding.strategy =
        std::array{NetworkBindingStrategy::ipRange, NetworkBindingStrategy::ipRange,
                   NetworkBindingStrategy::ssid, NetworkBindingStrategy::combined}[pick(4)];
    binding.ipRange = ranges[static_cast<qsizetype>(pick(4))];
    binding.ssidList = pick(2) ? QStringList{"Home"} : QStringList{"Office", "Home"};
}

NASConfig Simulation::randomShare() {
    NASConfig config;
    config.id = QUuid(static_cast<uint>(m_random()), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
    config.name = "s" + QString::number(m_names++);
    config.address = "192.0.2.10";
    config.sharePath = config.name;
    config.protocol = pick(2) ? NASProtocol::smb : NASProtocol::nfs;
    config.isEnabled = pick(5) > 0;
    randomBinding(config);
    m_shares[config.name].path = m_world.engine.resolveMountPoint(config);
    return config;
}

void Simulation::populate() {
    auto& defaults = m_world.defaults;
    if (pick(4) == 0)
        defaults.set(AutoMountStrategy::autoMountOnLaunchKey, false);
    if (pick(8) == 0)
        defaults.set(AutoMountStrategy::keepAliveEnabledKey, false);
    if (pick(4) == 0)
        defaults.set(AutoMountStrategy::keepAliveIntervalKey, 47.0);
    for (auto count = 1 + pick(4); count > 0; --count)
        m_world.store.add(randomShare());
}

template <typename Action>
void Simulation::step(Event event, const char* what, const QString& whom, const Action& action) {
    if (m_tracing == Trace::On && event != Event::Clock)
        m_trace << QStringLiteral("%1 s: %2 %3")
                       .arg(Seconds(m_world.scheduler.now()).count())
                       .arg(what, whom);
    observe();
    action();
    m_world.scheduler.settle();
    checkStep(event);
    m_commanded.clear();
}

std::optional<QString> Simulation::run(int events) {
    step(Event::Machine, "start", {}, [this] { m_world.strategy.start(); });
    for (int i = 0; i < events && !m_failure; ++i)
        randomEvent();
    if (!m_failure)
        drain();
    return m_failure;
}

void Simulation::randomEvent() {
    static constexpr std::array spans{0.5, 2.5, 6.0, 12.0, 40.0, 200.0, 400.0};
    switch (pick(10)) {
    case 0:
    case 1:
    case 2:
    case 3:
        return advanceClock(upTo(spans[pick(spans.size())]));
    case 4:
    case 5:
    case 6:
        return machineEvent();
    case 7:
        return recordEvent();
    default:
        return userEvent();
    }
}

void Simulation::machineEvent() {
    static const QStringList addresses{"192.168.1.5", "10.0.0.5", "172.16.0.5"};
    const auto kind = pick(8);
    if (kind < 3) {
        const QString address = addresses[static_cast<qsizetype>(pick(3))];
        m_world.ssid = std::array<std::optional<QString>, 3>{std::nullopt, "Home", "Cafe"}[pick(3)];
        step(Event::Machine, "online", address + ' ' + m_world.ssid.value_or("-"),
             [&] { m_world.goOnline(address); });
    } else if (kind == 3) {
        m_world.ssid.reset();
        step(Event::Machine, "offline", {}, [this] { m_world.goOffline(); });
    } else if (kind == 4) {
        m_asleep = true;
        step(Event::Sleep, "sleep", {}, [this] { emit m_world.sleepMonitor.willSleep(); });
    } else if (kind == 5) {
        m_asleep = false;
        step(Event::Machine, "wake", {}, [this] { emit m_world.sleepMonitor.didWake(); });
    } else if (const NASConfig* share = anyShare()) {
        step(Event::Machine, "volume gone", share->name,
             [&] { m_world.engine.volumes.erase(m_shares.at(share->name).path); });
    }
}

void Simulation::recordEvent() {
    const NASConfig* share = anyShare();
    const auto kind = pick(6);
    if (!share || (kind == 0 && m_world.store.configs().size() < 6)) {
        const NASConfig added = randomShare();
        step(Event::Command, "add", added.name, [&] { m_world.store.add(added); });
    } else if (kind == 1) {
        m_deleted = share->id;
        m_shares.at(share->name).wasDeleted = true;
        step(Event::Command, "delete", share->name, [this] { m_world.store.remove(*m_deleted); });
        m_deleted.reset();
    } else {
        NASConfig edited = *share;
        if (kind < 4) {
            edited.isEnabled = !edited.isEnabled;
        } else {
            randomBinding(edited);
            m_shares.at(edited.name).isRebound = true;
        }
        step(Event::Command, "edit", edited.name, [&] { m_world.store.update(edited); });
    }
}

void Simulation::userEvent() {
    auto& strategy = m_world.strategy;
    const NASConfig* share = anyShare();
    const auto kind = pick(8);
    m_commanded = kind < 2 ? "*" : share ? share->name : QString();
    if (kind == 0)
        step(Event::Command, "mount all", {}, [&] { strategy.launch(strategy.mountAll()); });
    else if (kind == 1)
        step(Event::Command, "unmount all", {}, [&] { strategy.launch(strategy.unmountAll()); });
    else if (share && kind < 6)
        step(Event::Command, "mount", share->name, [&] { m_world.mount(*share); });
    else if (share)
        step(Event::Command, "unmount", share->name, [&] { m_world.unmount(*share); });
}

/// Stops at each alarm, so that what it does is looked at by itself.
void Simulation::advanceClock(Seconds span) {
    auto& scheduler = m_world.scheduler;
    const Duration end = scheduler.now() + toDuration(span);
    while (!m_failure) {
        const auto next = scheduler.untilNextAlarm();
        if (!next || scheduler.now() + *next > end)
            break;
        step(Event::Clock, "", {}, [&] { scheduler.advance(*next); });
    }
    scheduler.advance(end - scheduler.now());
}

/// Once the machine has gone to sleep without a network everything comes to rest.
void Simulation::drain() {
    step(Event::Machine, "offline", {}, [this] { m_world.goOffline(); });
    m_asleep = true;
    step(Event::Sleep, "sleep", {}, [this] { emit m_world.sleepMonitor.willSleep(); });
    advanceClock(Seconds(400));
    expect(m_world.strategy.runningFlows() == 0, "a flow never ended");
    expect(m_world.engine.waits == 0, "a call never ended");
    expect(m_world.strategy.pendingRetries() == 0, "a retry goes on without a network");
    expect(m_world.scheduler.pendingAlarms() == 0, "an alarm was left behind");
    // The end of a mount whose record was removed meanwhile shows nowhere.
    for (const auto& [name, share] : m_shares)
        expect(share.mounting == 0 || share.wasDeleted, "a mount was lost", name);
    expect(m_world.appState.nasStatuses().size() ==
               static_cast<qsizetype>(m_world.store.configs().size()),
           "a status without a record");
}

} // namespace harbrix
