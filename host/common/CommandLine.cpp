#include "common/CommandLine.h"

#include <cstdio>
#include <string>

namespace harbrix {

namespace {

void print(FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

} // namespace

std::optional<int> answerStandardOptions(const ProgramText& text, int argc, char* const* argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--help") {
            print(stdout, std::string(text.help));
            return ExitCode::success;
        }
        if (argument == "--version") {
            print(stdout, std::string(text.name) + " (Harbrix) " HARBRIX_VERSION "\n");
            return ExitCode::success;
        }
        if (argument == "--" || !argument.starts_with('-'))
            break;
    }
    return std::nullopt;
}

int usageError(const ProgramText& text, std::string_view message) {
    const std::string name(text.name);
    print(stderr, name + ": " + std::string(message) + " (see " + name + " --help)\n");
    return ExitCode::usage;
}

int failureError(const ProgramText& text, std::string_view message) {
    print(stderr, std::string(text.name) + ": " + std::string(message) + "\n");
    return ExitCode::failure;
}

} // namespace harbrix
