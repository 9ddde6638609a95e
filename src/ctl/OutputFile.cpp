#include "ctl/OutputFile.h"

#include "base/Result.h"

#include <QFile>
#include <QTemporaryFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace harbrix {
namespace {

constexpr qint64 longestInput = 64 << 20;

std::unexpected<QString> failure(const QString& path, const QString& reason) {
    return std::unexpected(QStringLiteral("%1: %2").arg(path, reason));
}

/// Gives the file its name; the errno of a failure, EEXIST where the name is taken.
int giveName(const QByteArray& temporary, const QByteArray& path, ExistingFile existing) {
    if (existing == ExistingFile::Replaced)
        return ::rename(temporary.constData(), path.constData()) == 0 ? 0 : errno;
    if (::renameat2(AT_FDCWD, temporary.constData(), AT_FDCWD, path.constData(),
                    RENAME_NOREPLACE) == 0)
        return 0;
    // Not every file system can do that, and those mostly know hard links.
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    if (::link(temporary.constData(), path.constData()) != 0)
        return errno;
    ::unlink(temporary.constData());
    return 0;
}

} // namespace

std::expected<void, QString> writeFile(const QString& path, const QByteArray& contents,
                                       ExistingFile existing) {
    // Beside its place; such files have mode 0600 from the beginning and go when anything fails.
    QTemporaryFile file(path + QStringLiteral(".XXXXXX"));
    if (!file.open() || file.write(contents) != contents.size() || !file.flush())
        return failure(path, file.errorString());
    if (::fsync(file.handle()) != 0)
        return failure(path, systemError(errno).description);
    const int error =
        giveName(QFile::encodeName(file.fileName()), QFile::encodeName(path), existing);
    if (error == EEXIST)
        return failure(path, QStringLiteral("the file is there already; --force replaces it"));
    if (error != 0)
        return failure(path, systemError(error).description);
    file.setAutoRemove(false);
    return {};
}

std::expected<QByteArray, QString> readInput(const QString& path) {
    QFile file(path);
    const bool isOpen =
        path == "-" ? file.open(STDIN_FILENO, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!isOpen)
        return failure(path, file.errorString());
    const QByteArray contents = file.read(longestInput + 1);
    if (file.error() != QFileDevice::NoError)
        return failure(path, file.errorString());
    if (contents.size() > longestInput)
        return failure(path, QStringLiteral("the file is longer than 64 MiB"));
    return contents;
}

} // namespace harbrix
