#include "Simulation.h"

namespace harbrix {

using Kind = MountState::Kind;

namespace {

bool isBackOff(Seconds delay) {
    return std::ranges::find(AutoMountStrategy::retryIntervals, delay) !=
           AutoMountStrategy::retryIntervals.end();
}

} // namespace

void Simulation::expect(bool holds, const QString& rule, const QString& name) {
    if (!holds && !m_failure)
        m_failure = QStringLiteral("%1 s: %2 %3")
                        .arg(Seconds(m_world.scheduler.now()).count())
                        .arg(rule, name);
}

Simulation::Before Simulation::observe() const {
    Before before;
    before.debouncePending = m_world.strategy.isDebouncePending();
    before.connected = m_world.network.isConnected();
    before.at = m_world.scheduler.now();
    for (const NASConfig& config : m_world.store.configs()) {
        Seen seen;
        seen.kind = m_world.state(config).kind();
        seen.enabled = config.isEnabled;
        seen.matches = m_world.network.matchesBinding(config);
        seen.retryCount = m_world.strategy.retryCount(config.id);
        seen.untilRetry = m_world.strategy.timeUntilRetry(config.id);
        seen.untilDelayedMount = m_world.strategy.timeUntilDelayedMount(config.id);
        const auto& inFlight = m_world.engine.inFlight;
        const auto path = m_world.engine.resolveMountPoint(config);
        if (const auto found = inFlight.find(path); found != inFlight.end())
            seen.inFlight = found->second;
        if (const auto found = m_calls.find(config.name); found != m_calls.end())
            seen.calls = found->second;
        before.shares.emplace(config.id, seen);
    }
    return before;
}

void Simulation::countOutcomes() {
    m_failures.clear();
    m_successes.clear();
    for (const QString& line : std::exchange(m_world.notifier.told, {})) {
        const QString name = line.section(' ', 1, 1).remove(':');
        if (line.startsWith("unmounted"))
            continue;
        --m_mounting[name];
        ++(line.startsWith("failed") ? m_failures : m_successes)[name];
    }
}

void Simulation::checkSummaries() {
    const auto& statuses = m_world.appState.nasStatuses();
    expect(m_world.appState.appState() == deriveAppState(statuses), "the summary is out of step");
    expect(m_world.appState.menuBarIconState() == deriveMenuBarIconState(statuses),
           "the icon is out of step");
}

void Simulation::checkTimers() {
    const auto& strategy = m_world.strategy;
    const std::size_t known = strategy.pendingRetries() + strategy.pendingDelays() +
                              strategy.isDebouncePending() + strategy.isHealthCheckArmed() +
                              static_cast<std::size_t>(m_world.engine.waits);
    expect(m_world.scheduler.pendingAlarms() == known, "a timer that nobody knows of");
}

void Simulation::checkStep(Event event, const Before& before) {
    countOutcomes();
    checkSummaries();
    checkTimers();
    for (const NASConfig& config : m_world.store.configs()) {
        const auto seen = before.shares.find(config.id);
        checkShare(config, event, before, seen == before.shares.end() ? Seen{} : seen->second);
    }
    for (const auto& [id, seen] : before.shares) {
        if (m_world.store.config(id))
            continue;
        expect(!m_world.strategy.timeUntilRetry(id) && !m_world.strategy.timeUntilDelayedMount(id),
               "a timer outlives its record");
    }
    if (event == Event::Sleep) {
        expect(m_world.strategy.pendingRetries() == 0, "a retry outlives the sleep");
        expect(!m_world.strategy.isHealthCheckArmed(), "the health check outlives the sleep");
    }
    if (event == Event::Clock && before.debouncePending && !m_world.strategy.isDebouncePending())
        checkDebounce(before);
}

void Simulation::checkShare(const NASConfig& config, Event event, const Before& before,
                            const Seen& seen) {
    const auto status = m_world.appState.status(config.id);
    expect(status.has_value(), "no status", config.name);
    if (!status)
        return;
    const Kind kind = status->mountState.kind();
    expect(status->mountPoint.has_value() == (kind == Kind::mounted), "mount point", config.name);
    expect(kind != Kind::mounting || m_mounting[config.name] > 0, "mounts for ever", config.name);
    expect(kind != Kind::unmounting, "a state that is never set", config.name);

    const bool isCommanded = m_commanded == "*" || m_commanded == config.name;
    const bool nothingUnderWay = seen.inFlight == 0 && !seen.untilRetry && !seen.untilDelayedMount;
    if (!config.isEnabled && !seen.enabled && nothingUnderWay && m_commanded != config.name &&
        before.shares.contains(config.id)) {
        // An unmount by hand may still be under way.
        const bool unmounting = m_world.engine.waits > 0 && seen.kind == Kind::mounted;
        expect(kind == seen.kind || unmounting, "automation touched a disabled share", config.name);
        expect(m_calls[config.name] == seen.calls, "automation mounted a disabled share",
               config.name);
    }
    if (event == Event::Clock && !isCommanded)
        checkRetry(config, before, seen);
    else if (event != Event::Command && event != Event::Machine)
        expect(m_calls[config.name] == seen.calls, "a mount out of nowhere", config.name);
}

void Simulation::checkRetry(const NASConfig& config, const Before& before, const Seen& seen) {
    const auto& strategy = m_world.strategy;
    const Duration passed = m_world.scheduler.now() - before.at;
    const bool retryFired = seen.untilRetry && toDuration(*seen.untilRetry) == passed;
    const bool delayFired = seen.untilDelayedMount && toDuration(*seen.untilDelayedMount) == passed;
    const auto begun = m_calls[config.name] - seen.calls;
    const bool atLaunch = m_world.scheduler.now() == AutoMountStrategy::launchDelay;
    if (begun > 0)
        expect(retryFired || delayFired || atLaunch, "a mount without a cause", config.name);
    // A retry goes by the binding that the record had when it was armed.
    if (retryFired && !delayFired && !atLaunch && !m_rebound.contains(config.name))
        expect((begun > 0) == (seen.matches && before.connected),
               "a retry where the share does not belong, or none where it does", config.name);
    if (delayFired)
        expect(begun > 0, "a delayed mount was lost", config.name);

    const int count = strategy.retryCount(config.id);
    const int failures = m_failures[config.name];
    const auto untilRetry = strategy.timeUntilRetry(config.id);
    if (failures == 1 && m_successes[config.name] == 0 &&
        !strategy.timeUntilDelayedMount(config.id) && !delayFired && count > 0) {
        expect(count == seen.retryCount + 1, "the back-off miscounts", config.name);
        const auto index = std::min(seen.retryCount, 3);
        expect(untilRetry == AutoMountStrategy::retryIntervals[index], "the back-off", config.name);
    }
    if (failures == 0 && m_successes[config.name] > 0)
        expect(count == 0, "a success does not reset the back-off", config.name);
    if (failures == 0)
        expect(count == seen.retryCount || count == 0, "the back-off counts a phantom",
               config.name);
}

void Simulation::checkDebounce(const Before& before) {
    const bool connected = before.connected;
    for (const NASConfig& config : m_world.store.configs()) {
        if (!config.isEnabled)
            continue;
        const auto& seen = before.shares.at(config.id);
        const auto untilRetry = m_world.strategy.timeUntilRetry(config.id);
        // What a flow in flight arms at this very moment may stand.
        const bool noOldRetry = !untilRetry || isBackOff(*untilRetry);
        const Kind kind = m_world.state(config).kind();
        if (!connected) {
            expect(noOldRetry, "a retry outlives the network", config.name);
            expect(kind == Kind::offline || m_failures[config.name] || m_successes[config.name],
                   "not offline without a network", config.name);
        } else if (m_slowLooks) {
            continue;
        } else if (seen.matches) {
            const bool isThere =
                m_world.engine.volumes.contains(m_world.engine.resolveMountPoint(config));
            expect(kind == Kind::mounted
                       ? isThere || m_successes[config.name]
                       : m_world.strategy.timeUntilDelayedMount(config.id) > Seconds(0),
                   "a share that belongs here is not mounted", config.name);
        } else {
            expect(noOldRetry, "a retry outlives the share's network", config.name);
            expect(kind == Kind::idle || kind == Kind::failed || m_world.engine.waits > 0,
                   "a share that does not belong here stays", config.name);
        }
    }
}

} // namespace harbrix
