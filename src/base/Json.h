#pragma once

#include "base/Result.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QStringList>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace harbrix {

/// The canonical text of a UUID (RFC 9562) in upper case, without braces.
[[nodiscard]] QString uuidText(const QUuid& uuid);
/// Reads the canonical text in either case, and nothing else.
[[nodiscard]] std::optional<QUuid> parseUuid(const QString& text);

/// An instant as ISO 8601 text in UTC and whole seconds, cut off: "2026-03-01T14:05:09Z".
[[nodiscard]] QString iso8601Text(const QDateTime& instant);
/// Reads that form, also with a numeric offset from UTC; fractions and local times are refused.
[[nodiscard]] std::optional<QDateTime> parseIso8601(const QString& text);

/// An instant as seconds since 2001-01-01 00:00:00 UTC, with fraction.
[[nodiscard]] double secondsSinceReferenceDate(const QDateTime& instant);
/// The instant in UTC, to the millisecond; nothing beyond the years that QDateTime knows.
[[nodiscard]] std::optional<QDateTime> fromReferenceDate(double seconds);

/// Reads the members of one JSON object as the types that a record wants. The first member that is
/// missing or wrong is noted with its path and the reader goes on with blank values, so that a
/// record is read in one sweep and judged at its end. An optional member may be absent or null.
class JsonReader {
public:
    /// `error` receives the first failure. `path` is where the object stands, for the message.
    JsonReader(QJsonObject object, std::optional<SystemError>& error, QString path = {});

    [[nodiscard]] QString text(const char* key);
    [[nodiscard]] std::optional<QString> optionalText(const char* key);
    [[nodiscard]] bool boolean(const char* key);
    /// A JSON number without a fraction that fits in 64 bits.
    [[nodiscard]] qint64 integer(const char* key);
    /// The same, narrowed; a number that does not fit is a wrong one.
    [[nodiscard]] int integer32(const char* key);
    [[nodiscard]] double number(const char* key);
    [[nodiscard]] QStringList texts(const char* key);
    /// An object all of whose members are texts.
    [[nodiscard]] QMap<QString, QString> textMap(const char* key);
    [[nodiscard]] QUuid uuid(const char* key);
    [[nodiscard]] QDateTime iso8601Date(const char* key);
    [[nodiscard]] QDateTime referenceDate(const char* key);
    /// A reader of the member object, which notes its failures here.
    [[nodiscard]] JsonReader object(const char* key);
    /// Whether the member is there and not null.
    [[nodiscard]] bool has(const char* key) const;

    /// Notes that the member holds what the record cannot take.
    void fail(const char* key, const QString& reason);

private:
    QJsonValue member(const char* key, QJsonValue::Type type, const char* typeName);

    QJsonObject m_object;
    std::optional<SystemError>& m_error;
    QString m_path;
};

/// The objects of a JSON text that is an array of objects.
[[nodiscard]] Result<std::vector<QJsonObject>, SystemError>
parseObjectArray(const QByteArray& json);

/// Reads a JSON array of records; one record that cannot be read fails them all. `readRecord` makes
/// a record with a reader.
template <typename Record>
[[nodiscard]] Result<std::vector<Record>, SystemError>
decodeRecords(const QByteArray& json, const std::function<Record(JsonReader&)>& readRecord) {
    const auto objects = parseObjectArray(json);
    if (!objects)
        return std::unexpected(objects.error());
    std::optional<SystemError> error;
    std::vector<Record> records;
    records.reserve(objects->size());
    for (const QJsonObject& object : *objects) {
        JsonReader reader(object, error, QStringLiteral("[%1]").arg(records.size()));
        records.push_back(readRecord(reader));
        if (error)
            return std::unexpected(*error);
    }
    return records;
}

/// The compact UTF-8 text of an array.
[[nodiscard]] QByteArray encodeJson(const QJsonArray& array);

} // namespace harbrix
