#pragma once

#include "StrategyFixture.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {

using Kind = MountState::Kind;
using Verb = ScriptedMountOperations::Verb;

inline const HarbrixError refused = HarbrixError::mountFailed("refused");

class StrategyTest : public testing::Test {
protected:
    /// Ends the turn of the event loop and gives what the clock said at each mount since `begin`.
    [[nodiscard]] std::vector<double> mountTimes() const {
        std::vector<double> times;
        for (const auto& call : automation.engine.calls)
            if (call.verb != Verb::Unmount)
                times.push_back(Seconds(call.at).count());
        return times;
    }
    void failAllMounts() {
        automation.engine.planMount = [](const NASConfig&) {
            return ScriptedMountOperations::Plan{Seconds(0), refused};
        };
    }

    QTemporaryDir directory;
    Automation automation{directory.filePath("defaults.json")};
};

} // namespace harbrix
