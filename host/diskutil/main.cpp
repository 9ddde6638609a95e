#include "common/CommandLine.h"
#include "diskutil/Unmounter.h"

#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

using namespace harbrix;

namespace {

constexpr ProgramText programText{
    "diskutil",
    "Usage: diskutil unmount [force] directory\n"
    "       diskutil list\n"
    "\n"
    "Ends mounts, those of mount_smbfs(8) and mount_nfs(8) and any other that the caller may\n"
    "end, also when the server or the daemon behind it does not answer.\n"
    "\n"
    "  unmount        end the mount; refused while something uses it\n"
    "  unmount force  end it in any case, and the daemon behind it\n"
    "  list           show the network mounts: source, directory, type\n"
    "  --help         show this text\n"
    "  --version      show the version\n"};

// A mount point, not a path below it, is what the caller names; a trailing slash does not matter.
int runUnmount(const std::vector<std::string>& arguments) {
    const bool isForced = arguments.size() == 2 && arguments[0] == "force";
    if (arguments.empty() || (arguments.size() == 2 && !isForced) || arguments.size() > 2)
        return usageError(programText, "unmount takes [force] and a directory");
    const std::string& path = arguments.back();
    if (path.empty())
        return usageError(programText, "the directory is empty");
    const auto done = unmount(path, isForced ? UnmountMode::force : UnmountMode::ifIdle);
    if (!done)
        return failureError(programText, done.error());
    return ExitCode::success;
}

int runList(const std::vector<std::string>& arguments) {
    if (!arguments.empty())
        return usageError(programText, "list takes no arguments");
    const MountTable table = MountTable::read();
    std::string text;
    for (const MountEntry& entry : table.entries()) {
        if (entry.subtype() == "smbfs" || entry.subtype() == "nfs")
            text += entry.source + " on " + entry.mountPoint + " (" + std::string(entry.subtype()) +
                    ")\n";
    }
    (void) !::write(STDOUT_FILENO, text.data(), text.size());
    return ExitCode::success;
}

int run(int argc, char** argv) {
    if (const auto code = answerStandardOptions(programText, argc, argv))
        return *code;
    if (argc < 2)
        return usageError(programText, "expected a command");
    const std::string command = argv[1];
    const std::vector<std::string> arguments(argv + 2, argv + argc);
    if (command == "unmount")
        return runUnmount(arguments);
    if (command == "list")
        return runList(arguments);
    return usageError(programText, "unknown command '" + command + "'");
}

} // namespace

int main(int argc, char** argv) {
    // Not exit(): a thread may still be inside a system call that does not return.
    ::_exit(run(argc, argv));
}
