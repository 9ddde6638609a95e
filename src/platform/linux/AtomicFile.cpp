#include "platform/AtomicFile.h"

#include "base/UniqueDescriptor.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace harbrix {

namespace {

std::unexpected<SystemError> failure() {
    return std::unexpected(systemError(errno));
}

QString parentOf(const QString& path) {
    return QFileInfo(path).path();
}

Result<void, SystemError> makePrivateDirectories(const QString& path) {
    if (::mkdir(QFile::encodeName(path).constData(), 0700) == 0 || errno == EEXIST)
        return {};
    if (errno != ENOENT || parentOf(path) == path)
        return failure();
    if (const auto made = makePrivateDirectories(parentOf(path)); !made)
        return made;
    if (::mkdir(QFile::encodeName(path).constData(), 0700) != 0 && errno != EEXIST)
        return failure();
    return {};
}

Result<void, SystemError> writeAndSync(int descriptor, const QByteArray& contents) {
    for (qsizetype done = 0; done < contents.size();) {
        const auto size = static_cast<std::size_t>(contents.size() - done);
        const ssize_t count = ::write(descriptor, contents.constData() + done, size);
        if (count < 0 && errno != EINTR)
            return failure();
        done += std::max<ssize_t>(count, 0);
    }
    if (::fsync(descriptor) != 0)
        return failure();
    return {};
}

} // namespace

Result<void, SystemError> makePrivateParent(const QString& path) {
    return makePrivateDirectories(parentOf(path));
}

Result<void, SystemError> replaceFile(const QString& path, const QByteArray& contents) {
    if (const auto made = makePrivateParent(path); !made)
        return made;
    QByteArray beside = QFile::encodeName(path) + ".XXXXXX";
    // mkostemp gives mode 0600 whatever the umask.
    UniqueDescriptor file(::mkostemp(beside.data(), O_CLOEXEC));
    if (!file)
        return failure();
    auto written = writeAndSync(file.get(), contents);
    if (written && ::rename(beside.constData(), QFile::encodeName(path).constData()) != 0)
        written = failure();
    if (!written) {
        ::unlink(beside.constData());
        return written;
    }
    // The rename itself is durable only once the directory is; some file systems cannot sync one.
    const UniqueDescriptor parent(
        ::open(QFile::encodeName(parentOf(path)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent)
        ::fsync(parent.get());
    return {};
}

Result<QByteArray, SystemError> readFile(const QString& path) {
    // Without O_NONBLOCK a named pipe in the file's place would stall the program.
    const UniqueDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file)
        return failure();
    QByteArray contents;
    char buffer[64 * 1024];
    while (true) {
        const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
        if (count == 0)
            return contents;
        if (count < 0 && errno != EINTR)
            return failure();
        contents.append(buffer, std::max<ssize_t>(count, 0));
    }
}

} // namespace harbrix
