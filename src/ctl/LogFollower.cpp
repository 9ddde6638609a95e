#include "ctl/LogFollower.h"

#include "ctl/RunningProgram.h"
#include "ctl/StandardStreams.h"
#include "ctl/Table.h"

#include <QFileInfo>

namespace harbrix {

LogFollower::LogFollower(const RunningProgram& program, const QString& path, LogReader& reader,
                         LogFilter& filter)
    : m_path(path), m_reader(reader), m_filter(filter) {
    program.exitWhenGone(this);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &LogFollower::printNewLines);
    // A file that is moved aside or removed is watched no more; its folder tells of the next one.
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &LogFollower::printNewLines);
    m_watcher.addPath(QFileInfo(path).path());
    printNewLines();
}

void LogFollower::printNewLines() {
    if (!m_watcher.files().contains(m_path) && QFileInfo::exists(m_path))
        m_watcher.addPath(m_path); // before the look, so that nothing falls in between
    for (const QString& line : m_reader.newLines())
        if (m_filter.admits(line))
            print(visible(line) + u'\n');
}

} // namespace harbrix
