#include "base/NaturalCompare.h"

#include "base/IcuLocale.h"

#include <unicode/ucol.h>

namespace harbrix {
namespace {

/// A collator for the locale, or for the root locale where ICU has no data for it.
UCollator* openCollator(const QLocale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    UCollator* collator = ucol_open(icuLocale(locale).constData(), &status);
    if (U_FAILURE(status)) {
        status = U_ZERO_ERROR;
        collator = ucol_open("", &status);
    }
    if (U_FAILURE(status))
        qFatal("ICU has no collation data: %s", u_errorName(status));
    ucol_setAttribute(collator, UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    // The first two levels tell letters and accents apart; the third would tell case.
    ucol_setAttribute(collator, UCOL_STRENGTH, UCOL_SECONDARY, &status);
    return collator;
}

} // namespace

NaturalCompare::NaturalCompare(const QLocale& locale)
    : m_collator(openCollator(locale),
                 [](const UCollator* collator) { ucol_close(const_cast<UCollator*>(collator)); }) {}

int NaturalCompare::compare(QStringView a, QStringView b) const {
    return ucol_strcoll(m_collator.get(), a.utf16(), static_cast<int32_t>(a.size()), b.utf16(),
                        static_cast<int32_t>(b.size()));
}

QByteArray NaturalCompare::sortKey(QStringView name) const {
    const auto length = static_cast<int32_t>(name.size());
    const auto fill = [&](QByteArray& key) {
        return ucol_getSortKey(m_collator.get(), name.utf16(), length,
                               reinterpret_cast<uint8_t*>(key.data()),
                               static_cast<int32_t>(key.size()));
    };
    // Most names need no more than this; ICU tells the full length of those that do.
    QByteArray key(name.size() * 2 + 16, Qt::Uninitialized);
    const int32_t needed = fill(key);
    const bool fits = needed <= key.size();
    key.resize(needed);
    if (!fits)
        fill(key);
    return key;
}

} // namespace harbrix
