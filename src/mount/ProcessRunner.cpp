#include "base/Worker.h"
#include "mount/MountEngine.h"
#include "platform/ChildProcess.h"

#include <QStringDecoder>
#include <QThread>

namespace harbrix {

namespace {

/// The text, or nothing at all where a single byte is wrong.
QString decodeOutput(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString() : text;
}

/// A flow that is abandoned while a worker feeds the child leaves the child to that worker, but it
/// belongs to the main thread.
void dropOnMainThread(ChildProcess* child) {
    QCoreApplication* application = QCoreApplication::instance();
    if (!application || application->thread() == QThread::currentThread())
        delete child;
    else
        QMetaObject::invokeMethod(
            application, [child] { delete child; }, Qt::QueuedConnection);
}

} // namespace

Task<Result<MountEngine::ProcessResult>>
MountEngine::executeProcess(QString executablePath, QStringList arguments, Seconds timeout,
                            std::optional<QByteArray> stdinData) {
    const auto input =
        stdinData ? ProcessLauncher::Input::Piped : ProcessLauncher::Input::Inherited;
    auto launched = m_launcher.launch(executablePath, arguments, input);
    if (!launched)
        co_return std::unexpected(HarbrixError::mountFailed("Failed to launch " + executablePath +
                                                            ": " + launched.error().description));
    const std::shared_ptr<ChildProcess> child(launched->release(), dropOnMainThread);

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
    co_return ProcessResult{end.status, decodeOutput(output), decodeOutput(error)};
}

} // namespace harbrix
