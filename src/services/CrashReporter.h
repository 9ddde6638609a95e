#pragma once

#include "base/Result.h"
#include "base/Scheduler.h"
#include "base/TaskScope.h"

#include <QNetworkAccessManager>
#include <QUrl>

#include <memory>
#include <optional>

namespace harbrix {

struct CrashReport;

/// Leaves a report when this process dies of a crash, and uploads those that earlier ones left.
/// Main thread.
class CrashReporter {
public:
    /// How long the server may take to answer.
    static constexpr std::chrono::seconds uploadTimeout{60};

    /// Reports lie in "Harbrix/Crashes" below `applicationSupport`, which is made here; a failure
    /// is swallowed.
    CrashReporter(const QString& applicationSupport, QString homeDirectory);

    /// The base address of the program's web service, without a trailing slash. Empty: nothing is
    /// sent, and reports stay where they are.
    void setBackendURL(const QString& url) { m_backendURL = url; }

    /// Installs the handlers, the first time, and begins with the upload; does not wait for it.
    void startMonitoring();

    [[nodiscard]] const QString& reportDirectory() const { return m_reportDirectory; }
    [[nodiscard]] std::size_t runningFlows() const { return m_flows.running(); }
    [[nodiscard]] Completion<std::monostate> whenIdle() { return m_flows.whenIdle(); }

private:
    [[nodiscard]] Task<void> sendPendingReports();
    [[nodiscard]] Task<void> sendReport(QString path);
    [[nodiscard]] std::optional<QUrl> uploadUrl() const;
    /// True if the server has taken it; the error tells why nothing came back.
    [[nodiscard]] Task<Result<bool, QString>> upload(QUrl url, QByteArray report);

    QString m_reportDirectory;
    QString m_homeDirectory;
    QString m_backendURL;
    bool m_isMonitoring = false;
    std::unique_ptr<QNetworkAccessManager> m_network; ///< only where there is something to send
    TaskScope m_flows;                                ///< ends before what it works on
};

} // namespace harbrix
