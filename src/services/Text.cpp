#include "services/Text.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTranslator>

#include <memory>
#include <vector>

namespace harbrix {
namespace {

using Table = std::unique_ptr<QTranslator>;

/// Those of the language in force, in the order in which they are asked.
std::vector<Table>& currentTables() {
    static std::vector<Table> tables;
    return tables;
}

/// A count picks one of a text's plural forms; a text that tells no number has but one.
QString lookUp(const char* key, const QString& defaultText, int count = -1) {
    for (const Table& table : currentTables())
        if (const QString translation = table->translate("texts", key, nullptr, count);
            !translation.isEmpty())
            return translation;
    return defaultText;
}

Table loadTable(const QLocale& language, const QString& directory) {
    auto table = std::make_unique<QTranslator>();
    if (!table->load(language, QStringLiteral("harbrix"), QStringLiteral("_"), directory,
                     QStringLiteral(".qm")))
        return nullptr;
    return table;
}

std::vector<Table> loadTables(const QLocale& locale, const QString& directory) {
    std::vector<Table> tables;
    const auto add = [&](const QLocale& language) {
        if (Table table = loadTable(language, directory))
            tables.push_back(std::move(table));
        return !tables.empty();
    };
    const auto addBase = [&] {
        add(QLocale(QLocale::Chinese, QLocale::SimplifiedHanScript, QLocale::China));
    };
    const QLocale english(QLocale::English);
    for (const QString& code : locale.uiLanguages()) {
        const QLocale language(code);
        if (language.language() == QLocale::Chinese) {
            if (!add(language))
                addBase();
            return tables;
        }
        // Who names no language ("C") gets that of the program.
        if (code == QLatin1String("C")) {
            addBase();
            return tables;
        }
        if (!add(language))
            continue;
        if (language.language() == english.language())
            return tables;
        break;
    }
    add(english);
    return tables;
}

} // namespace

QString text(TextKey key) {
    return lookUp(key.entry().key, QString::fromUtf8(key.entry().defaultText));
}

QString text(TextKey key, const QString& defaultText) {
    return lookUp(key.entry().key, defaultText);
}

QString literalText(const char* text) {
    return lookUp(text, QString::fromUtf8(text));
}

QString formatted(TextKey key, const QStringList& arguments) {
    return fillPlaceholders(text(key), arguments);
}

QString formatted(TextKey key, int count, const QLocale& locale) {
    const QString format =
        lookUp(key.entry().key, QString::fromUtf8(key.entry().defaultText), count);
    return fillPlaceholders(format, {locale.toString(count)});
}

QString fillPlaceholders(const QString& format, const QStringList& arguments) {
    static const QRegularExpression placeholder(
        QStringLiteral("%(?:(?<percent>%)|(?:(?<position>[1-9])\\$)?(?:@|lld))"));
    QString filled;
    qsizetype done = 0;
    qsizetype next = 0;
    for (auto matches = placeholder.globalMatch(format); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        filled += QStringView(format).mid(done, match.capturedStart() - done);
        done = match.capturedEnd();
        if (match.hasCaptured(u"percent")) {
            filled += QLatin1Char('%');
            continue;
        }
        const qsizetype index =
            match.hasCaptured(u"position") ? match.capturedView(u"position").toInt() - 1 : next++;
        filled += index < arguments.size() ? arguments.at(index) : match.captured();
    }
    return filled += QStringView(format).mid(done);
}

void useTranslations(const QLocale& locale, const QString& directory) {
    currentTables() = loadTables(locale, directory);
}

} // namespace harbrix
