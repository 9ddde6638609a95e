#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <memory>

namespace harbrix {

/// A child that was started, with pipes on its standard output and error. Main thread only, but for
/// what is marked. Destroying the object lets the child run on and reaps it when it ends.
class ChildProcess {
public:
    /// How a child ended.
    struct End {
        enum class Reason { Exit, UncaughtSignal };
        Reason reason = Reason::Exit;
        int status = 0; ///< the exit code, or the signal's number
    };

    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    virtual ~ChildProcess() = default;

    [[nodiscard]] virtual bool isRunning() const = 0;
    /// Sends SIGTERM, if the child still runs.
    virtual void terminate() = 0;
    /// Writes all of it to the child's standard input, then closes that. Blocks for as long as the
    /// child does not read; a child that is gone or has closed its input ends it (no SIGPIPE). Any
    /// thread.
    virtual void writeInput(const QByteArray& data) = 0;
    /// Called once, in a later turn of the event loop, after the child has ended; also when it had
    /// ended before this call.
    virtual void setTerminationHandler(std::function<void(End)> handler) = 0;
    /// After the end: everything that lies in the pipe, without waiting for others that may still
    /// hold its other end; closes it.
    [[nodiscard]] virtual QByteArray readOutput() = 0;
    [[nodiscard]] virtual QByteArray readError() = 0;
};

/// Starts children.
class ProcessLauncher {
public:
    enum class Input {
        Inherited, ///< the child shares this program's standard input
        Piped      ///< writeInput() reaches it
    };

    ProcessLauncher() = default;
    ProcessLauncher(const ProcessLauncher&) = delete;
    ProcessLauncher& operator=(const ProcessLauncher&) = delete;
    virtual ~ProcessLauncher() = default;

    /// Starts the program, or says why it could not be started; nothing is left open then.
    /// Descriptors other than the standard streams are not inherited; signals stand at their
    /// defaults.
    [[nodiscard]] virtual Result<std::unique_ptr<ChildProcess>, SystemError>
    launch(const QString& executablePath, const QStringList& arguments, Input input) = 0;

    /// posix_spawn(3) with pidfd_open(2) for the end.
    [[nodiscard]] static std::unique_ptr<ProcessLauncher> create();
};

} // namespace harbrix
