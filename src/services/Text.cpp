#include "services/Text.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTranslator>

#include <memory>

namespace harbrix {
namespace {

/// The table of the language in force; none where the default texts are all there is.
std::unique_ptr<QTranslator>& currentTable() {
    static std::unique_ptr<QTranslator> table;
    return table;
}

QString lookUp(const char* key, const QString& defaultText) {
    const auto& table = currentTable();
    if (!table)
        return defaultText;
    const QString translation = table->translate("texts", key);
    return translation.isEmpty() ? defaultText : translation;
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
    auto table = std::make_unique<QTranslator>();
    const bool found = table->load(locale, QStringLiteral("harbrix"), QStringLiteral("_"),
                                   directory, QStringLiteral(".qm"));
    currentTable() = found ? std::move(table) : nullptr;
}

} // namespace harbrix
