#include "base/ByteCount.h"

#include <array>

namespace harbrix {
namespace {

struct Unit {
    const char* name;
    quint64 size;
    int fractionDigits;
};

constexpr std::array<Unit, 6> units{{
    {"KB", 1'000, 0},
    {"MB", 1'000'000, 1},
    {"GB", 1'000'000'000, 2},
    {"TB", 1'000'000'000'000, 2},
    {"PB", 1'000'000'000'000'000, 2},
    {"EB", 1'000'000'000'000'000'000, 2},
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

} // namespace

QString byteCountText(qint64 bytes, const QLocale& locale) {
    if (bytes == 0)
        return QStringLiteral("Zero KB");
    // Negating in the unsigned type also holds for the smallest number.
    const quint64 count = bytes < 0 ? 0 - static_cast<quint64>(bytes) : static_cast<quint64>(bytes);
    const QString sign = bytes < 0 ? locale.negativeSign() : QString();
    if (count < 1'000)
        return sign + locale.toString(count) +
               (count == 1 ? QStringLiteral(" byte") : QStringLiteral(" bytes"));
    const Unit& unit = unitFor(count);
    return sign + digits(unit, count, locale) + u' ' + QLatin1String(unit.name);
}

} // namespace harbrix
