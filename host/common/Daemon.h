#pragma once

#include "base/UniqueDescriptor.h"

#include <string_view>

namespace harbrix {

/// The child's side of a tool that turns into a daemon once its mount is live (daemon(7), the
/// classic kind). The parent stays in the foreground until the child has said how it went, so that
/// an exit code of 0 means a live mount.
class Daemon {
public:
    /// Forks. Only the child returns: in a session of its own, in "/", with standard streams on
    /// /dev/null, SIGPIPE ignored. The parent waits for the child's word, prints "NAME: MESSAGE" if
    /// it was a bad one, and exits with the child's code. Call it before any thread is started.
    [[nodiscard]] static Daemon detach(std::string_view programName);

    /// Lets the parent exit with 0. False if the parent is gone (it was killed by whoever got tired
    /// of waiting): the mount is then unwanted and the caller takes it down.
    [[nodiscard]] bool ready();

    /// Hands message and exit code to the parent and ends this process without running destructors.
    [[noreturn]] void fail(std::string_view message, int exitCode);

private:
    explicit Daemon(UniqueDescriptor wordPipe) : m_wordPipe(std::move(wordPipe)) {}

    UniqueDescriptor m_wordPipe;
};

} // namespace harbrix
