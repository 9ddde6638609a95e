#include "ctl/LogReader.h"

#include <QRegularExpression>

#include <sys/stat.h>

namespace harbrix {

bool LogFilter::admits(const QString& line) {
    static const QRegularExpression start(QStringLiteral(
        R"(^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] \[(DEBUG|INFO|WARN|ERROR|CRIT)\] \[)"));
    static const QStringList labels{"DEBUG", "INFO", "WARN", "ERROR", "CRIT"};
    if (const auto match = start.match(line); match.hasMatch())
        m_admitsMessage = labels.indexOf(match.captured(1)) >= m_lowestLevel;
    return m_admitsMessage;
}

QStringList LogReader::newLines() {
    QByteArray added;
    if (m_file.isOpen())
        added = m_file.readAll();
    if (isAnotherFile()) {
        m_file.close();
        if (m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            added += m_file.readAll();
    }
    m_unfinished += added;
    QList<QByteArray> lines = m_unfinished.split('\n');
    m_unfinished = lines.takeLast();
    QStringList texts;
    for (const QByteArray& line : lines)
        texts << QString::fromUtf8(line);
    return texts;
}

bool LogReader::isAnotherFile() const {
    struct stat open {};
    struct stat named {};
    if (!m_file.isOpen() || ::fstat(m_file.handle(), &open) != 0)
        return true;
    // Once removed it stays at hand until there is a new one.
    return ::stat(QFile::encodeName(m_file.fileName()).constData(), &named) == 0 &&
           (named.st_ino != open.st_ino || named.st_dev != open.st_dev);
}

} // namespace harbrix
