#include "platform/LoginItem.h"

#include "platform/AtomicFile.h"

#include <QFile>

#include <unistd.h>

#include <cerrno>

namespace harbrix {
namespace {

/// A quoted argument of an Exec line, escaped twice: as an argument and as a value of type string
/// (Desktop Entry Specification 1.5). A percent sign would begin a field code.
QString execArgument(const QString& argument) {
    QString quoted;
    for (const QChar letter : argument) {
        if (letter == u'"' || letter == u'`' || letter == u'$' || letter == u'\\')
            quoted += u'\\';
        quoted += letter;
        if (letter == u'%')
            quoted += u'%';
    }
    return u'"' + quoted.replace(u'\\', QStringLiteral("\\\\")) + u'"';
}

/// Desktops leave the entry standing and switch it off with one of these.
bool isSwitchedOff(const QByteArray& entry) {
    for (const QByteArray& line : entry.split('\n')) {
        const QByteArray plain = line.simplified().replace(" ", "");
        if (plain == "Hidden=true" || plain == "X-GNOME-Autostart-enabled=false")
            return true;
    }
    return false;
}

} // namespace

LoginItem::LoginItem(const QString& configDirectory, const QString& identifier, QString command)
    : m_path(configDirectory + QStringLiteral("/autostart/") + identifier +
             QStringLiteral(".desktop")),
      m_command(std::move(command)) {}

bool LoginItem::isRegistered() const {
    const auto entry = readFile(m_path);
    return entry && !isSwitchedOff(*entry);
}

Result<void, SystemError> LoginItem::registerItem() const {
    return replaceFile(m_path, QStringLiteral("[Desktop Entry]\n"
                                              "Type=Application\n"
                                              "Name=Harbrix\n"
                                              "Exec=%1\n"
                                              "Icon=com.harbrix.app\n"
                                              "Terminal=false\n")
                                   .arg(execArgument(m_command))
                                   .toUtf8());
}

Result<void, SystemError> LoginItem::unregisterItem() const {
    if (::unlink(QFile::encodeName(m_path).constData()) == 0 || errno == ENOENT)
        return {};
    return std::unexpected(systemError(errno));
}

} // namespace harbrix
