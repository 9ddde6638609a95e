#include "platform/linux/SpawnedProcess.h"

#include <QFile>

extern "C" {
#include <sys/pidfd.h>
}
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace harbrix {

namespace {

struct Pipe {
    UniqueDescriptor readEnd;
    UniqueDescriptor writeEnd;
};

/// Lifts the descriptor above the standard streams, which the child's are about to replace.
bool lift(UniqueDescriptor& descriptor) {
    if (descriptor.get() > STDERR_FILENO)
        return true;
    descriptor.reset(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    return static_cast<bool>(descriptor);
}

std::optional<Pipe> makePipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    Pipe pipe{UniqueDescriptor(ends[0]), UniqueDescriptor(ends[1])};
    if (!lift(pipe.readEnd) || !lift(pipe.writeEnd))
        return std::nullopt;
    return pipe;
}

void makeNonBlocking(const UniqueDescriptor& descriptor) {
    // The flag belongs to our end alone: the child's end is an open file of its own.
    ::fcntl(descriptor.get(), F_SETFL, ::fcntl(descriptor.get(), F_GETFL) | O_NONBLOCK);
}

class SpawnSettings {
public:
    SpawnSettings() {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawnattr_init(&attributes);
        sigset_t signalSet;
        ::sigfillset(&signalSet);
        ::posix_spawnattr_setsigdefault(&attributes, &signalSet);
        ::sigemptyset(&signalSet);
        ::posix_spawnattr_setsigmask(&attributes, &signalSet);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions = {};
    posix_spawnattr_t attributes = {};
};

class PosixLauncher final : public ProcessLauncher {
public:
    [[nodiscard]] Result<std::unique_ptr<ChildProcess>, SystemError>
    launch(const QString& executablePath, const QStringList& arguments, Input input) override;

private:
    static Result<UniqueDescriptor, SystemError> spawn(const QString& executablePath,
                                                       const QStringList& arguments,
                                                       const SpawnSettings& settings);
};

Result<std::unique_ptr<ChildProcess>, SystemError>
PosixLauncher::launch(const QString& executablePath, const QStringList& arguments, Input input) {
    auto output = makePipe();
    auto error = output ? makePipe() : std::nullopt;
    auto inputPipe = error && input == Input::Piped ? makePipe() : std::nullopt;
    if (!output || !error || (input == Input::Piped && !inputPipe))
        return std::unexpected(systemError(errno));

    SpawnSettings settings;
    if (inputPipe)
        ::posix_spawn_file_actions_adddup2(&settings.actions, inputPipe->readEnd.get(),
                                           STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&settings.actions, output->writeEnd.get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&settings.actions, error->writeEnd.get(), STDERR_FILENO);
    // A library may have opened something without close-on-exec.
    ::posix_spawn_file_actions_addclosefrom_np(&settings.actions, STDERR_FILENO + 1);

    auto pidfd = spawn(executablePath, arguments, settings);
    if (!pidfd)
        return std::unexpected(pidfd.error());

    SpawnedProcess::Pipes pipes;
    pipes.output = std::move(output->readEnd);
    pipes.error = std::move(error->readEnd);
    makeNonBlocking(pipes.output);
    makeNonBlocking(pipes.error);
    if (inputPipe) {
        pipes.input = std::move(inputPipe->writeEnd);
        makeNonBlocking(pipes.input);
    }
    return std::make_unique<SpawnedProcess>(std::move(*pidfd), std::move(pipes));
}

Result<UniqueDescriptor, SystemError> PosixLauncher::spawn(const QString& executablePath,
                                                           const QStringList& arguments,
                                                           const SpawnSettings& settings) {
    std::vector<QByteArray> words{QFile::encodeName(executablePath)};
    for (const QString& argument : arguments)
        words.push_back(argument.toUtf8());
    std::vector<char*> vector;
    for (QByteArray& word : words) {
        // The child would see such a word cut short.
        if (word.contains('\0'))
            return std::unexpected(systemError(EINVAL));
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);

    pid_t child = -1;
    const int failed = ::posix_spawn(&child, vector.front(), &settings.actions,
                                     &settings.attributes, vector.data(), environ);
    if (failed != 0)
        return std::unexpected(systemError(failed));
    UniqueDescriptor pidfd(::pidfd_open(child, 0));
    if (!pidfd) {
        // Nobody could follow this child, so it must not go on.
        const int reason = errno;
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        return std::unexpected(systemError(reason));
    }
    return pidfd;
}

} // namespace

std::unique_ptr<ProcessLauncher> ProcessLauncher::create() {
    return std::make_unique<PosixLauncher>();
}

} // namespace harbrix
