#pragma once

#include <QLocale>
#include <QString>

namespace harbrix {

/// A number of bytes as file managers show it, in decimal units: whole bytes and KB, one digit
/// after the point in MB, two from GB on, trailing zeros dropped ("999 bytes", "12.3 MB",
/// "1.05 GB"); none is "Zero KB" in English, "0 KB" elsewhere. The words are the locale's. Halves
/// are rounded away from zero.
[[nodiscard]] QString byteCountText(qint64 bytes, const QLocale& locale = QLocale());

} // namespace harbrix
