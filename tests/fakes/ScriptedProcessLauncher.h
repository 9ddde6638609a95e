#pragma once

#include "base/Scheduler.h"
#include "platform/ChildProcess.h"

#include <csignal>
#include <map>
#include <mutex>
#include <vector>

namespace harbrix {

/// A child as the test sees it: how it was started, what it was fed, and when and how it ends.
/// Outlives the ChildProcess that the program holds. Main thread, but for the input.
class ScriptedChild : public std::enable_shared_from_this<ScriptedChild> {
public:
    ScriptedChild(Scheduler& scheduler, QString path, QStringList words,
                  ProcessLauncher::Input inputKind)
        : executablePath(std::move(path)), arguments(std::move(words)), input(inputKind),
          m_scheduler(scheduler) {}

    const QString executablePath;
    const QStringList arguments;
    const ProcessLauncher::Input input;

    /// What SIGTERM does to it: ends it, or nothing at all.
    bool heedsTermination = true;

    /// Ends it now; the program is told in a later turn of the scheduler.
    void exit(int code, const QByteArray& output = {}, const QByteArray& error = {}) {
        m_output += output;
        m_error += error;
        end({ChildProcess::End::Reason::Exit, code});
    }
    void dieBySignal(int signal) { end({ChildProcess::End::Reason::UncaughtSignal, signal}); }
    /// Ends it like exit(), `delay` from now, unless it has ended by then.
    void exitAfter(Seconds delay, int code, const QByteArray& output = {},
                   const QByteArray& error = {}) {
        m_exit = m_scheduler.after(delay, [this, code, output, error] {
            if (isRunning())
                exit(code, output, error);
        });
    }

    [[nodiscard]] bool isRunning() const { return !m_end; }
    [[nodiscard]] int terminations() const { return m_terminations; }
    /// All that was written to it; nothing if writeInput() was not called.
    [[nodiscard]] std::optional<QByteArray> writtenInput() const {
        const std::scoped_lock lock(m_inputMutex);
        return m_writtenInput;
    }
    /// Whether the program has let go of its ChildProcess.
    [[nodiscard]] bool isDropped() const { return m_dropped; }

private:
    friend class ScriptedProcess;

    void end(ChildProcess::End how) {
        if (m_end)
            return;
        m_end = how;
        tellEnd();
    }
    void tellEnd() {
        if (!m_end || !m_handler)
            return;
        m_scheduler.post([self = weak_from_this()] {
            const auto child = self.lock();
            if (!child || !child->m_handler)
                return;
            const auto handler = std::exchange(child->m_handler, nullptr);
            handler(*child->m_end);
        });
    }

    Scheduler& m_scheduler;
    std::optional<ChildProcess::End> m_end;
    std::function<void(ChildProcess::End)> m_handler;
    QByteArray m_output;
    QByteArray m_error;
    Timer m_exit;
    int m_terminations = 0;
    bool m_dropped = false;
    mutable std::mutex m_inputMutex;
    std::optional<QByteArray> m_writtenInput;
};

/// The program's side of a ScriptedChild.
class ScriptedProcess final : public ChildProcess {
public:
    explicit ScriptedProcess(std::shared_ptr<ScriptedChild> child) : m_child(std::move(child)) {}
    ~ScriptedProcess() override {
        m_child->m_handler = nullptr;
        m_child->m_dropped = true;
    }

    [[nodiscard]] bool isRunning() const override { return m_child->isRunning(); }
    void terminate() override {
        if (!m_child->isRunning())
            return;
        ++m_child->m_terminations;
        if (m_child->heedsTermination)
            m_child->dieBySignal(SIGTERM);
    }
    void writeInput(const QByteArray& data) override {
        const std::scoped_lock lock(m_child->m_inputMutex);
        m_child->m_writtenInput = data;
    }
    void setTerminationHandler(std::function<void(End)> handler) override {
        m_child->m_handler = std::move(handler);
        m_child->tellEnd();
    }
    [[nodiscard]] QByteArray readOutput() override { return std::exchange(m_child->m_output, {}); }
    [[nodiscard]] QByteArray readError() override { return std::exchange(m_child->m_error, {}); }

private:
    std::shared_ptr<ScriptedChild> m_child;
};

/// Starts no process: the test plays each child. Ends are told through the scheduler.
class ScriptedProcessLauncher final : public ProcessLauncher {
public:
    explicit ScriptedProcessLauncher(Scheduler& scheduler) : m_scheduler(scheduler) {}

    /// Called with each child as it starts, e.g. to end it at once; without it the child runs on.
    std::function<void(ScriptedChild&)> onLaunch;
    /// Programs that cannot be started, by path.
    std::map<QString, SystemError> launchErrors;

    [[nodiscard]] const std::vector<std::shared_ptr<ScriptedChild>>& children() const {
        return m_children;
    }
    /// The child that was started last; there must be one.
    [[nodiscard]] ScriptedChild& latest() const { return *m_children.back(); }
    /// Each start as one line, "path word word".
    [[nodiscard]] QStringList commandLines() const {
        QStringList lines;
        for (const auto& child : m_children)
            lines << (QStringList(child->executablePath) + child->arguments).join(QLatin1Char(' '));
        return lines;
    }

    [[nodiscard]] Result<std::unique_ptr<ChildProcess>, SystemError>
    launch(const QString& executablePath, const QStringList& arguments, Input input) override {
        if (const auto error = launchErrors.find(executablePath); error != launchErrors.end())
            return std::unexpected(error->second);
        const auto child =
            std::make_shared<ScriptedChild>(m_scheduler, executablePath, arguments, input);
        m_children.push_back(child);
        if (onLaunch)
            onLaunch(*child);
        return std::make_unique<ScriptedProcess>(child);
    }

private:
    Scheduler& m_scheduler;
    std::vector<std::shared_ptr<ScriptedChild>> m_children;
};

} // namespace harbrix
