#include "services/AnalyticsService.h"

#include "base/Json.h"
#include "platform/AtomicFile.h"
#include "platform/UserDefaults.h"
#include "services/LogManager.h"

#include <cerrno>

namespace harbrix {
namespace {

QJsonObject toJson(const AnalyticsRecord& record) {
    QJsonObject json{{"id", uuidText(record.id)},
                     {"event", record.event},
                     {"timestamp", secondsSinceReferenceDate(record.timestamp)}};
    if (record.metadata) {
        QJsonObject metadata;
        for (auto item = record.metadata->begin(); item != record.metadata->end(); ++item)
            metadata.insert(item.key(), item.value());
        json.insert("metadata", metadata);
    }
    return json;
}

AnalyticsRecord recordFrom(JsonReader& reader) {
    AnalyticsRecord record{reader.uuid("id"), reader.text("event"),
                           reader.referenceDate("timestamp"), std::nullopt};
    if (reader.has("metadata"))
        record.metadata = reader.textMap("metadata");
    return record;
}

} // namespace

QString rawValue(AnalyticsEvent event) {
    switch (event) {
    case AnalyticsEvent::appLaunch:
        return QStringLiteral("app_launch");
    case AnalyticsEvent::nasMount:
        return QStringLiteral("nas_mount");
    case AnalyticsEvent::fileTransfer:
        return QStringLiteral("file_transfer");
    case AnalyticsEvent::cacheHit:
        return QStringLiteral("cache_hit");
    }
    Q_UNREACHABLE();
}

AnalyticsService::AnalyticsService(const UserDefaults& defaults, const QString& applicationSupport,
                                   std::function<QDateTime()> now)
    : m_defaults(defaults), m_path(applicationSupport + QStringLiteral("/Harbrix/analytics.json")),
      m_now(std::move(now)) {
    load();
}

bool AnalyticsService::isEnabled() const {
    return m_defaults.boolean(QLatin1String(enabledKey)).value_or(true);
}

void AnalyticsService::load() {
    const auto fail = [](const SystemError& error) {
        log(LogLevel::error, QStringLiteral("Failed to load analytics: ") + error.description);
    };
    const auto file = readFile(m_path);
    if (!file) {
        if (file.error().code != ENOENT)
            fail(file.error());
        return;
    }
    auto records = decodeRecords<AnalyticsRecord>(*file, recordFrom);
    if (records)
        m_records = std::move(*records);
    else
        fail(records.error());
}

void AnalyticsService::track(AnalyticsEvent event,
                             std::optional<AnalyticsRecord::Metadata> metadata) {
    if (!isEnabled())
        return;
    AnalyticsRecord record{QUuid::createUuid(), rawValue(event), m_now(), std::move(metadata)};
    m_queue.enqueue([this, record = std::move(record)]() mutable { append(std::move(record)); });
}

void AnalyticsService::append(AnalyticsRecord record) {
    const QString event = record.event;
    m_records.push_back(std::move(record));
    if (m_records.size() > maxRecords)
        m_records.erase(m_records.begin(), m_records.end() - maxRecords);
    save();
    log(LogLevel::debug, QStringLiteral("Analytics: tracked ") + event);
}

void AnalyticsService::save() const {
    QJsonArray array;
    for (const AnalyticsRecord& record : m_records)
        array.append(toJson(record));
    const auto written = replaceFile(m_path, encodeJson(array));
    if (!written)
        log(LogLevel::error,
            QStringLiteral("Failed to save analytics: ") + written.error().description);
}

} // namespace harbrix
