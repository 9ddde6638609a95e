#include "platform/AppDirectories.h"

#include <QDir>
#include <QFile>

namespace harbrix {

namespace {

QString fromVariable(const char* variable, const QString& otherwise) {
    const QString value = QFile::decodeName(qgetenv(variable));
    return QDir::isAbsolutePath(value) ? QDir::cleanPath(value) : otherwise;
}

} // namespace

AppDirectories AppDirectories::ofThisUser() {
    const QString home = QDir::cleanPath(QDir::homePath());
    const QString base = home == QLatin1String("/") ? QString() : home;
    return {home,
            fromVariable("XDG_CONFIG_HOME", base + QStringLiteral("/.config")),
            fromVariable("XDG_DATA_HOME", base + QStringLiteral("/.local/share")),
            fromVariable("XDG_CACHE_HOME", base + QStringLiteral("/.cache")),
            fromVariable("TMPDIR", QStringLiteral("/tmp")),
            fromVariable("XDG_RUNTIME_DIR", QString())};
}

} // namespace harbrix
