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
        MountState::Kind kind = MountState::Kind::idle;
        bool enabled = true;
        bool matches = false;
        int retryCount = 0;
        std::optional<Seconds> untilRetry;
        std::optional<Seconds> untilDelayedMount;
        int inFlight = 0; ///< mounts and unmounts
        std::size_t calls = 0;
    };
    struct Before {
        std::map<QUuid, Seen> shares;
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
    [[nodiscard]] Before observe() const;
    void checkStep(Event event, const Before& before);
    void countOutcomes();
    void checkSummaries();
    void checkTimers();
    void checkShare(const NASConfig& config, Event event, const Before& before, const Seen& seen);
    void checkRetry(const NASConfig& config, const Before& before, const Seen& seen);
    void checkDebounce(const Before& before);
    void expect(bool holds, const QString& rule, const QString& name = {});

    std::mt19937_64 m_random;
    Automation m_world;
    Trace m_tracing;
    QStringList m_trace;
    std::optional<QString> m_failure;
    std::map<QString, int> m_mounting;      ///< mounts that have begun and not ended, by name
    std::map<QString, std::size_t> m_calls; ///< calls of the engine, by name
    std::set<QString> m_rebound;            ///< whose binding was edited
    std::map<QString, int> m_failures;      ///< within the present step
    std::map<QString, int> m_successes;     ///< within the present step
    QString m_commanded;                    ///< whom the user's command is about; "*" is all
    bool m_slowLooks = false;
    bool m_asleep = false;
    int m_names = 0;
};

} // namespace harbrix
