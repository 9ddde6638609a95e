#pragma once

#include "ctl/LogReader.h"

#include <QFileSystemWatcher>
#include <QObject>

namespace harbrix {

class RunningProgram;

/// Prints what is added to a log file until the program goes away, which ends the event loop.
class LogFollower : public QObject {
    Q_OBJECT

public:
    /// Goes on where the reader and the filter stand.
    LogFollower(const RunningProgram& program, const QString& path, LogReader& reader,
                LogFilter& filter);

private:
    void printNewLines();

    QString m_path;
    LogReader& m_reader;
    LogFilter& m_filter;
    QFileSystemWatcher m_watcher;
};

} // namespace harbrix
