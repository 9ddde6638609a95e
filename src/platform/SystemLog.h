#pragma once

#include <QByteArray>
#include <QString>

#include <source_location>

namespace harbrix {

/// One logger of the system's log, for a subsystem and a category: the systemd journal with both as
/// fields (SUBSYSTEM, CATEGORY), or standard error where there is no journal. Thread-safe.
class SystemLog {
public:
    /// The kinds of message, each with its journal priority (syslog(3)).
    enum class Type { Debug, Info, Default, Error, Fault };

    SystemLog(QString subsystem, QString category);

    /// False where nothing would be written, so that the caller need not build the text.
    [[nodiscard]] bool isEnabled(Type type) const;
    void write(Type type, const QString& message,
               const std::source_location& where = std::source_location::current()) const;

private:
    QByteArray m_subsystem;
    QByteArray m_category;
};

} // namespace harbrix
