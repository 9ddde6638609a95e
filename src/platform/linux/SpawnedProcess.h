#pragma once

#include "base/UniqueDescriptor.h"
#include "platform/ChildProcess.h"

#include <QSocketNotifier>

#include <sys/types.h>

namespace harbrix {

/// Waits for the end of one child and reaps it, also when nobody asks any more: an abandoned one
/// stays with the application until then, so that no zombie is left. Lives on the main thread.
class ChildExit final : public QObject {
public:
    explicit ChildExit(std::shared_ptr<const UniqueDescriptor> pidfd);

    [[nodiscard]] bool isRunning() const;
    void signalChild(int signal) const;
    void setHandler(std::function<void(ChildProcess::End)> handler);
    /// Drops the handler; the object deletes itself once the child is reaped. Any thread.
    void abandon();

private:
    void reap();
    void tell();
    void letGo();

    std::shared_ptr<const UniqueDescriptor> m_pidfd;
    QSocketNotifier m_notifier;
    std::optional<ChildProcess::End> m_end;
    std::function<void(ChildProcess::End)> m_handler;
};

/// A child of posix_spawn(3). It may be dropped on any thread.
class SpawnedProcess final : public ChildProcess {
public:
    /// The program's ends of the pipes, non-blocking; no input where the child inherits it.
    struct Pipes {
        UniqueDescriptor input;
        UniqueDescriptor output;
        UniqueDescriptor error;
    };

    SpawnedProcess(UniqueDescriptor pidfd, Pipes pipes);
    ~SpawnedProcess() override;

    [[nodiscard]] bool isRunning() const override;
    void terminate() override;
    void writeInput(const QByteArray& data) override;
    void setTerminationHandler(std::function<void(End)> handler) override;
    [[nodiscard]] QByteArray readOutput() override;
    [[nodiscard]] QByteArray readError() override;

private:
    std::shared_ptr<const UniqueDescriptor> m_pidfd;
    Pipes m_pipes;
    ChildExit* m_exit; ///< deletes itself, see ChildExit::abandon()
};

} // namespace harbrix
