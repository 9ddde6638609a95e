#include "services/LogLine.h"

#include <QRegularExpression>

namespace harbrix {
namespace {

/// Where the bracket that opens at `open` closes; the end where it does not.
qsizetype closingBracket(QStringView text, qsizetype open) {
    int depth = 0;
    for (qsizetype at = open; at < text.size(); ++at) {
        if (text[at] == QLatin1Char('('))
            ++depth;
        else if (text[at] == QLatin1Char(')') && --depth == 0)
            return at;
    }
    return text.size();
}

/// Where the parameter list opens: at the first parenthesis outside template arguments, the one in
/// the name of operator() aside.
qsizetype parameterList(const QString& text) {
    static const QString call = QStringLiteral("operator()");
    if (const auto at = text.indexOf(call); at >= 0)
        return at + call.size();
    int depth = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == QLatin1Char('<'))
            ++depth;
        else if (text[at] == QLatin1Char('>'))
            --depth;
        else if (text[at] == QLatin1Char('(') && depth <= 0)
            return at;
    }
    return -1;
}

/// The last component of a qualified name, without the return type before it.
QString unqualifiedName(const QString& declaration) {
    static const QRegularExpression lastComponent(
        QStringLiteral("(operator\\W.*|operator \\w.*|~?\\w+)\\s*$"));
    return lastComponent.match(declaration).captured(1);
}

} // namespace

QString logLevelLabel(LogLevel level) {
    switch (level) {
    case LogLevel::debug:
        return QStringLiteral("DEBUG");
    case LogLevel::info:
        return QStringLiteral("INFO");
    case LogLevel::warning:
        return QStringLiteral("WARN");
    case LogLevel::error:
        return QStringLiteral("ERROR");
    case LogLevel::critical:
        return QStringLiteral("CRIT");
    }
    Q_UNREACHABLE();
}

QString logLevelMark(LogLevel level) {
    switch (level) {
    case LogLevel::debug:
        return QStringLiteral("🔍");
    case LogLevel::info:
        return QStringLiteral("ℹ️");
    case LogLevel::warning:
        return QStringLiteral("⚠️");
    case LogLevel::error:
        return QStringLiteral("❌");
    case LogLevel::critical:
        return QStringLiteral("🔥");
    }
    Q_UNREACHABLE();
}

QString functionSignature(const QString& prettyFunction) {
    static const QRegularExpression qualifier(QStringLiteral("(?:\\w+|\\{anonymous\\})::"));
    static const QRegularExpression constness(QStringLiteral("\\bconst\\b ?| const\\b"));
    static const QRegularExpression reference(QStringLiteral(" ?&+"));

    QString whole = prettyFunction.section(QStringLiteral(" [with "), 0, 0);
    // g++ tells of a coroutine through the parameter of its resume function:
    // "f(f(int)::_Z1fi.Frame*)".
    if (whole.endsWith(QLatin1String(".Frame*)"))) {
        const auto inner = parameterList(whole) + 1;
        whole = whole.mid(inner);
    }
    whole = whole.section(QStringLiteral("::<lambda"), 0, 0);
    const auto open = parameterList(whole);
    if (open < 0)
        return whole;
    const auto close = closingBracket(whole, open);
    QString parameters = whole.mid(open + 1, close - open - 1);
    parameters.remove(qualifier).remove(constness).remove(reference);
    parameters.replace(QLatin1String("basic_string<char> "), QLatin1String("string"))
        .replace(QLatin1String("basic_string<char>"), QLatin1String("string"))
        .replace(QLatin1String("> >"), QLatin1String(">>"));
    return unqualifiedName(whole.left(open)) + QLatin1Char('(') + parameters + QLatin1Char(')');
}

QString formatLogLine(const QDateTime& localTime, LogLevel level, const QString& category,
                      const std::source_location& where, const QString& message) {
    const QString file = QString::fromUtf8(where.file_name()).section(QLatin1Char('/'), -1);
    return QLatin1Char('[') + localTime.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")) +
           QStringLiteral("] [") + logLevelLabel(level) + QStringLiteral("] [") + category +
           QStringLiteral("] ") + file + QLatin1Char(':') + QString::number(where.line()) +
           QLatin1Char(' ') + functionSignature(QString::fromUtf8(where.function_name())) +
           QStringLiteral(" - ") + message;
}

} // namespace harbrix
