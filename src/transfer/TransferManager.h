#pragma once

#include "base/Result.h"
#include "base/TaskScope.h"
#include "files/SerialQueue.h"
#include "transfer/TransferTask.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>

namespace harbrix {

class FileCopy;
class RecentFilesTracker;
struct RunningCopy;

/// A queue that copies single files between the local disk and a mounted share, one at a time, in
/// the order of arrival. It lives in memory only. Main thread: all state is read and written there.
/// A worker copies; pause and cancel take effect between two of its chunks.
///
/// Destroying it abandons the running copy and removes its unfinished destination.
class TransferManager : public QObject {
    Q_OBJECT

public:
    static constexpr int maxConcurrent = 3;
    static constexpr std::size_t chunkSize = 1'048'576; ///< bytes

    /// Tells the user of a finished transfer, by the name of the source.
    using NotifyFinished = std::function<void(const QString& fileName, TransferDirection)>;

    TransferManager(RecentFilesTracker& recentFiles, Scheduler& scheduler,
                    NotifyFinished notifyFinished);
    ~TransferManager() override;

    /// Adds a task once the size of the source is known; the order of the calls is kept. An
    /// existing destination is replaced.
    void enqueueDownload(const QUrl& sourceURL, const QUrl& destinationDirectory);
    void enqueueUpload(const QUrl& sourceURL, const QUrl& destinationDirectory);

    /// Takes effect at the next chunk of a running copy; no effect on a task that waits.
    void pause(const QUuid& id);
    void resume(const QUuid& id);
    /// A task that waits is cancelled at once, a copy at its next chunk.
    void cancel(const QUuid& id);
    /// Puts the task back to its start, whatever its status.
    void retry(const QUuid& id);
    void clearCompleted();
    void processQueue();

    [[nodiscard]] const std::vector<TransferTask>& tasks() const { return m_tasks; }
    [[nodiscard]] bool isProcessing() const { return m_isProcessing; }
    /// Whether a task waits, runs or is paused.
    [[nodiscard]] bool hasUnfinished() const;
    [[nodiscard]] qint64 totalBytesTransferred() const { return m_totalBytesTransferred; }
    /// Ready once nothing is under way.
    [[nodiscard]] Completion<std::monostate> whenIdle() { return m_flows.whenIdle(); }

signals:
    /// tasks(), isProcessing() or totalBytesTransferred() has changed.
    void changed();

private:
    enum class CopyOutcome { Finished, Cancelled };
    using CopyResult = Result<CopyOutcome, SystemError>;

    Task<void> add(QUrl sourceURL, QUrl destinationDirectory, TransferDirection direction);
    Task<void> runQueue();
    Task<void> run(QUuid id);
    Task<CopyResult> copy(QUrl source, QUrl destination, QUuid id);
    Task<CopyResult> copyChunks(std::shared_ptr<FileCopy> files,
                                std::shared_ptr<RunningCopy> running);
    Task<void> waitWhilePaused(QUuid id);
    void complete(const QUuid& id);
    void fail(const QUuid& id, const QString& message);

    [[nodiscard]] TransferTask* find(const QUuid& id);
    void setStatus(const QUuid& id, TransferStatus status);
    void setBytesTransferred(const QUuid& id, qint64 count);
    /// Brings the copy of the task, if it runs, to where the flags are looked at.
    void interrupt(const QUuid& id);

    RecentFilesTracker& m_recentFiles;
    Scheduler& m_scheduler;
    NotifyFinished m_notifyFinished;
    std::vector<TransferTask> m_tasks;
    bool m_isProcessing = false;
    qint64 m_totalBytesTransferred = 0;
    QHash<QUuid, bool> m_cancellationFlags;
    QHash<QUuid, bool> m_pauseFlags;
    std::shared_ptr<RunningCopy> m_running;
    TaskScope m_flows;
    // Goes before the flows do, so that none is let through while they are abandoned.
    SerialQueue m_arrivals;
};

} // namespace harbrix
