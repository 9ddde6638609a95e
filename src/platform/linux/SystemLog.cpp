#include "platform/SystemLog.h"

// The macros would record this file as the place of every message.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <fcntl.h>
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace harbrix {

namespace {

constexpr auto journalSocket = "/run/systemd/journal/socket";

int priorityOf(SystemLog::Type type) {
    switch (type) {
    case SystemLog::Type::Debug:
        return LOG_DEBUG;
    case SystemLog::Type::Info:
        return LOG_INFO;
    case SystemLog::Type::Default:
        return LOG_NOTICE;
    case SystemLog::Type::Error:
        return LOG_ERR;
    case SystemLog::Type::Fault:
        return LOG_CRIT;
    }
    return LOG_NOTICE;
}

const char* nameOf(SystemLog::Type type) {
    switch (type) {
    case SystemLog::Type::Debug:
        return "debug";
    case SystemLog::Type::Info:
        return "info";
    case SystemLog::Type::Default:
        return "notice";
    case SystemLog::Type::Error:
        return "error";
    case SystemLog::Type::Fault:
        return "fault";
    }
    return "notice";
}

/// sd_journal_sendv() reports success where there is no journal, so it is asked for first.
bool journalIsThere() {
    return ::access(journalSocket, W_OK) == 0;
}

bool standardErrorIsOpen() {
    return ::fcntl(STDERR_FILENO, F_GETFD) >= 0;
}

iovec asVector(const QByteArray& field) {
    return {const_cast<char*>(field.constData()), static_cast<std::size_t>(field.size())};
}

} // namespace

SystemLog::SystemLog(QString subsystem, QString category)
    : m_subsystem(std::move(subsystem).toUtf8()), m_category(std::move(category).toUtf8()) {}

bool SystemLog::isEnabled(Type) const {
    // The journal takes every priority; what is kept and shown is its own setting.
    return journalIsThere() || standardErrorIsOpen();
}

void SystemLog::write(Type type, const QString& message, const std::source_location& where) const {
    const QByteArray text = message.toUtf8();
    if (journalIsThere()) {
        const QByteArray fields[] = {
            "MESSAGE=" + text,
            "PRIORITY=" + QByteArray::number(priorityOf(type)),
            "SYSLOG_IDENTIFIER=harbrix",
            "SUBSYSTEM=" + m_subsystem,
            "CATEGORY=" + m_category,
            QByteArray("CODE_FILE=") + where.file_name(),
            "CODE_LINE=" + QByteArray::number(where.line()),
            QByteArray("CODE_FUNC=") + where.function_name(),
        };
        iovec vectors[std::size(fields)];
        std::transform(std::begin(fields), std::end(fields), vectors, asVector);
        if (::sd_journal_sendv(vectors, std::size(vectors)) == 0)
            return;
    }
    // One call, so that lines of several threads do not mix.
    const QByteArray line =
        m_subsystem + " [" + m_category + "] " + nameOf(type) + ": " + text + "\n";
    while (::write(STDERR_FILENO, line.constData(), static_cast<std::size_t>(line.size())) < 0 &&
           errno == EINTR) {
    }
}

} // namespace harbrix
