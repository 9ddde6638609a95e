#include "base/Utf8.h"
#include "base/Worker.h"
#include "mount/MountEngine.h"
#include "platform/ChildProcess.h"

namespace harbrix {

Task<Result<MountEngine::ProcessResult>>
MountEngine::executeProcess(QString executablePath, QStringList arguments, Seconds timeout,
                            std::optional<QByteArray> stdinData) {
    const auto input =
        stdinData ? ProcessLauncher::Input::Piped : ProcessLauncher::Input::Inherited;
    auto launched = m_launcher.launch(executablePath, arguments, input);
    if (!launched)
        co_return std::unexpected(HarbrixError::mountFailed("Failed to launch " + executablePath +
                                                            ": " + launched.error().description));
    // Shared with the worker that feeds it, which may outlive an abandoned flow.
    const std::shared_ptr<ChildProcess> child = std::move(*launched);

    // The limit starts to run only after the input is written, and the end is asked for last.
    if (stdinData) {
        auto write = onWorker([child, data = *stdinData] { child->writeInput(data); });
        co_await write;
    }
    Timer watchdog = m_scheduler.after(timeout, [child] {
        if (child->isRunning())
            child->terminate();
    });
    Completion<ChildProcess::End> ended;
    child->setTerminationHandler([tell = ended.resolver()](ChildProcess::End end) { tell(end); });
    const ChildProcess::End end = co_await ended;

    watchdog.cancel();
    const QByteArray output = child->readOutput();
    const QByteArray error = child->readError();
    if (end.reason == ChildProcess::End::Reason::UncaughtSignal)
        co_return std::unexpected(
            HarbrixError::timeout("Process " + executablePath + " timed out after " +
                                  QString::number(static_cast<qint64>(timeout.count())) + "s"));
    co_return ProcessResult{end.status, decodeUtf8(output).value_or(QString()),
                            decodeUtf8(error).value_or(QString())};
}

} // namespace harbrix
