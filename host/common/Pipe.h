#pragma once

#include <string>

namespace harbrix {

/// All that is written into the pipe until its last writer closes it; what was read so far if
/// reading fails. Blocks.
[[nodiscard]] std::string readToEnd(int pipe);

} // namespace harbrix
