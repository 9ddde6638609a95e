#pragma once

#include "base/Scheduler.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <memory>

struct URelativeDateTimeFormatter;

namespace harbrix {

/// Tells when something was, seen from now, in the largest unit that has passed whole: "5 min.
/// ago". Making one is costly; a view keeps it for as long as its locale stands. One thread at a
/// time.
class RelativeDateText {
public:
    enum class Style {
        ShortNumeric, ///< "1 day ago", "2 hr. ago"
        WideNamed     ///< "yesterday", "2 hours ago", "now"
    };

    explicit RelativeDateText(Style style, const QLocale& locale = QLocale());

    [[nodiscard]] QString operator()(const QDateTime& then, const QDateTime& now) const;

private:
    Style m_style;
    std::shared_ptr<const URelativeDateTimeFormatter> m_formatter;
};

/// A span in at most two of the units hours, minutes and seconds, abbreviated: "1h 5m", "12s". It
/// is rounded to the last unit shown; parts of nought are left out.
[[nodiscard]] QString durationText(Seconds span, const QLocale& locale = QLocale());

} // namespace harbrix
