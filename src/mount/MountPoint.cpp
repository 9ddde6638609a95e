#include "mount/MountPoint.h"

namespace harbrix {

QUrl directoryUrl(const QString& path) {
    return QUrl::fromLocalFile(path.endsWith(u'/') ? path : path + u'/');
}

QString directoryPath(const QUrl& url) {
    QString path = url.toLocalFile();
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

} // namespace harbrix
