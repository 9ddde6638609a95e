#pragma once

#include "services/TextCatalogue.h"

#include <QString>
#include <QStringList>

class QLocale;

namespace harbrix {

/// A key of the catalogue. A text that is no key does not compile.
class TextKey {
public:
    consteval TextKey(const char* key) : m_entry(findCatalogueEntry(key)) {}
    [[nodiscard]] const CatalogueEntry& entry() const { return *m_entry; }

private:
    const CatalogueEntry* m_entry;
};

/// The text of the key in the language in force: the translation of the first table that has one,
/// else the default text. Main thread.
[[nodiscard]] QString text(TextKey key);
/// The same for the few places whose default text differs from the catalogue's.
[[nodiscard]] QString text(TextKey key, const QString& defaultText);

/// The text of the key as a format, its placeholders ("%@", "%1$@", "%lld") filled in order.
[[nodiscard]] QString formatted(TextKey key, const QStringList& arguments);
/// The text of a key that tells a number ("%lld"): the plural form for it, with the number as the
/// locale writes it.
[[nodiscard]] QString formatted(TextKey key, int count, const QLocale& locale);
/// Fills the placeholders of a format; "%%" becomes a percent sign. A placeholder without an
/// argument, and a percent sign in an argument, stay as they are.
[[nodiscard]] QString fillPlaceholders(const QString& format, const QStringList& arguments);

/// A fixed text that is its own key, one of selfKeyedTexts.
[[nodiscard]] QString literalText(const char* text);

/// Puts the table for the first of the locale's languages that has one in force, with English
/// behind it for what it lacks; a locale without any table reads English. Chinese of every kind,
/// and no language at all ("C"), is the base language: its table holds a few texts only, and the
/// default texts are all that is behind it. Tables are Qt translation files "harbrix_<language>.qm"
/// in the directory, which may be one of the resources; the source text of each entry is its key,
/// in the context "texts". Main thread.
void useTranslations(const QLocale& locale, const QString& directory);

} // namespace harbrix
