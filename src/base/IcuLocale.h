#pragma once

#include <QByteArray>
#include <QLocale>

namespace harbrix {

/// The locale's identifier for ICU. The C locale, for which ICU has rules of its own, reads as
/// English.
[[nodiscard]] inline QByteArray icuLocale(const QLocale& locale) {
    return locale.bcp47Name().toLatin1();
}

} // namespace harbrix
