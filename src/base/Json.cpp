#include "base/Json.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QTimeZone>

#include <cerrno>
#include <cmath>
#include <limits>

namespace harbrix {
namespace {

constexpr qint64 referenceDateMsecs = 978'307'200'000;
// QDateTime counts milliseconds in 64 bits; half of that range is room enough for any sum.
constexpr double maxReferenceSeconds = 4.0e15;

SystemError malformed(const QString& description) {
    return {EBADMSG, description};
}

bool isWholeNumber(const QJsonValue& value) {
    // Only a value that is no whole 64-bit number yields the fallback both times.
    return value.toInteger(0) == value.toInteger(1);
}

} // namespace

QString uuidText(const QUuid& uuid) {
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> parseUuid(const QString& text) {
    // QUuid by itself also takes braces and anything after the last digit.
    if (text.size() != 36 || text.startsWith(QLatin1Char('{')))
        return std::nullopt;
    const QUuid uuid = QUuid::fromString(text);
    if (uuid.isNull() && text != uuid.toString(QUuid::WithoutBraces))
        return std::nullopt;
    return uuid;
}

QString iso8601Text(const QDateTime& instant) {
    return instant.toUTC().toString(Qt::ISODate);
}

std::optional<QDateTime> parseIso8601(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d(Z|[+-]\\d\\d:?\\d\\d)\\z"),
        QRegularExpression::DontCaptureOption);
    if (!form.match(text).hasMatch())
        return std::nullopt;
    const QDateTime instant = QDateTime::fromString(text, Qt::ISODate);
    if (!instant.isValid())
        return std::nullopt;
    return instant.toUTC();
}

double secondsSinceReferenceDate(const QDateTime& instant) {
    return static_cast<double>(instant.toMSecsSinceEpoch() - referenceDateMsecs) / 1000.0;
}

std::optional<QDateTime> fromReferenceDate(double seconds) {
    if (!(std::abs(seconds) < maxReferenceSeconds))
        return std::nullopt;
    const auto msecs = static_cast<qint64>(std::llround(seconds * 1000.0));
    return QDateTime::fromMSecsSinceEpoch(referenceDateMsecs + msecs, QTimeZone::utc());
}

JsonReader::JsonReader(QJsonObject object, std::optional<SystemError>& error, QString path)
    : m_object(std::move(object)), m_error(error), m_path(std::move(path)) {}

void JsonReader::fail(const char* key, const QString& reason) {
    if (m_error)
        return;
    const QString name = QString::fromLatin1(key);
    const QString path = m_path.isEmpty() ? name : m_path + QLatin1Char('.') + name;
    m_error = malformed(QStringLiteral("\"%1\" %2").arg(path, reason));
}

bool JsonReader::has(const char* key) const {
    const QJsonValue value = m_object.value(QLatin1String(key));
    return !value.isUndefined() && !value.isNull();
}

QJsonValue JsonReader::member(const char* key, QJsonValue::Type type, const char* typeName) {
    const QJsonValue value = m_object.value(QLatin1String(key));
    if (value.isUndefined())
        fail(key, QStringLiteral("is missing"));
    else if (value.type() != type)
        fail(key, QStringLiteral("is not %1").arg(QLatin1String(typeName)));
    return value;
}

QString JsonReader::text(const char* key) {
    return member(key, QJsonValue::String, "a text").toString();
}

std::optional<QString> JsonReader::optionalText(const char* key) {
    if (!has(key))
        return std::nullopt;
    return text(key);
}

bool JsonReader::boolean(const char* key) {
    return member(key, QJsonValue::Bool, "a Boolean").toBool();
}

qint64 JsonReader::integer(const char* key) {
    const QJsonValue value = member(key, QJsonValue::Double, "a number");
    if (value.isDouble() && !isWholeNumber(value))
        fail(key, QStringLiteral("is not a whole number"));
    return value.toInteger();
}

int JsonReader::integer32(const char* key) {
    const qint64 value = integer(key);
    if (std::in_range<int>(value))
        return static_cast<int>(value);
    fail(key, QStringLiteral("is out of range"));
    return 0;
}

double JsonReader::number(const char* key) {
    return member(key, QJsonValue::Double, "a number").toDouble();
}

QStringList JsonReader::texts(const char* key) {
    QStringList list;
    for (const QJsonValue value : member(key, QJsonValue::Array, "a list").toArray()) {
        if (!value.isString())
            fail(key, QStringLiteral("holds something other than texts"));
        list << value.toString();
    }
    return list;
}

QMap<QString, QString> JsonReader::textMap(const char* key) {
    QMap<QString, QString> map;
    const QJsonObject members = member(key, QJsonValue::Object, "an object").toObject();
    for (auto item = members.begin(); item != members.end(); ++item) {
        if (!item.value().isString())
            fail(key, QStringLiteral("holds something other than texts"));
        map.insert(item.key(), item.value().toString());
    }
    return map;
}

QUuid JsonReader::uuid(const char* key) {
    const auto parsed = parseUuid(text(key));
    if (!parsed)
        fail(key, QStringLiteral("is not a UUID"));
    return parsed.value_or(QUuid());
}

QDateTime JsonReader::iso8601Date(const char* key) {
    const auto parsed = parseIso8601(text(key));
    if (!parsed)
        fail(key, QStringLiteral("is not an ISO 8601 date"));
    return parsed.value_or(QDateTime());
}

QDateTime JsonReader::referenceDate(const char* key) {
    const auto date = fromReferenceDate(number(key));
    if (!date)
        fail(key, QStringLiteral("is out of range"));
    return date.value_or(QDateTime());
}

JsonReader JsonReader::object(const char* key) {
    const QString name = QString::fromLatin1(key);
    return {member(key, QJsonValue::Object, "an object").toObject(), m_error,
            m_path.isEmpty() ? name : m_path + QLatin1Char('.') + name};
}

Result<std::vector<QJsonObject>, SystemError> parseObjectArray(const QByteArray& json) {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return std::unexpected(malformed(QStringLiteral("The data is not valid JSON: %1 at byte %2")
                                             .arg(parseError.errorString())
                                             .arg(parseError.offset)));
    if (!document.isArray())
        return std::unexpected(malformed(QStringLiteral("The data is not a JSON array")));
    std::vector<QJsonObject> objects;
    for (const QJsonValue value : document.array()) {
        if (!value.isObject())
            return std::unexpected(
                malformed(QStringLiteral("\"[%1]\" is not an object").arg(objects.size())));
        objects.push_back(value.toObject());
    }
    return objects;
}

QByteArray encodeJson(const QJsonArray& array) {
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

} // namespace harbrix
