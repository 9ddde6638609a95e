#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <chrono>

namespace harbrix {

/// What the server says may be up to a second old when it is passed on; counted from its answer.
constexpr std::chrono::seconds answersValidFor(1);

/// What the server said of a file, and when its answer came.
struct Answer {
    struct stat attributes;
    std::chrono::steady_clock::time_point at;

    /// How long it may still be passed on; 0 when that time is over.
    [[nodiscard]] std::chrono::duration<double> remaining() const {
        const std::chrono::duration<double> left =
            at + answersValidFor - std::chrono::steady_clock::now();
        return std::max(left, std::chrono::duration<double>::zero());
    }
};

} // namespace harbrix
