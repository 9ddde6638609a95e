#include "services/CrashReporter.h"

#include "base/Json.h"
#include "base/Worker.h"
#include "platform/AtomicFile.h"
#include "services/CrashHandlers.h"
#include "services/CrashReport.h"
#include "services/FrameSymbols.h"
#include "services/LogManager.h"

#include <QDir>
#include <QFile>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace harbrix {
namespace {

QStringList reportFiles(const QString& directory) {
    const QDir folder(directory);
    QStringList paths;
    for (const QString& name :
         folder.entryList({QStringLiteral("*.") + QLatin1String(crashReportFileExtension)},
                          QDir::Files | QDir::Hidden))
        paths << folder.filePath(name);
    return paths;
}

Result<CrashReport, SystemError> readReport(const QString& path) {
    const auto contents = readFile(path);
    if (!contents)
        return std::unexpected(contents.error());
    return decodeCrashReport(*contents);
}

/// The report with what a dying process had better not look up. One that stays, for want of a
/// server, keeps that: what its frames lie in may be replaced any day.
Result<CrashReport, SystemError> readWithSymbols(const QString& path, const QString& home) {
    auto report = readReport(path);
    if (!report)
        return report;
    const FrameOrigin origin{.executable = QCoreApplication::applicationFilePath(),
                             .homeDirectory = home,
                             .time = parseIso8601(report->timestamp).value_or(QDateTime()),
                             .isFromSignal = report->exceptionType == QLatin1String("Signal")};
    const QStringList frames = withSymbols(report->stackTrace, origin);
    if (frames == report->stackTrace)
        return report;
    report->stackTrace = frames;
    (void) replaceFile(path, encodeCrashReport(*report)); // else the old one stays as it is
    return report;
}

} // namespace

CrashReporter::CrashReporter(const QString& applicationSupport, QString homeDirectory)
    : m_reportDirectory(applicationSupport + QStringLiteral("/Harbrix/Crashes")),
      m_homeDirectory(std::move(homeDirectory)) {
    QDir().mkpath(m_reportDirectory);
}

void CrashReporter::startMonitoring() {
    if (m_isMonitoring)
        return;
    m_isMonitoring = true;
    installCrashHandlers(m_reportDirectory, m_homeDirectory);
    log(LogLevel::info, QStringLiteral("CrashReporter monitoring started"), LogCategory::system);
    m_flows.launch(sendPendingReports());
}

Task<void> CrashReporter::sendPendingReports() {
    auto list = onWorker([directory = m_reportDirectory] { return reportFiles(directory); });
    const QStringList paths = co_await list;
    for (const QString& path : paths) {
        auto sending = sendReport(path);
        co_await sending;
    }
    m_network.reset();
}

Task<void> CrashReporter::sendReport(QString path) {
    auto reading = onWorker([path, home = m_homeDirectory] { return readWithSymbols(path, home); });
    const auto report = co_await reading;
    const auto remove = [path] { QFile::remove(path); };
    if (!report) {
        auto removing = onWorker(remove);
        co_await removing;
        co_return;
    }
    const auto url = uploadUrl();
    if (!url)
        co_return;
    auto uploading = upload(*url, encodeCrashReport(*report));
    const auto taken = co_await uploading;
    if (!taken) {
        log(LogLevel::warning, QStringLiteral("Failed to upload crash report: ") + taken.error(),
            LogCategory::system);
    } else if (*taken) {
        auto removing = onWorker(remove);
        co_await removing;
        log(LogLevel::info, QStringLiteral("Crash report uploaded: ") + report->id,
            LogCategory::system);
    }
}

std::optional<QUrl> CrashReporter::uploadUrl() const {
    const QUrl url(m_backendURL + QStringLiteral("/crash-report"), QUrl::StrictMode);
    if (!url.isValid() || url.isRelative())
        return std::nullopt;
    return url;
}

Task<Result<bool, QString>> CrashReporter::upload(QUrl url, QByteArray report) {
    if (!m_network)
        m_network = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest request(url);
    request.setTransferTimeout(static_cast<int>(std::chrono::milliseconds(uploadTimeout).count()));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const std::unique_ptr<QNetworkReply> reply(m_network->post(request, report));

    Completion<std::monostate> finished;
    // Queued, since the flow goes on to destroy the reply, which must not be in the middle of a
    // signal.
    QObject::connect(
        reply.get(), &QNetworkReply::finished, QCoreApplication::instance(),
        [tell = finished.resolver()] { tell({}); }, Qt::QueuedConnection);
    co_await finished;

    // An answer of any status is an answer, though Qt counts those from 400 on as errors.
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!status.isValid())
        co_return std::unexpected(reply->errorString());
    co_return status.toInt() == 200;
}

} // namespace harbrix
