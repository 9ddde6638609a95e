#pragma once

#include "common/Secret.h"

#include <expected>
#include <string>

namespace harbrix {

/// Prints the prompt and reads one line without echo: from the terminal, or from standard input
/// when that is a pipe, a socket or a file. The error is a text for the user. Ends the process as
/// the signal would if one comes meanwhile, with the terminal as it was.
[[nodiscard]] std::expected<Secret, std::string> readPassword(const std::string& prompt);

} // namespace harbrix
