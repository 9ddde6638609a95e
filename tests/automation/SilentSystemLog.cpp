#include "platform/SystemLog.h"

// Stands in for the real sink in this program: the records that the simulation adds and edits would
// put a million lines into the journal of whoever runs the tests.

namespace harbrix {

SystemLog::SystemLog(QString subsystem, QString category)
    : m_subsystem(subsystem.toUtf8()), m_category(category.toUtf8()) {}

bool SystemLog::isEnabled(Type) const {
    return false;
}

void SystemLog::write(Type, const QString&, const std::source_location&) const {}

} // namespace harbrix
