#include "base/Utf8.h"

#include <QStringConverter>

namespace harbrix {
namespace {

constexpr auto flags = QStringConverter::Flags(QStringConverter::Flag::Stateless) |
                       QStringConverter::Flag::ConvertInitialBom;

} // namespace

std::optional<QByteArray> encodeUtf8(QStringView text) {
    if (!text.isValidUtf16())
        return std::nullopt;
    return text.toUtf8();
}

std::optional<QString> decodeUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringConverter::Utf8, flags);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace harbrix
