#include "transfer/TransferManager.h"

#include "files/FileUrl.h"
#include "files/RecentFilesTracker.h"

#include <QtGlobal>

#include <algorithm>

namespace harbrix {

TransferManager::TransferManager(RecentFilesTracker& recentFiles, Scheduler& scheduler,
                                 NotifyFinished notifyFinished)
    : m_recentFiles(recentFiles), m_scheduler(scheduler),
      m_notifyFinished(std::move(notifyFinished)) {}

TransferManager::~TransferManager() = default;

TransferTask* TransferManager::find(const QUuid& id) {
    const auto found = std::ranges::find(m_tasks, id, &TransferTask::id);
    return found == m_tasks.end() ? nullptr : &*found;
}

bool TransferManager::hasUnfinished() const {
    return !std::ranges::all_of(m_tasks, isFinished);
}

void TransferManager::setStatus(const QUuid& id, TransferStatus status) {
    TransferTask* task = find(id);
    if (!task || task->status == status)
        return;
    task->status = status;
    emit changed();
}

void TransferManager::pause(const QUuid& id) {
    m_pauseFlags[id] = true;
    interrupt(id);
}

void TransferManager::resume(const QUuid& id) {
    m_pauseFlags[id] = false;
    const TransferTask* task = find(id);
    if (task && task->status == TransferStatus::paused) {
        setStatus(id, TransferStatus::pending);
        processQueue();
    }
}

void TransferManager::cancel(const QUuid& id) {
    m_cancellationFlags[id] = true;
    interrupt(id);
    const TransferTask* task = find(id);
    if (task && task->status == TransferStatus::pending)
        setStatus(id, TransferStatus::cancelled);
}

void TransferManager::retry(const QUuid& id) {
    TransferTask* task = find(id);
    if (!task)
        return;
    task->status = TransferStatus::pending;
    task->bytesTransferred = 0;
    task->errorMessage.reset();
    task->startDate.reset();
    task->endDate.reset();
    m_cancellationFlags[id] = false;
    m_pauseFlags[id] = false;
    emit changed();
    processQueue();
}

void TransferManager::clearCompleted() {
    if (std::erase_if(m_tasks, isFinished) > 0)
        emit changed();
}

void TransferManager::processQueue() {
    if (m_isProcessing)
        return;
    m_isProcessing = true;
    emit changed();
    m_flows.launch(runQueue());
}

Task<void> TransferManager::runQueue() {
    // The caller goes on first: a row that was just added is seen waiting before it runs.
    auto nextTurn = m_scheduler.pause(Seconds(0));
    co_await nextTurn;
    while (true) {
        const auto running =
            std::ranges::count(m_tasks, TransferStatus::running, &TransferTask::status);
        const auto next =
            std::ranges::find(m_tasks, TransferStatus::pending, &TransferTask::status);
        if (running >= maxConcurrent || next == m_tasks.end())
            break;
        auto transfer = run(next->id);
        co_await transfer;
    }
    m_isProcessing = false;
    emit changed();
}

Task<void> TransferManager::run(QUuid id) {
    TransferTask* task = find(id);
    if (!task)
        co_return;
    task->status = TransferStatus::running;
    task->startDate = m_scheduler.wallClock();
    m_cancellationFlags[id] = false;
    m_pauseFlags[id] = false;
    const QUrl source = task->sourceURL;
    const QUrl destination = task->destinationURL;
    emit changed();
    auto copying = copy(source, destination, id);
    const auto copied = co_await copying;
    if (!copied)
        fail(id, copied.error().description);
    else if (*copied == CopyOutcome::Finished)
        complete(id);
    processQueue();
}

void TransferManager::complete(const QUuid& id) {
    TransferTask* task = find(id);
    if (!task)
        return;
    task->status = TransferStatus::completed;
    task->bytesTransferred = task->totalBytes;
    task->endDate = m_scheduler.wallClock();
    if (__builtin_add_overflow(m_totalBytesTransferred, task->totalBytes, &m_totalBytesTransferred))
        qFatal("The number of bytes transferred exceeds 64 bits");
    const TransferTask done = *task;
    emit changed();
    if (done.direction == TransferDirection::download)
        m_recentFiles.record(done.destinationURL, lastPathComponent(done.destinationURL));
    if (m_notifyFinished)
        m_notifyFinished(lastPathComponent(done.sourceURL), done.direction);
}

void TransferManager::fail(const QUuid& id, const QString& message) {
    TransferTask* task = find(id);
    if (!task || task->status == TransferStatus::cancelled)
        return;
    task->status = TransferStatus::failed;
    task->errorMessage = message;
    task->endDate = m_scheduler.wallClock();
    emit changed();
}

} // namespace harbrix
