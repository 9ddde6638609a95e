#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace harbrix {

/// The text as UTF-8 (RFC 3629). Nothing where it holds half a surrogate pair, which no UTF-8 can
/// express and which QString::toUtf8() would replace by a question mark.
[[nodiscard]] std::optional<QByteArray> encodeUtf8(QStringView text);

/// The bytes as text, a byte order mark included; nothing where they are not valid UTF-8.
[[nodiscard]] std::optional<QString> decodeUtf8(QByteArrayView bytes);

} // namespace harbrix
