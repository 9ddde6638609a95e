#include "base/TimeText.h"

#include "base/IcuLocale.h"

#include <unicode/fieldpos.h>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/unistr.h>
#include <unicode/ureldatefmt.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace harbrix {
namespace {

struct Distance {
    qint64 count; ///< negative in the past
    URelativeDateTimeUnit unit;
};

/// Counts whole months by the calendar: 31 January and 28 February lie a month apart.
qint64 wholeMonths(const QDateTime& earlier, const QDateTime& later) {
    qint64 months = (later.date().year() - earlier.date().year()) * 12 + later.date().month() -
                    earlier.date().month();
    if (earlier.addMonths(static_cast<int>(months)) > later)
        --months;
    return months;
}

qint64 wholeDays(const QDateTime& earlier, const QDateTime& later) {
    // By the calendar too: a day on which the clocks change has 23 or 25 hours.
    qint64 days = earlier.daysTo(later);
    if (earlier.addDays(days) > later)
        --days;
    return days;
}

Distance distanceBetween(const QDateTime& earlier, const QDateTime& later) {
    if (const qint64 months = wholeMonths(earlier, later); months >= 12)
        return {months / 12, UDAT_REL_UNIT_YEAR};
    else if (months > 0)
        return {months, UDAT_REL_UNIT_MONTH};
    if (const qint64 days = wholeDays(earlier, later); days >= 7)
        return {days / 7, UDAT_REL_UNIT_WEEK};
    else if (days > 0)
        return {days, UDAT_REL_UNIT_DAY};
    const qint64 seconds = earlier.secsTo(later);
    if (seconds >= 3600)
        return {seconds / 3600, UDAT_REL_UNIT_HOUR};
    if (seconds >= 60)
        return {seconds / 60, UDAT_REL_UNIT_MINUTE};
    return {seconds, UDAT_REL_UNIT_SECOND};
}

URelativeDateTimeFormatter* openFormatter(RelativeDateText::Style style, const QLocale& locale) {
    const auto width =
        style == RelativeDateText::Style::ShortNumeric ? UDAT_STYLE_SHORT : UDAT_STYLE_LONG;
    UErrorCode status = U_ZERO_ERROR;
    auto* formatter = ureldatefmt_open(icuLocale(locale).constData(), nullptr, width,
                                       UDISPCTX_CAPITALIZATION_NONE, &status);
    if (U_FAILURE(status))
        qFatal("ICU has no data for relative dates: %s", u_errorName(status));
    return formatter;
}

} // namespace

RelativeDateText::RelativeDateText(Style style, const QLocale& locale)
    : m_style(style),
      m_formatter(openFormatter(style, locale), [](const URelativeDateTimeFormatter* formatter) {
          ureldatefmt_close(const_cast<URelativeDateTimeFormatter*>(formatter));
      }) {}

QString RelativeDateText::operator()(const QDateTime& then, const QDateTime& now) const {
    if (!then.isValid() || !now.isValid())
        return {};
    const bool isPast = then <= now;
    const QDateTime from = then.toLocalTime();
    const QDateTime to = now.toLocalTime();
    const Distance distance = isPast ? distanceBetween(from, to) : distanceBetween(to, from);
    // A negative nought reads as "0 seconds ago", which is what has just been.
    const double offset =
        isPast ? -static_cast<double>(distance.count) : static_cast<double>(distance.count);
    const auto format =
        m_style == Style::ShortNumeric ? ureldatefmt_formatNumeric : ureldatefmt_format;
    std::array<char16_t, 128> buffer{};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = format(m_formatter.get(), offset, distance.unit, buffer.data(),
                                  static_cast<int32_t>(buffer.size()), &status);
    if (U_FAILURE(status))
        return {};
    return QString::fromUtf16(buffer.data(), length);
}

QString durationText(Seconds span, const QLocale& locale) {
    // Longer than any transfer, and far from where the integers end.
    constexpr double longest = 3'600.0 * 999'999.0;
    const double clamped = std::isfinite(span.count()) ? span.count() : longest;
    qint64 seconds = std::llround(std::clamp(clamped, 0.0, longest));
    if (seconds >= 3600)
        seconds = (seconds + 30) / 60 * 60;

    UErrorCode status = U_ZERO_ERROR;
    std::vector<icu::Measure> parts;
    const auto add = [&](qint64 count, icu::MeasureUnit* unit) {
        parts.emplace_back(icu::Formattable(static_cast<int64_t>(count)), unit, status);
    };
    if (seconds >= 3600)
        add(seconds / 3600, icu::MeasureUnit::createHour(status));
    if (seconds / 60 % 60 > 0)
        add(seconds / 60 % 60, icu::MeasureUnit::createMinute(status));
    if (seconds % 60 > 0 || seconds == 0)
        add(seconds % 60, icu::MeasureUnit::createSecond(status));

    const icu::MeasureFormat format(icu::Locale(icuLocale(locale).constData()),
                                    UMEASFMT_WIDTH_NARROW, status);
    icu::UnicodeString text;
    icu::FieldPosition position;
    format.formatMeasures(parts.data(), static_cast<int32_t>(parts.size()), text, position, status);
    if (U_FAILURE(status))
        return {};
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace harbrix
