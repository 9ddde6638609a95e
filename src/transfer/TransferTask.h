#pragma once

#include "base/Scheduler.h"
#include "core/TransferDirection.h"

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace harbrix {

enum class TransferStatus { pending, running, paused, completed, failed, cancelled };
[[nodiscard]] QString rawValue(TransferDirection direction);
[[nodiscard]] QString rawValue(TransferStatus status);

/// One file of the queue: a plain value.
struct TransferTask {
    QUuid id;
    QUrl sourceURL;
    QUrl destinationURL; ///< the file to write, with its name
    TransferDirection direction = TransferDirection::upload;
    qint64 totalBytes = 0; ///< of the source at creation; 0 if unknown
    TransferStatus status = TransferStatus::pending;
    qint64 bytesTransferred = 0;
    std::optional<QString> errorMessage;
    std::optional<QDateTime> startDate;
    std::optional<QDateTime> endDate;

    bool operator==(const TransferTask&) const = default;

    /// Bytes per second from the start until `now`, also after the end; 0 where there is nothing to
    /// tell.
    [[nodiscard]] double speed(const QDateTime& now) const;
    /// "1.2 MB/s", or "--" below one byte per second.
    [[nodiscard]] QString speedText(const QDateTime& now, const QLocale& locale = QLocale()) const;
    /// The time that is left at this speed; 0 while not running.
    [[nodiscard]] Seconds eta(const QDateTime& now) const;
};

// What a row of the queue shows.

/// The share that is done, from 0 to 1; 0 for an unknown size.
[[nodiscard]] double transferredFraction(const TransferTask& task);
[[nodiscard]] QString statusText(const TransferTask& task);
/// "1.2 MB / 3 MB".
[[nodiscard]] QString sizesText(const TransferTask& task, const QLocale& locale = QLocale());
/// "ETA: 1h 5m" while running; nothing where no time can be told.
[[nodiscard]] std::optional<QString> etaText(const TransferTask& task, const QDateTime& now,
                                             const QLocale& locale = QLocale());

/// Whether the task is counted as active: running or waiting.
[[nodiscard]] bool isActive(const TransferTask& task);
/// Whether the task has ended, one way or another.
[[nodiscard]] bool isFinished(const TransferTask& task);

/// What the user can do with a row.
enum class TransferAction { pause, resume, retry, cancel };
/// The buttons of a row, in order.
[[nodiscard]] std::vector<TransferAction> availableActions(TransferStatus status);

} // namespace harbrix
