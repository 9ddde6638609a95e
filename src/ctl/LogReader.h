#pragma once

#include <QFile>
#include <QStringList>

namespace harbrix {

/// Lets through the lines of a log that are of a level or above, with the further lines of a
/// message of several.
class LogFilter {
public:
    /// 0 (debug) to 4 (critical).
    explicit LogFilter(int lowestLevel) : m_lowestLevel(lowestLevel) {}

    [[nodiscard]] bool admits(const QString& line);

private:
    int m_lowestLevel;
    bool m_admitsMessage = true;
};

/// Reads a log file that is being written, moved aside when it is full, and removed, all by
/// another process.
class LogReader {
public:
    explicit LogReader(const QString& path) : m_file(path) {}

    /// The whole lines that were added since the last call, the first time all there are.
    [[nodiscard]] QStringList newLines();

private:
    [[nodiscard]] bool isAnotherFile() const;

    QFile m_file;
    QByteArray m_unfinished; ///< a line without its end
};

} // namespace harbrix
