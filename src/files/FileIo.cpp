#include "files/FileIo.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <vector>

namespace harbrix {

std::unexpected<SystemError> lastError() {
    return std::unexpected(systemError(errno));
}

Result<UniqueDescriptor, SystemError> openForReading(const QByteArray& path, struct stat& status) {
    UniqueDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file || ::fstat(file.get(), &status) != 0)
        return lastError();
    if (S_ISDIR(status.st_mode))
        return std::unexpected(systemError(EISDIR));
    return file;
}

Result<std::size_t, SystemError> readFully(int descriptor, std::span<char> buffer) {
    std::size_t done = 0;
    while (done < buffer.size()) {
        const ssize_t count = ::read(descriptor, buffer.data() + done, buffer.size() - done);
        if (count == 0)
            break;
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return lastError();
    }
    return done;
}

Result<void, SystemError> writeFully(int descriptor, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return lastError();
    }
    return {};
}

bool itemExists(const QByteArray& path) {
    struct stat status {};
    return !path.isEmpty() && ::stat(path.constData(), &status) == 0;
}

namespace {

std::vector<QByteArray> namesIn(DIR* stream) {
    std::vector<QByteArray> names;
    while (const dirent* entry = ::readdir(stream)) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            names.emplace_back(entry->d_name);
    }
    return names;
}

/// Removes what the directory holds, as far as it lies on the given device.
void removeContents(UniqueDescriptor directory, dev_t device) {
    const DirectoryStream stream(::fdopendir(directory.get()));
    if (!stream)
        return;
    const int descriptor = directory.release();
    for (const QByteArray& name : namesIn(stream.get())) {
        struct stat status {};
        if (::fstatat(descriptor, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            status.st_dev == device)
            (void) removeTree(descriptor, name);
    }
}

} // namespace

Result<void, SystemError> removeTree(int directory, const QByteArray& name) {
    if (::unlinkat(directory, name.constData(), 0) == 0)
        return {};
    if (errno != EISDIR && errno != EPERM)
        return lastError();
    UniqueDescriptor inner(
        ::openat(directory, name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!inner || ::fstat(inner.get(), &status) != 0)
        return lastError();
    removeContents(std::move(inner), status.st_dev);
    if (::unlinkat(directory, name.constData(), AT_REMOVEDIR) != 0)
        return lastError();
    return {};
}

} // namespace harbrix
