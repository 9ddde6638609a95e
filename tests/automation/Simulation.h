#pragma once

#include "StrategyFixture.h"

#include <map>
#include <random>

namespace harbrix {

/// A random life of the conductor on the manual clock: networks come and go, the machine sleeps,
/// tools succeed, fail and hang, volumes vanish, and a user edits records and gives commands. After
/// each step what must always hold is looked at. Everything follows from the seed.
class Simulation {
public:
    enum class Trace { Off, On };

    explicit Simulation(quint64 seed, Trace trace = Trace::Off);

    /// What was broken, if anything was.
    std::optional<QString> run(int events);
    /// Each event with its time, if it was asked for.
    [[nodiscard]] const QStringList& trace() const { return m_trace; }

private:
    /// One share as it stood before a step.
    struct Seen {
        bool isThere = false;
        MountState::Kind kind = MountState::Kind::idle;
        bool enabled = true;
        bool matches = false; ///< looked at only where a rule asks for it
        int retryCount = 0;
        std::optional<Seconds> untilRetry;
        std::optional<Seconds> untilDelayedMount;
        bool isUnderWay = false; ///< a mount or an unmount
        std::size_t mounts = 0;
    };
    /// What the simulation keeps of a share, also after its record is gone.
    struct Share {
        QString path;
        bool isRebound = false; ///< its binding was edited
        bool wasDeleted = false;
        int mounting = 0;       ///< mounts that have begun and not ended
        std::size_t mounts = 0; ///< mounts that have begun
        int failures = 0;       ///< within the present step
        int successes = 0;      ///< within the present step
        Seen seen;
    };
    struct Before {
        bool debouncePending = false;
        bool connected = false;
        Duration at{};
    };
    enum class Event { Command, Machine, Sleep, Clock };

    // Simulation.cpp
    void populate();
    NASConfig randomShare();
    void randomBinding(NASConfig& config);
    void script();
    void randomEvent();
    void machineEvent();
    void recordEvent();
    void userEvent();
    void advanceClock(Seconds span);
    void drain();
    template <typename Action>
    void step(Event event, const char* what, const QString& whom, const Action& action);
    [[nodiscard]] quint64 pick(quint64 count) { return m_random() % count; }
    [[nodiscard]] Seconds upTo(double seconds);
    [[nodiscard]] const NASConfig* anyShare();

    // Invariants.cpp
    void observe();
    void checkStep(Event event);
    void countOutcomes();
    void checkSummaries();
    void checkTimers();
    void checkShare(const NASConfig& config, Event event, const Share& share);
    void checkMounts(const NASConfig& config, const Share& share);
    void checkBackOff(const NASConfig& config, const Share& share, bool delayFired);
    void checkDebounce();
    void checkDebounced(const NASConfig& config, const Share& share);
    void expect(bool holds, const char* rule, const QString& name = {});

    std::mt19937_64 m_random;
    Automation m_world;
    Trace m_tracing;
    QStringList m_trace;
    std::optional<QString> m_failure;
    std::map<QString, Share> m_shares; ///< by name
    Before m_before;
    QString m_commanded; ///< whom the user's command is about; "*" is all
    bool m_slowLooks = false;
    bool m_asleep = false;
    std::optional<QUuid> m_deleted; ///< in the present step
    int m_names = 0;
};

} // namespace harbrix
