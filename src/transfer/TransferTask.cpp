#include "transfer/TransferTask.h"

#include "base/ByteCount.h"
#include "base/TimeText.h"
#include "services/Text.h"

#include <algorithm>
#include <limits>

namespace harbrix {

QString rawValue(TransferDirection direction) {
    return direction == TransferDirection::upload ? QStringLiteral("upload")
                                                  : QStringLiteral("download");
}

QString rawValue(TransferStatus status) {
    switch (status) {
    case TransferStatus::pending:
        return QStringLiteral("pending");
    case TransferStatus::running:
        return QStringLiteral("running");
    case TransferStatus::paused:
        return QStringLiteral("paused");
    case TransferStatus::completed:
        return QStringLiteral("completed");
    case TransferStatus::failed:
        return QStringLiteral("failed");
    case TransferStatus::cancelled:
        return QStringLiteral("cancelled");
    }
    return {};
}

double TransferTask::speed(const QDateTime& now) const {
    const bool counts = status == TransferStatus::running || status == TransferStatus::completed;
    if (!startDate || !counts || bytesTransferred < 1)
        return 0.0;
    const double seconds = static_cast<double>(startDate->msecsTo(now)) / 1000.0;
    return seconds > 0.0 ? static_cast<double>(bytesTransferred) / seconds : 0.0;
}

QString TransferTask::speedText(const QDateTime& now, const QLocale& locale) const {
    // Above 2^63 the conversion would be undefined; the text is none the wiser for more.
    constexpr double most = 9.2e18;
    const auto whole = static_cast<qint64>(std::min(speed(now), most));
    if (whole < 1)
        return QStringLiteral("--");
    return byteCountText(whole, locale) + QStringLiteral("/s");
}

Seconds TransferTask::eta(const QDateTime& now) const {
    const double current = speed(now);
    if (status != TransferStatus::running || current <= 0.0)
        return Seconds(0.0);
    return Seconds(static_cast<double>(totalBytes - bytesTransferred) / current);
}

double transferredFraction(const TransferTask& task) {
    if (task.totalBytes < 1)
        return 0.0;
    return std::min(1.0, static_cast<double>(task.bytesTransferred) /
                             static_cast<double>(task.totalBytes));
}

QString statusText(const TransferTask& task) {
    switch (task.status) {
    case TransferStatus::pending:
        return text("transfer.queued");
    case TransferStatus::running:
        return QStringLiteral("%1%").arg(static_cast<int>(transferredFraction(task) * 100.0));
    case TransferStatus::paused:
        return text("transfer.paused");
    case TransferStatus::completed:
        return text("transfer.done");
    case TransferStatus::failed:
        return text("transfer.failed");
    case TransferStatus::cancelled:
        return text("transfer.cancelled");
    }
    return {};
}

QString sizesText(const TransferTask& task, const QLocale& locale) {
    return byteCountText(task.bytesTransferred, locale) + QStringLiteral(" / ") +
           byteCountText(task.totalBytes, locale);
}

std::optional<QString> etaText(const TransferTask& task, const QDateTime& now,
                               const QLocale& locale) {
    const Seconds left = task.eta(now);
    if (left <= Seconds(0.0))
        return std::nullopt;
    return formatted("transfer.eta", {durationText(left, locale)});
}

bool isActive(const TransferTask& task) {
    return task.status == TransferStatus::running || task.status == TransferStatus::pending;
}

bool isFinished(const TransferTask& task) {
    return task.status == TransferStatus::completed || task.status == TransferStatus::cancelled ||
           task.status == TransferStatus::failed;
}

std::vector<TransferAction> availableActions(TransferStatus status) {
    switch (status) {
    case TransferStatus::running:
        return {TransferAction::pause, TransferAction::cancel};
    case TransferStatus::paused:
        return {TransferAction::resume, TransferAction::cancel};
    case TransferStatus::failed:
        return {TransferAction::retry, TransferAction::cancel};
    case TransferStatus::pending:
    case TransferStatus::completed:
    case TransferStatus::cancelled:
        return {};
    }
    return {};
}

} // namespace harbrix
