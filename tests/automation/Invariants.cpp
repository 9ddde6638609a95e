#include "Simulation.h"

namespace harbrix {

using Kind = MountState::Kind;

namespace {

/// What a flow in flight arms at this very moment has its whole delay ahead.
bool isJustArmed(Seconds untilRetry) {
    return std::ranges::find(AutoMountStrategy::retryIntervals, untilRetry) !=
           AutoMountStrategy::retryIntervals.end();
}

} // namespace

void Simulation::expect(bool holds, const char* rule, const QString& name) {
    if (!holds && !m_failure)
        m_failure = QStringLiteral("%1 s: %2 %3")
                        .arg(Seconds(m_world.scheduler.now()).count())
                        .arg(rule, name);
}

void Simulation::observe() {
    const auto& strategy = m_world.strategy;
    m_before = {strategy.isDebouncePending(), m_world.network.isConnected(),
                m_world.scheduler.now()};
    for (auto& [name, share] : m_shares)
        share.seen.isThere = false;
    for (const NASConfig& config : m_world.store.configs()) {
        Share& share = m_shares.at(config.name);
        Seen& seen = share.seen;
        seen.isThere = true;
        seen.kind = m_world.appState.nasStatuses().constFind(config.id)->mountState.kind();
        seen.enabled = config.isEnabled;
        seen.retryCount = strategy.retryCount(config.id);
        seen.untilRetry = strategy.timeUntilRetry(config.id);
        seen.untilDelayedMount = strategy.timeUntilDelayedMount(config.id);
        seen.matches =
            (seen.untilRetry || m_before.debouncePending) && m_world.network.matchesBinding(config);
        const auto call = m_world.engine.inFlight.find(share.path);
        seen.isUnderWay = call != m_world.engine.inFlight.end() && call->second > 0;
        seen.mounts = share.mounts;
    }
}

void Simulation::countOutcomes() {
    for (auto& [name, share] : m_shares)
        share.failures = share.successes = 0;
    for (const QString& line : std::exchange(m_world.notifier.told, {})) {
        if (line.startsWith(u"unmounted"))
            continue;
        Share& share = m_shares.at(line.section(u' ', 1, 1).remove(u':'));
        --share.mounting;
        ++(line.startsWith(u"failed") ? share.failures : share.successes);
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

void Simulation::checkStep(Event event) {
    const auto& strategy = m_world.strategy;
    countOutcomes();
    checkSummaries();
    checkTimers();
    for (const NASConfig& config : m_world.store.configs())
        checkShare(config, event, m_shares.at(config.name));
    if (m_deleted)
        expect(!strategy.timeUntilRetry(*m_deleted) && !strategy.timeUntilDelayedMount(*m_deleted),
               "a timer outlives its record");
    if (event == Event::Sleep) {
        expect(strategy.pendingRetries() == 0, "a retry outlives the sleep");
        expect(!strategy.isHealthCheckArmed(), "the health check outlives the sleep");
    }
    if (event == Event::Clock && m_before.debouncePending && !strategy.isDebouncePending())
        checkDebounce();
}

void Simulation::checkShare(const NASConfig& config, Event event, const Share& share) {
    const auto status = m_world.appState.nasStatuses().constFind(config.id);
    const Seen& seen = share.seen;
    const Kind kind = status->mountState.kind();
    expect(status->mountPoint.has_value() == (kind == Kind::mounted), "mount point", config.name);
    expect(kind != Kind::mounting || share.mounting > 0, "mounts for ever", config.name);
    expect(kind != Kind::unmounting, "a state that is never set", config.name);

    const bool isCommanded = m_commanded == config.name;
    const bool isAtRest =
        seen.isThere && !seen.isUnderWay && !seen.untilRetry && !seen.untilDelayedMount;
    if (!config.isEnabled && !seen.enabled && isAtRest && !isCommanded) {
        expect(kind == seen.kind, "automation touched a disabled share", config.name);
        expect(share.mounts == seen.mounts, "automation mounted a disabled share", config.name);
    }
    if (event == Event::Clock)
        checkMounts(config, share);
    else if (event != Event::Command)
        expect(share.mounts == seen.mounts, "a mount out of nowhere", config.name);
}

void Simulation::checkMounts(const NASConfig& config, const Share& share) {
    const Seen& seen = share.seen;
    const Duration passed = m_world.scheduler.now() - m_before.at;
    const bool retryFired = seen.untilRetry && toDuration(*seen.untilRetry) == passed;
    const bool delayFired = seen.untilDelayedMount && toDuration(*seen.untilDelayedMount) == passed;
    const bool isLaunch = m_world.scheduler.now() == AutoMountStrategy::launchDelay;
    const bool begun = share.mounts > seen.mounts;
    expect(!begun || retryFired || delayFired || isLaunch, "a mount without a cause", config.name);
    expect(begun || !delayFired, "a delayed mount was lost", config.name);
    // A retry goes by the binding that the record had when it was armed.
    if (retryFired && !delayFired && !isLaunch && !share.isRebound)
        expect(begun == (seen.matches && m_before.connected),
               "a retry where the share does not belong, or none where it does", config.name);
    checkBackOff(config, share, delayFired);
}

void Simulation::checkBackOff(const NASConfig& config, const Share& share, bool delayFired) {
    const Seen& seen = share.seen;
    const int count = m_world.strategy.retryCount(config.id);
    if (share.failures == 0) {
        expect(count == seen.retryCount || count == 0, "the back-off counts a phantom",
               config.name);
        expect(share.successes == 0 || count == 0, "a success does not reset the back-off",
               config.name);
    } else if (share.failures == 1 && share.successes == 0 && count > 0 && !delayFired) {
        expect(count == seen.retryCount + 1, "the back-off miscounts", config.name);
        const auto last = static_cast<int>(AutoMountStrategy::retryIntervals.size()) - 1;
        const auto row = static_cast<std::size_t>(std::min(seen.retryCount, last));
        expect(m_world.strategy.timeUntilRetry(config.id) ==
                   AutoMountStrategy::retryIntervals.at(row),
               "the delay of the back-off", config.name);
    }
}

void Simulation::checkDebounce() {
    for (const NASConfig& config : m_world.store.configs()) {
        if (config.isEnabled)
            checkDebounced(config, m_shares.at(config.name));
    }
}

void Simulation::checkDebounced(const NASConfig& config, const Share& share) {
    const auto& strategy = m_world.strategy;
    const auto untilRetry = strategy.timeUntilRetry(config.id);
    const Kind kind = m_world.state(config).kind();
    const bool hasEnded = share.failures + share.successes > 0;
    if (!m_before.connected) {
        expect(!untilRetry || isJustArmed(*untilRetry), "a retry outlives the network",
               config.name);
        expect(kind == Kind::offline || hasEnded, "not offline without a network", config.name);
        return;
    }
    if (m_slowLooks) // the walk over the shares may not be through yet
        return;
    if (share.seen.matches) {
        const bool isThere = m_world.engine.volumes.contains(share.path);
        const bool isMountedAgain = strategy.timeUntilDelayedMount(config.id) > Seconds(0);
        expect(kind == Kind::mounted ? isThere || hasEnded : isMountedAgain,
               "a share that belongs here is not mounted", config.name);
    } else {
        expect(!untilRetry || isJustArmed(*untilRetry), "a retry outlives its network",
               config.name);
        const auto call = m_world.engine.inFlight.find(share.path);
        const bool isUnderWay = call != m_world.engine.inFlight.end() && call->second > 0;
        expect(kind == Kind::idle || kind == Kind::failed || isUnderWay,
               "a share that does not belong here stays", config.name);
    }
}

} // namespace harbrix
