#include "ctl/Table.h"

#include <cwchar>

namespace harbrix {
namespace {

constexpr int gap = 2;

QString escaped(char32_t character) {
    switch (character) {
    case U'\n':
        return QStringLiteral("\\n");
    case U'\r':
        return QStringLiteral("\\r");
    case U'\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u{%1}").arg(uint(character), 0, 16);
    }
}

bool isOnOneLine(char32_t character) {
    const auto category = QChar::category(character);
    return QChar::isPrint(character) && category != QChar::Separator_Line &&
           category != QChar::Separator_Paragraph;
}

int widthOf(const QString& text) {
    int width = 0;
    for (const char32_t character : text.toUcs4())
        width += std::max(0, ::wcwidth(static_cast<wchar_t>(character)));
    return width;
}

} // namespace

QString visible(const QString& text) {
    QString result;
    for (const char32_t character : text.toUcs4()) {
        if (isOnOneLine(character))
            result += QString::fromUcs4(&character, 1);
        else
            result += escaped(character);
    }
    return result;
}

QString alignedTable(const std::vector<QStringList>& rows) {
    std::vector<int> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), std::size_t(row.size())));
        for (qsizetype column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], widthOf(row[column]));
    }
    QString table;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype column = 0; column < row.size(); ++column)
            line += row[column] +
                    QString(widths[column] - widthOf(row[column]) + gap, QLatin1Char(' '));
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        table += line + QLatin1Char('\n');
    }
    return table;
}

} // namespace harbrix
