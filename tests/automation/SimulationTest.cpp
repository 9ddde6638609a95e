#include "Simulation.h"

namespace harbrix {
namespace {

constexpr int eventsPerLife = 200;

/// A quarter of the lives each, so that they run side by side.
class SimulationTest : public testing::TestWithParam<int> {};

TEST_P(SimulationTest, InvariantsHoldInEveryLife) {
    constexpr quint64 lives = 250;
    const quint64 first = static_cast<quint64>(GetParam()) * lives;
    for (quint64 seed = first; seed < first + lives; ++seed) {
        const auto failure = Simulation(seed).run(eventsPerLife);
        ASSERT_FALSE(failure) << "seed " << seed << ": " << failure->toStdString()
                              << "\nto replay: HARBRIX_SIMULATION_SEED=" << seed
                              << " with --gtest_filter=Simulation.Replay";
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SimulationTest, testing::Range(0, 4));

TEST(Simulation, Replay) {
    if (!qEnvironmentVariableIsSet("HARBRIX_SIMULATION_SEED"))
        GTEST_SKIP() << "set HARBRIX_SIMULATION_SEED to replay a life";
    Simulation life(qEnvironmentVariable("HARBRIX_SIMULATION_SEED").toULongLong(),
                    Simulation::Trace::On);
    const auto failure = life.run(eventsPerLife);
    EXPECT_FALSE(failure) << life.trace().join('\n').toStdString() << '\n'
                          << failure.value_or(QString()).toStdString();
}

} // namespace
} // namespace harbrix
