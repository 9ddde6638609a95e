#include "base/ByteCount.h"

#include "base/IcuLocale.h"

#include <unicode/fieldpos.h>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/unistr.h>

#include <array>

namespace harbrix {
namespace {

struct Unit {
    char prefix;
    quint64 size;
    int fractionDigits;
};

constexpr std::array<Unit, 6> units{{
    {'K', 1'000, 0},
    {'M', 1'000'000, 1},
    {'G', 1'000'000'000, 2},
    {'T', 1'000'000'000'000, 2},
    {'P', 1'000'000'000'000'000, 2},
    {'E', 1'000'000'000'000'000'000, 2},
}};

constexpr quint64 powerOfTen(int exponent) {
    return exponent == 0 ? 1 : 10 * powerOfTen(exponent - 1);
}

/// The count in units of the last digit that is shown.
quint64 roundedTo(const Unit& unit, quint64 count) {
    const quint64 step = unit.size / powerOfTen(unit.fractionDigits);
    return (count + step / 2) / step;
}

/// The largest unit of which there is at least one after rounding: 999,999 bytes are 1 MB.
const Unit& unitFor(quint64 count) {
    const Unit* chosen = &units.front();
    for (std::size_t i = 1; i < units.size(); ++i) {
        const Unit& smaller = units[i - 1];
        if (roundedTo(smaller, count) >= 1'000 * powerOfTen(smaller.fractionDigits))
            chosen = &units[i];
    }
    return *chosen;
}

QString digits(const Unit& unit, quint64 count, const QLocale& locale) {
    const quint64 rounded = roundedTo(unit, count);
    const quint64 scale = powerOfTen(unit.fractionDigits);
    QString text = locale.toString(rounded / scale);
    QString fraction = QString::number(rounded % scale).rightJustified(unit.fractionDigits, u'0');
    while (fraction.endsWith(u'0'))
        fraction.chop(1);
    if (!fraction.isEmpty())
        text += locale.decimalPoint() + fraction;
    return text;
}

/// "MB".
QString symbol(const Unit& unit, const QLocale& locale) {
    // A byte is an "octet" in French alone.
    const char16_t byte = locale.language() == QLocale::French ? u'o' : u'B';
    return QString(QLatin1Char(unit.prefix)) + QChar(byte);
}

/// "1 byte", "999 octets".
QString wholeBytes(qint64 bytes, const QLocale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::MeasureFormat format(icu::Locale(icuLocale(locale).constData()), UMEASFMT_WIDTH_WIDE,
                                    status);
    const icu::Measure measure(icu::Formattable(static_cast<int64_t>(bytes)),
                               icu::MeasureUnit::createByte(status), status);
    icu::UnicodeString text;
    icu::FieldPosition position;
    format.formatMeasures(&measure, 1, text, position, status);
    if (U_FAILURE(status))
        return {};
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace

QString byteCountText(qint64 bytes, const QLocale& locale) {
    if (bytes == 0) {
        const bool english =
            locale.language() == QLocale::English || locale.language() == QLocale::C;
        return (english ? QStringLiteral("Zero ") : locale.toString(0) + u' ') +
               symbol(units.front(), locale);
    }
    // Negating in the unsigned type also holds for the smallest number.
    const quint64 count = bytes < 0 ? 0 - static_cast<quint64>(bytes) : static_cast<quint64>(bytes);
    if (count < 1'000)
        return wholeBytes(bytes, locale);
    const QString sign = bytes < 0 ? locale.negativeSign() : QString();
    const Unit& unit = unitFor(count);
    return sign + digits(unit, count, locale) + u' ' + symbol(unit, locale);
}

} // namespace harbrix
