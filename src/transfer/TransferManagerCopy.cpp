#include "base/Worker.h"
#include "files/CacheStorage.h"
#include "files/FileUrl.h"
#include "transfer/FileCopy.h"
#include "transfer/TransferManager.h"

#include <QPointer>

#include <atomic>

// How TransferManager takes tasks in and copies them.

namespace harbrix {

/// What the main thread and the worker that copies tell each other.
struct RunningCopy {
    explicit RunningCopy(const QUuid& task) : id(task) {}

    const QUuid id;
    std::atomic<bool> stops = false;    ///< a flag is to be looked at
    std::atomic<qint64> copied = 0;     ///< bytes
    std::atomic<bool> isToldOf = false; ///< the main thread will read `copied`
};

namespace {

/// Stops the worker of a copy whose flow is abandoned, as when the queue goes away.
class StopsAtEnd {
public:
    explicit StopsAtEnd(std::shared_ptr<RunningCopy> running) : m_running(std::move(running)) {}
    StopsAtEnd(const StopsAtEnd&) = delete;
    StopsAtEnd& operator=(const StopsAtEnd&) = delete;
    ~StopsAtEnd() { m_running->stops = true; }

private:
    std::shared_ptr<RunningCopy> m_running;
};

} // namespace

void TransferManager::enqueueDownload(const QUrl& sourceURL, const QUrl& destinationDirectory) {
    m_flows.launch(add(sourceURL, destinationDirectory, TransferDirection::download));
}

void TransferManager::enqueueUpload(const QUrl& sourceURL, const QUrl& destinationDirectory) {
    m_flows.launch(add(sourceURL, destinationDirectory, TransferDirection::upload));
}

Task<void> TransferManager::add(QUrl sourceURL, QUrl destinationDirectory,
                                TransferDirection direction) {
    auto waiting = m_arrivals.turn();
    const auto turn = co_await waiting;
    auto looking = onWorker([path = nativePath(sourceURL)] { return readSourceAttributes(path); });
    const auto attributes = co_await looking;
    TransferTask task;
    task.id = QUuid::createUuid();
    task.sourceURL = sourceURL;
    task.destinationURL = childUrl(destinationDirectory, nativeName(sourceURL));
    task.direction = direction;
    task.totalBytes = attributes ? attributes->size : 0;
    m_tasks.push_back(std::move(task));
    emit changed();
    processQueue();
}

Task<TransferManager::CopyResult> TransferManager::copy(QUrl source, QUrl destination, QUuid id) {
    auto opening = onWorker([from = nativePath(source), to = nativePath(destination)] {
        return FileCopy::open(from, to);
    });
    auto opened = co_await opening;
    if (!opened)
        co_return std::unexpected(opened.error());
    m_running = std::make_shared<RunningCopy>(id);
    const StopsAtEnd stopsAtEnd(m_running);
    auto copying = copyChunks(*opened, m_running);
    auto outcome = co_await copying;
    if (outcome && *outcome == CopyOutcome::Cancelled)
        setStatus(id, TransferStatus::cancelled);
    m_running.reset();
    // The files are closed, and what is left of them removed, before another copy begins.
    auto closing = onWorker([files = *opened] { files->close(); });
    co_await closing;
    co_return outcome;
}

/// A worker copies until the source ends or a flag is to be looked at; it asks nobody in between,
/// since the way to the main thread and back takes a good part of the time of a chunk.
Task<TransferManager::CopyResult>
TransferManager::copyChunks(std::shared_ptr<FileCopy> files, std::shared_ptr<RunningCopy> running) {
    const QUuid id = running->id;
    while (true) {
        if (!m_cancellationFlags.value(id) && m_pauseFlags.value(id)) {
            auto pausing = waitWhilePaused(id);
            co_await pausing;
        }
        if (m_cancellationFlags.value(id))
            co_return CopyOutcome::Cancelled;
        running->stops = false;
        auto copying = onWorker([files, running, manager = QPointer(this)] {
            return files->run(chunkSize, [&](qint64 copied) {
                running->copied = copied;
                if (!running->isToldOf.exchange(true))
                    onMainThread([running, manager] {
                        running->isToldOf = false;
                        if (manager)
                            manager->setBytesTransferred(running->id, running->copied);
                    });
                return !running->stops;
            });
        });
        const auto isAtEnd = co_await copying;
        if (!isAtEnd)
            co_return std::unexpected(isAtEnd.error());
        if (*isAtEnd)
            break;
    }
    auto syncing = onWorker([files] { return files->sync(); });
    const auto synced = co_await syncing;
    if (!synced)
        co_return std::unexpected(synced.error());
    if (m_cancellationFlags.value(id))
        co_return CopyOutcome::Cancelled;
    auto finishing = onWorker([files] { return files->finish(); });
    const auto finished = co_await finishing;
    if (!finished)
        co_return std::unexpected(finished.error());
    co_return CopyOutcome::Finished;
}

void TransferManager::interrupt(const QUuid& id) {
    if (m_running && m_running->id == id)
        m_running->stops = true;
}

void TransferManager::setBytesTransferred(const QUuid& id, qint64 count) {
    TransferTask* task = find(id);
    if (!task || task->bytesTransferred == count)
        return;
    task->bytesTransferred = count;
    emit changed();
}

Task<void> TransferManager::waitWhilePaused(QUuid id) {
    setStatus(id, TransferStatus::paused);
    while (m_pauseFlags.value(id) && !m_cancellationFlags.value(id)) {
        auto pause = m_scheduler.pause(std::chrono::milliseconds(100));
        co_await pause;
    }
    if (!m_cancellationFlags.value(id))
        setStatus(id, TransferStatus::running);
}

} // namespace harbrix
