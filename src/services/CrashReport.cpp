#include "services/CrashReport.h"

#include "base/Json.h"
#include "platform/DeviceModel.h"

#include <QJsonDocument>
#include <QSysInfo>

#include <cerrno>

namespace harbrix {

CrashReport CrashReport::ofThisProgram() {
    CrashReport report;
    report.id = uuidText(QUuid::createUuid());
    report.timestamp = iso8601Text(QDateTime::currentDateTimeUtc());
    report.appVersion = QStringLiteral(HARBRIX_VERSION);
    const auto build = QStringLiteral(HARBRIX_BUILD);
    report.buildNumber = build.isEmpty() ? QStringLiteral("unknown") : build;
    report.osVersion =
        QSysInfo::prettyProductName() + QStringLiteral(", kernel ") + QSysInfo::kernelVersion();
    report.deviceModel = harbrix::deviceModel();
    return report;
}

QByteArray encodeCrashReport(const CrashReport& report) {
    QJsonObject json{{"id", report.id},
                     {"timestamp", report.timestamp},
                     {"appVersion", report.appVersion},
                     {"buildNumber", report.buildNumber},
                     {"osVersion", report.osVersion},
                     {"deviceModel", report.deviceModel},
                     {"exceptionType", report.exceptionType},
                     {"stackTrace", QJsonArray::fromStringList(report.stackTrace)}};
    if (report.exceptionName)
        json.insert("exceptionName", *report.exceptionName);
    if (report.reason)
        json.insert("reason", *report.reason);
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

Result<CrashReport, SystemError> decodeCrashReport(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::unexpected(SystemError{EBADMSG, QStringLiteral("The data is not a report")});
    std::optional<SystemError> error;
    JsonReader reader(document.object(), error);
    CrashReport report;
    report.id = reader.text("id");
    report.timestamp = reader.text("timestamp");
    report.appVersion = reader.text("appVersion");
    report.buildNumber = reader.text("buildNumber");
    report.osVersion = reader.text("osVersion");
    report.deviceModel = reader.text("deviceModel");
    report.exceptionType = reader.text("exceptionType");
    report.exceptionName = reader.optionalText("exceptionName");
    report.reason = reader.optionalText("reason");
    report.stackTrace = reader.texts("stackTrace");
    if (error)
        return std::unexpected(*error);
    return report;
}

} // namespace harbrix
