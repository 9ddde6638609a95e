#include "app/RemoteControl.h"
#include "app/SettingsControl.h"
#include "base/Worker.h"
#include "ctl/RemoteInterface.h"
#include "services/LogManager.h"

#include <QJsonDocument>

// The part of the remote control that is about the program rather than a share: the settings, the
// log, the list as a whole.

namespace harbrix {
namespace {

QString jsonText(const QJsonDocument& document) {
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

std::expected<const Setting*, Refusal> knownSetting(const QString& key) {
    if (const Setting* setting = findSetting(key))
        return setting;
    const QStringList similar = similarSettingKeys(key);
    const QString hint = similar.isEmpty() ? QStringLiteral("; settings list shows all")
                                           : QStringLiteral("; did you mean ") +
                                                 similar.join(QStringLiteral(", ")) + u'?';
    return std::unexpected(Refusal{QLatin1String(remote::unknownKeyError),
                                   QStringLiteral("there is no setting \"%1\"").arg(key) + hint});
}

} // namespace

QString RemoteControl::ExportRecords(bool withPasswords) {
    return answerWith(exportRecords(withPasswords));
}

QString RemoteControl::ImportRecords(const QByteArray& records, bool isTrial) {
    return answerWith(isTrial ? importRecords(records, isTrial)
                              : saved(importRecords(records, isTrial)));
}

QString RemoteControl::ListSettings() {
    return answerWith(listSettings());
}

QString RemoteControl::GetSetting(const QString& key) {
    return answerWith(getSetting(key));
}

QString RemoteControl::SetSetting(const QString& key, const QString& value) {
    return answerWith(saved(setSetting(key, value)));
}

QString RemoteControl::ResetSetting(const QString& key) {
    return answerWith(saved(resetSetting(key)));
}

QString RemoteControl::LogFiles() {
    return answerWith(logFiles());
}

QString RemoteControl::ClearLog() {
    return answerWith(clearLog());
}

Task<RemoteControl::Answer> RemoteControl::exportRecords(bool withPasswords) {
    using Passwords = RecordExchange::Passwords;
    auto exporting = m_records.exported(withPasswords ? Passwords::Included : Passwords::LeftOut);
    const QByteArray json = co_await exporting;
    co_return QString::fromUtf8(json);
}

Task<RemoteControl::Answer> RemoteControl::importRecords(QByteArray records, bool isTrial) {
    auto importing =
        m_records.imported(records, isTrial ? RecordExchange::Run::Dry : RecordExchange::Run::Real);
    const auto done = co_await importing;
    if (!done)
        co_return std::unexpected(done.error());
    const QJsonArray updated = done->value(QLatin1String("updated")).toArray();
    for (const QJsonValue& record : updated) {
        const auto id = parseUuid(record.toObject().value(QLatin1String("id")).toString());
        if (!isTrial && id)
            m_services.strategy.launch(m_services.strategy.retryCorrected(*id));
    }
    co_return jsonText(QJsonDocument(*done));
}

Task<RemoteControl::Answer> RemoteControl::listSettings() {
    co_return jsonText(QJsonDocument(m_services.settings.describeAll()));
}

Task<RemoteControl::Answer> RemoteControl::getSetting(QString key) {
    const auto setting = knownSetting(key);
    if (!setting)
        co_return std::unexpected(setting.error());
    co_return jsonText(QJsonDocument(m_services.settings.describe(**setting)));
}

Task<RemoteControl::Answer> RemoteControl::setSetting(QString key, QString value) {
    const auto setting = knownSetting(key);
    if (!setting)
        co_return std::unexpected(setting.error());
    const auto parsed = parseSetting(**setting, value);
    if (!parsed)
        co_return std::unexpected(
            Refusal{QLatin1String(remote::invalidValueError), parsed.error()});
    m_services.settings.set(**setting, *parsed);
    auto answer = getSetting(key);
    co_return co_await answer;
}

Task<RemoteControl::Answer> RemoteControl::resetSetting(QString key) {
    const auto setting = knownSetting(key);
    if (!setting)
        co_return std::unexpected(setting.error());
    m_services.settings.reset(**setting);
    auto answer = getSetting(key);
    co_return co_await answer;
}

Task<RemoteControl::Answer> RemoteControl::logFiles() {
    auto written = onWorker([&log = m_services.log] { log.waitForWrites(); });
    co_await written;
    const QJsonObject answer{{"files", QJsonArray::fromStringList(m_services.log.files())},
                             {"fileEnabled", m_services.log.writesToFile()}};
    co_return jsonText(QJsonDocument(answer));
}

Task<RemoteControl::Answer> RemoteControl::clearLog() {
    m_services.log.clearLogs();
    auto cleared = onWorker([&log = m_services.log] { log.waitForWrites(); });
    co_await cleared;
    co_return QString();
}

} // namespace harbrix
