#include "base/Worker.h"
#include "files/CacheStorage.h"
#include "files/FileUrl.h"
#include "transfer/FileCopy.h"
#include "transfer/TransferManager.h"

// How TransferManager takes tasks in and copies them.

namespace harbrix {
namespace {

/// Removes the destination of a copy that does not come to its end, as when the queue goes away.
class UnfinishedCopy {
public:
    explicit UnfinishedCopy(std::shared_ptr<FileCopy> files) : m_files(std::move(files)) {}
    UnfinishedCopy(const UnfinishedCopy&) = delete;
    UnfinishedCopy& operator=(const UnfinishedCopy&) = delete;
    ~UnfinishedCopy() {
        if (m_files)
            workerPool().start([files = std::move(m_files)] { files->removeDestination(); });
    }
    void ended() { m_files.reset(); }

private:
    std::shared_ptr<FileCopy> m_files;
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
    UnfinishedCopy unfinished(*opened);
    auto copying = copyChunks(*opened, id);
    auto outcome = co_await copying;
    if (outcome && *outcome == CopyOutcome::Cancelled) {
        setStatus(id, TransferStatus::cancelled);
        auto removing = onWorker([files = *opened] { files->removeDestination(); });
        co_await removing;
    }
    unfinished.ended();
    co_return outcome;
}

/// While a chunk is written the next one is read, so that the time between two chunks is not lost.
Task<TransferManager::CopyResult> TransferManager::copyChunks(std::shared_ptr<FileCopy> files,
                                                              QUuid id) {
    qint64 count = 0;
    auto reading = onWorker([files] { return files->read(chunkSize); });
    while (true) {
        if (!m_cancellationFlags.value(id) && m_pauseFlags.value(id)) {
            auto pausing = waitWhilePaused(id);
            co_await pausing;
        }
        if (m_cancellationFlags.value(id))
            co_return CopyOutcome::Cancelled;
        auto chunk = co_await reading;
        if (!chunk)
            co_return std::unexpected(chunk.error());
        if (chunk->isEmpty())
            break;
        reading = onWorker([files] { return files->read(chunkSize); });
        const qsizetype size = chunk->size();
        auto writing = onWorker([files, bytes = std::move(*chunk)] { return files->write(bytes); });
        const auto written = co_await writing;
        if (!written)
            co_return std::unexpected(written.error());
        count += size;
        if (TransferTask* task = find(id)) {
            task->bytesTransferred = count;
            emit changed();
        }
    }
    auto closing = onWorker([files] { return files->close(); });
    const auto closed = co_await closing;
    if (!closed)
        co_return std::unexpected(closed.error());
    co_return CopyOutcome::Finished;
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
