#pragma once

#include "ctl/CommandLine.h"

namespace harbrix {

class RunningProgram;

// The commands that are about the program rather than a share.

[[nodiscard]] ExitCode exportRecords(const RunningProgram& program, const Invocation& invocation);
[[nodiscard]] ExitCode importRecords(const RunningProgram& program, const Invocation& invocation);

[[nodiscard]] ExitCode listSettings(const RunningProgram& program, const Invocation& invocation);
[[nodiscard]] ExitCode getSetting(const RunningProgram& program, const Invocation& invocation);
[[nodiscard]] ExitCode changeSetting(const RunningProgram& program, const Invocation& invocation);

[[nodiscard]] ExitCode showLog(const RunningProgram& program, const Invocation& invocation);
[[nodiscard]] ExitCode exportLog(const RunningProgram& program, const Invocation& invocation);
[[nodiscard]] ExitCode clearLog(const RunningProgram& program);

} // namespace harbrix
