#pragma once

#include <optional>
#include <string_view>

namespace harbrix {

/// Exit codes of the host tools; `usage` is EX_USAGE of sysexits(3).
struct ExitCode {
    static constexpr int success = 0;
    static constexpr int failure = 1;
    static constexpr int usage = 64;
};

/// What a tool says about itself.
struct ProgramText {
    std::string_view name;
    std::string_view help;
};

/// Answers `--help` and `--version` when one stands before the first operand (or "--"). Returns the
/// exit code if the tool is done with that.
[[nodiscard]] std::optional<int> answerStandardOptions(const ProgramText& text, int argc,
                                                       char* const* argv);

/// Prints "NAME: MESSAGE (see NAME --help)" on standard error. Returns ExitCode::usage.
[[nodiscard]] int usageError(const ProgramText& text, std::string_view message);

/// Prints "NAME: MESSAGE" on standard error. Returns ExitCode::failure.
[[nodiscard]] int failureError(const ProgramText& text, std::string_view message);

} // namespace harbrix
