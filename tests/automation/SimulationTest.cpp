#include "Simulation.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

/// Some lives under the sanitizers; the program `simulation` runs ten thousand, and replays one.
class SimulationTest : public testing::TestWithParam<int> {};

TEST_P(SimulationTest, InvariantsHoldInEveryLife) {
    constexpr quint64 lives = 250;
    const quint64 first = static_cast<quint64>(GetParam()) * lives;
    for (quint64 seed = first; seed < first + lives; ++seed) {
        const auto failure = Simulation(seed).run(200);
        ASSERT_FALSE(failure) << "seed " << seed << ": " << failure->toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SimulationTest, testing::Range(0, 2));

} // namespace
} // namespace harbrix
