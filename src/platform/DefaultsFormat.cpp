#include "platform/DefaultsFormat.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace harbrix::DefaultsFormat {

namespace {

using Value = UserDefaults::Value;

constexpr QLatin1String versionKey("version");
constexpr QLatin1String valuesKey("values");
constexpr QLatin1String doubleTag("double");
constexpr QLatin1String dataTag("data");
constexpr QLatin1String textualDataTag("dataAsText");
constexpr QLatin1String dateTag("date");
constexpr int currentVersion = 1;

struct Encoder {
    QJsonValue operator()(bool value) const { return value; }
    QJsonValue operator()(qint64 value) const { return value; }
    QJsonValue operator()(double value) const {
        // JSON has no form for these.
        if (std::isnan(value))
            return QJsonObject{{doubleTag, QStringLiteral("nan")}};
        if (std::isinf(value))
            return QJsonObject{
                {doubleTag, value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf")}};
        return QJsonObject{{doubleTag, value}};
    }
    QJsonValue operator()(const QString& value) const { return value; }
    QJsonValue operator()(const QStringList& value) const {
        return QJsonArray::fromStringList(value);
    }
    QJsonValue operator()(const QByteArray& value) const {
        const QString text = QString::fromUtf8(value);
        if (text.toUtf8() == value)
            return QJsonObject{{textualDataTag, text}};
        return QJsonObject{{dataTag, QString::fromLatin1(value.toBase64())}};
    }
    QJsonValue operator()(const QDateTime& value) const {
        return QJsonObject{{dateTag, value.toUTC().toString(Qt::ISODateWithMs)}};
    }
};

std::optional<Value> decodeDouble(const QJsonValue& json) {
    if (json.isDouble())
        return json.toDouble();
    const QString text = json.toString();
    if (text == QLatin1String("nan"))
        return std::nan("");
    if (text == QLatin1String("inf"))
        return HUGE_VAL;
    if (text == QLatin1String("-inf"))
        return -HUGE_VAL;
    return std::nullopt;
}

std::optional<Value> decodeTagged(const QJsonObject& object) {
    if (object.size() != 1)
        return std::nullopt;
    const QString tag = object.begin().key();
    const QJsonValue json = object.begin().value();
    if (tag == doubleTag)
        return decodeDouble(json);
    if (!json.isString())
        return std::nullopt;
    if (tag == textualDataTag)
        return json.toString().toUtf8();
    if (tag == dataTag) {
        const auto decoded = QByteArray::fromBase64Encoding(
            json.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        return decoded ? std::optional<Value>(decoded.decoded) : std::nullopt;
    }
    if (tag == dateTag) {
        const QDateTime date = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
        return date.isValid() ? std::optional<Value>(date) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<Value> decodeList(const QJsonArray& array) {
    QStringList texts;
    for (const QJsonValue& element : array) {
        if (!element.isString())
            return std::nullopt;
        texts << element.toString();
    }
    return texts;
}

std::optional<Value> decodeNumber(const QJsonValue& json) {
    // A user who edits the file by hand may write a fraction without the tag. The two defaults
    // differ, so one of them does not come back exactly when the number is an integer.
    if (json.toInteger(0) == json.toInteger(1))
        return json.toInteger();
    return json.toDouble();
}

std::optional<Value> decodeValue(const QJsonValue& json) {
    switch (json.type()) {
    case QJsonValue::Bool:
        return json.toBool();
    case QJsonValue::Double:
        return decodeNumber(json);
    case QJsonValue::String:
        return json.toString();
    case QJsonValue::Array:
        return decodeList(json.toArray());
    case QJsonValue::Object:
        return decodeTagged(json.toObject());
    default:
        return std::nullopt;
    }
}

} // namespace

QByteArray encode(const Values& values) {
    QJsonObject encoded;
    for (auto value = values.begin(); value != values.end(); ++value)
        encoded.insert(value.key(), std::visit(Encoder{}, value.value()));
    const QJsonObject file{{versionKey, currentVersion}, {valuesKey, encoded}};
    return QJsonDocument(file).toJson();
}

Decoded decode(const QByteArray& text) {
    const QJsonObject file = QJsonDocument::fromJson(text).object();
    const QJsonValue values = file.value(valuesKey);
    if (!values.isObject() || file.value(versionKey).toInt() != currentVersion)
        return {{}, true};
    Decoded decoded;
    const QJsonObject members = values.toObject();
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (const auto value = decodeValue(member.value()))
            decoded.values.insert(member.key(), *value);
        else
            decoded.isDamaged = true;
    }
    return decoded;
}

} // namespace harbrix::DefaultsFormat
