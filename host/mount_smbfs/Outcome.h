#pragma once

#include <chrono>
#include <expected>

namespace harbrix {

/// An errno value as the error.
template <typename Value>
using Outcome = std::expected<Value, int>;

using Deadline = std::chrono::steady_clock::time_point;

} // namespace harbrix
