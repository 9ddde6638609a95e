#pragma once

#include "platform/UserDefaults.h"

namespace harbrix {

/// The text form of the settings file: a JSON object that holds, under "values", one member per
/// key. JSON's own types stand for Boolean, integer, text and list of texts; the others are an
/// object with one member that names the type:
///
///     "log.debugMode": true,                                  a Boolean
///     "log.minimumLevel": 2,                                  an integer
///     "ratio": { "double": 2 },                               a double, also "inf", "-inf", "nan"
///     "name": "text",
///     "names": ["a", "b"],
///     "records": { "dataAsText": "[{\"id\": 1}]" },           data whose bytes are UTF-8 text
///     "picture": { "data": "AP8=" },                          other data, in base64
///     "since": { "date": "2026-03-01T14:05:09.417Z" }         a date, in UTC
namespace DefaultsFormat {

using Values = QHash<QString, UserDefaults::Value>;

[[nodiscard]] QByteArray encode(const Values& values);

struct Decoded {
    Values values;
    bool isDamaged = false; ///< something in the text could not be understood
};

/// What can be understood of the text.
[[nodiscard]] Decoded decode(const QByteArray& text);

} // namespace DefaultsFormat

} // namespace harbrix
