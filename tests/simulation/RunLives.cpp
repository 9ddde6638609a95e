// Runs many random lives of the conductor, or one again with each of its events.

#include "Simulation.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStandardPaths>

#include <cstdio>

namespace harbrix {
namespace {

constexpr int eventsPerLife = 200;

int replay(quint64 seed) {
    Simulation life(seed, Simulation::Trace::On);
    const auto failure = life.run(eventsPerLife);
    for (const QString& event : life.trace())
        std::puts(qPrintable(event));
    std::puts(failure ? qPrintable(*failure) : "every rule holds");
    return failure ? 1 : 0;
}

int runLives(quint64 first, quint64 count) {
    int broken = 0;
    for (quint64 seed = first; seed < first + count; ++seed) {
        if (const auto failure = Simulation(seed).run(eventsPerLife)) {
            std::printf("seed %llu: %s\n  to see it again: simulation --replay %llu\n", seed,
                        qPrintable(*failure), seed);
            ++broken;
        }
    }
    std::printf("%llu lives of %d events, %d broken\n", count, eventsPerLife, broken);
    return broken == 0 ? 0 : 1;
}

} // namespace
} // namespace harbrix

int main(int argc, char** argv) {
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication application(argc, argv);
    QCommandLineParser words;
    words.setApplicationDescription("Random lives of the conductor; each follows from its seed.");
    words.addHelpOption();
    words.addOption({"replay", "Run one life and print its events.", "seed"});
    words.addOption({"first", "The first seed.", "seed", "0"});
    words.addOption({"lives", "How many.", "count", "10000"});
    words.process(application);
    if (words.isSet("replay"))
        return harbrix::replay(words.value("replay").toULongLong());
    return harbrix::runLives(words.value("first").toULongLong(),
                             words.value("lives").toULongLong());
}
