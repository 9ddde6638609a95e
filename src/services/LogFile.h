#pragma once

#include "services/UtilityQueue.h"

#include <QString>

namespace harbrix {

/// The log file with its one older generation. Lines are written one after the other, apart from
/// whoever logs them; what is still queued at the end is dropped. Any thread; every failure is
/// swallowed.
class LogFile {
public:
    /// `maxSize` in bytes: a write that finds the file this large moves it aside first.
    LogFile(const QString& directory, qint64 maxSize);

    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] const QString& rotatedPath() const { return m_rotatedPath; }

    /// Queues the line, to which a line feed is added.
    void append(const QString& line);
    /// Queues the removal of both files.
    void clear();
    /// Waits until all that was queued before is done.
    void waitForWrites();

private:
    void write(const QString& line) const;

    QString m_path;
    QString m_rotatedPath;
    qint64 m_maxSize;
    UtilityQueue m_queue;
};

} // namespace harbrix
