#include "common/MountClaim.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace harbrix {

namespace {

// Only a folder of the owner's own, which nobody else can write, can be trusted with names to
// signal.
bool isPrivateFolder(const std::string& path, uid_t owner) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == owner &&
           (info.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// Every folder in which a daemon of this user may have left its claim, the best first.
std::vector<std::string> candidateFolders(uid_t owner) {
    std::vector<std::string> folders;
    if (owner == 0)
        folders.emplace_back("/run");
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && *runtime == '/')
        folders.emplace_back(runtime);
    folders.push_back("/run/user/" + std::to_string(owner));
    return folders;
}

std::optional<std::string> privateFolder(const std::string& folder, uid_t owner) {
    if (isPrivateFolder(folder, owner))
        return folder + "/harbrix-mounts";
    return std::nullopt;
}

std::vector<std::string> claimFolders(uid_t owner) {
    std::vector<std::string> folders;
    for (const std::string& candidate : candidateFolders(owner)) {
        if (auto folder = privateFolder(candidate, owner))
            folders.push_back(std::move(*folder));
    }
    folders.push_back("/tmp/harbrix-mounts-" + std::to_string(owner));
    return folders;
}

std::string fileName(const MountEntry& entry) {
    return std::to_string(entry.deviceMajor) + ":" + std::to_string(entry.deviceMinor);
}

struct flock wholeFile() {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

} // namespace

MountClaim MountClaim::take(const MountEntry& entry) {
    MountClaim claim;
    for (const std::string& folder : claimFolders(::geteuid())) {
        if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
            continue;
        if (!isPrivateFolder(folder, ::geteuid()))
            continue;
        const std::string path = folder + "/" + fileName(entry);
        UniqueDescriptor file(
            ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        struct flock lock = wholeFile();
        if (!file || ::fcntl(file.get(), F_SETLK, &lock) != 0)
            continue;
        claim.m_file = std::move(file);
        claim.m_path = path;
        break;
    }
    return claim;
}

MountClaim& MountClaim::operator=(MountClaim&& other) noexcept {
    giveBack();
    m_file = std::move(other.m_file);
    m_path = std::move(other.m_path);
    return *this;
}

MountClaim::~MountClaim() {
    giveBack();
}

void MountClaim::giveBack() {
    // Unlinked while still locked: whoever claims the same number next makes a file of its own.
    if (m_file)
        ::unlink(m_path.c_str());
    m_file.reset();
}

std::optional<pid_t> MountClaim::holder(const MountEntry& entry) {
    const uid_t owner = entry.fuseOwner().value_or(::geteuid());
    for (const std::string& folder : claimFolders(owner)) {
        if (!isPrivateFolder(folder, owner))
            continue;
        const std::string path = folder + "/" + fileName(entry);
        const UniqueDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
        struct flock lock = wholeFile();
        if (file && ::fcntl(file.get(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK &&
            lock.l_pid > 0)
            return lock.l_pid;
    }
    return std::nullopt;
}

} // namespace harbrix
