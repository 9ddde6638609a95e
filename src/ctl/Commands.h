#pragma once

#include "ctl/CommandLine.h"

namespace harbrix {

/// Does what the user asked for and tells how it went. Needs a QCoreApplication.
[[nodiscard]] ExitCode runCommand(const Invocation& invocation);

} // namespace harbrix
