#include "platform/FileSystem.h"

#include "base/UniqueDescriptor.h"
#include "platform/AtomicFile.h"
#include "platform/linux/MountInfo.h"
#include "platform/linux/StatfsProbe.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace harbrix {

using namespace std::chrono_literals;

namespace {

constexpr auto probeLimit = 2s;

std::vector<MountInfoRow> readMountInfo() {
    return parseMountInfo(readFile(QStringLiteral("/proc/self/mountinfo")).value_or(QByteArray()));
}

/// The number of the mount that an open file lies on. Unlike statx(2) this asks no server.
std::optional<int> mountIdOf(const UniqueDescriptor& file) {
    const auto info = readFile(QStringLiteral("/proc/self/fdinfo/%1").arg(file.get()));
    if (!info)
        return std::nullopt;
    for (const QByteArray& line : info->split('\n')) {
        if (line.startsWith("mnt_id:"))
            return line.mid(line.indexOf(':') + 1).trimmed().toInt();
    }
    return std::nullopt;
}

class KernelFileSystem final : public FileSystem {
public:
    [[nodiscard]] Kind kindOf(const QString& path) const override;
    [[nodiscard]] std::optional<QString> typeName(const QString& path) const override;
    [[nodiscard]] Result<void, SystemError> createDirectories(const QString& path) override;
    Result<void, SystemError> removeEmptyDirectory(const QString& path) override;
    [[nodiscard]] std::vector<MountEntry> mountTable() const override;

private:
    mutable StatfsProbe m_probe;
};

FileSystem::Kind KernelFileSystem::kindOf(const QString& path) const {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return Kind::Missing;
    return S_ISDIR(status.st_mode) ? Kind::Directory : Kind::Other;
}

std::optional<QString> KernelFileSystem::typeName(const QString& path) const {
    // O_PATH reaches the root of a mount, a dead one too, without a word to its server.
    UniqueDescriptor file(::open(QFile::encodeName(path).constData(), O_PATH | O_CLOEXEC));
    const auto id = file ? mountIdOf(file) : std::nullopt;
    if (!id)
        return std::nullopt;
    const auto outcome = m_probe.ask(*id, std::move(file), probeLimit);
    if (outcome.answer == StatfsProbe::Answer::Dead)
        return std::nullopt;
    const auto rows = readMountInfo();
    const auto row = std::ranges::find(rows, *id, &MountInfoRow::id);
    return fileSystemTypeName(outcome.magic,
                              row == rows.end() ? QString() : row->entry.fileSystemType);
}

Result<void, SystemError> KernelFileSystem::createDirectories(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    std::error_code error;
    std::filesystem::create_directories(name.constData(), error);
    if (error)
        return std::unexpected(systemError(error.value()));
    return {};
}

Result<void, SystemError> KernelFileSystem::removeEmptyDirectory(const QString& path) {
    if (::rmdir(QFile::encodeName(path).constData()) != 0)
        return std::unexpected(systemError(errno));
    return {};
}

std::vector<MountEntry> KernelFileSystem::mountTable() const {
    std::vector<MountEntry> entries;
    for (MountInfoRow& row : readMountInfo())
        entries.push_back(std::move(row.entry));
    return entries;
}

} // namespace

std::unique_ptr<FileSystem> FileSystem::create() {
    return std::make_unique<KernelFileSystem>();
}

} // namespace harbrix
