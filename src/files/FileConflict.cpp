#include "files/FileConflict.h"

#include "files/FileIo.h"
#include "files/FileUrl.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace harbrix {
namespace {

bool isDirectory(const QUrl& url) {
    struct stat status {};
    return url.path().endsWith(u'/') ||
           (::stat(nativePath(url).constData(), &status) == 0 && S_ISDIR(status.st_mode));
}

} // namespace

QString rawValue(ConflictResolution resolution) {
    switch (resolution) {
    case ConflictResolution::overwrite:
        return QStringLiteral("overwrite");
    case ConflictResolution::rename:
        return QStringLiteral("rename");
    case ConflictResolution::skip:
        return QStringLiteral("skip");
    }
    return {};
}

DropPlan planDrop(const QList<QUrl>& dropped, const QUrl& directory) {
    DropPlan plan;
    for (const QUrl& source : dropped) {
        if (nativePath(source).isEmpty() || isDirectory(source))
            continue;
        const QUrl destination = childUrl(directory, nativeName(source));
        if (itemExists(nativePath(destination)))
            plan.conflict =
                FileConflict{QUuid::createUuid(), source, destination, isDirectory(destination)};
        else
            plan.uploads.append(source);
    }
    return plan;
}

QByteArray freeName(const QUrl& directory, const QByteArray& name) {
    const SplitName parts = splitName(name);
    const QByteArray ending = parts.extension.isEmpty() ? QByteArray() : '.' + parts.extension;
    QByteArray candidate = name;
    for (int counter = 1; itemExists(nativePath(childUrl(directory, candidate))); ++counter)
        candidate = parts.base + " (" + QByteArray::number(counter) + ')' + ending;
    return candidate;
}

Result<void, SystemError> moveAside(const FileConflict& conflict, const QUrl& directory) {
    const QByteArray from = nativePath(conflict.destination);
    const QByteArray to =
        nativePath(childUrl(directory, freeName(directory, nativeName(conflict.destination))));
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return {};
    // Few network file systems know the flag; the name was free a moment ago.
    if (errno == EINVAL && ::rename(from.constData(), to.constData()) == 0)
        return {};
    return lastError();
}

} // namespace harbrix
