#include "mount_nfs/program/KernelClient.h"

#include "base/UniqueDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <vector>

extern char** environ;

namespace harbrix::nfs {

namespace {

constexpr std::chrono::seconds limit{25};

struct Run {
    int code = -1;
    std::string errors;
};

/// Runs a tool with its errors read, and ends it when it takes too long.
Run run(std::vector<std::string> command) {
    Run result;
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return result;
    UniqueDescriptor readEnd(ends[0]);
    UniqueDescriptor writeEnd(ends[1]);
    std::vector<char*> arguments;
    for (std::string& part : command)
        arguments.push_back(part.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), STDERR_FILENO);
    pid_t child = 0;
    const int failure =
        posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    writeEnd.reset();
    if (failure != 0) {
        result.errors = std::strerror(failure);
        return result;
    }
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::array<char, 1024> buffer;
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd ready{readEnd.get(), POLLIN, 0};
        const int count = poll(&ready, 1, static_cast<int>(std::max<long>(left.count(), 0)));
        if (count < 0 && errno == EINTR)
            continue;
        if (count == 0) {
            kill(child, SIGKILL);
            result.errors = "no answer in time";
            break;
        }
        const ssize_t length = read(readEnd.get(), buffer.data(), buffer.size());
        if (length <= 0)
            break;
        result.errors.append(buffer.data(), static_cast<std::size_t>(length));
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    while (!result.errors.empty() && result.errors.back() == '\n')
        result.errors.pop_back();
    return result;
}

std::string without(const std::string& list, const std::string& item) {
    std::string padded = "," + list + ",";
    if (const std::size_t at = padded.find("," + item + ","); at != std::string::npos)
        padded.erase(at, item.size() + 1);
    return padded.size() > 2 ? padded.substr(1, padded.size() - 2) : std::string();
}

} // namespace

bool KernelClient::kernelKnowsNfs() const {
    std::ifstream list(fileSystems);
    for (std::string line; std::getline(list, line);)
        if (line.ends_with("\tnfs4"))
            return true;
    return false;
}

bool KernelClient::isAvailable(uid_t user) const {
    if (user != 0 || access(mountTool.c_str(), X_OK) != 0)
        return false;
    if (kernelKnowsNfs())
        return true;
    return access(loadTool.c_str(), X_OK) == 0 && run({loadTool, "-q", "nfsv4"}).code == 0 &&
           kernelKnowsNfs();
}

std::optional<std::string> KernelClient::mount(const Options& options) const {
    const auto attempt = [&](const std::string& list) {
        std::vector<std::string> command{mountTool, options.remote.source, options.mountPoint};
        if (!list.empty())
            command.insert(command.end(), {"-o", list});
        return run(std::move(command));
    };
    Run result = attempt(options.kernelOptions);
    // Root may use a reserved port after all, where the server insists on one.
    if (result.code != 0 && without(options.kernelOptions, "noresvport") != options.kernelOptions)
        if (Run second = attempt(without(options.kernelOptions, "noresvport")); second.code == 0)
            return std::nullopt;
    if (result.code == 0)
        return std::nullopt;
    return result.errors.empty() ? "mount.nfs4 failed" : result.errors;
}

} // namespace harbrix::nfs
