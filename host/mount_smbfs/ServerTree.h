#pragma once

#include "mount_smbfs/Answer.h"
#include "mount_smbfs/FolderListing.h"
#include "mount_smbfs/ServerLink.h"

#include <sys/statvfs.h>

#include <string>

namespace harbrix {

constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

/// The share by path, "a/b", empty for the mounted folder. As on Linux a read-only file keeps its
/// content safe, not its name: it can be removed and replaced. Blocking calls, from any thread; the
/// error is an errno value.
class ServerTree {
public:
    explicit ServerTree(ServerLink& link) : m_link(link) {}

    [[nodiscard]] Outcome<Answer> attributes(const std::string& path);
    [[nodiscard]] Outcome<ListingPointer> list(const std::string& path, const CallPlan& plan);
    [[nodiscard]] Outcome<struct statvfs> capacity();

    [[nodiscard]] Outcome<Answer> makeFolder(const std::string& path);
    [[nodiscard]] Outcome<void> removeFolder(const std::string& path);
    [[nodiscard]] Outcome<void> removeFile(const std::string& path);
    [[nodiscard]] Outcome<void> rename(const std::string& from, const std::string& to);

    /// `serverMode` is the mode as the server told it.
    [[nodiscard]] Outcome<void> setWritable(const std::string& path, mode_t serverMode,
                                            bool isWritable);
    [[nodiscard]] Outcome<void> setTimes(const std::string& path, timespec access,
                                         timespec modification);

private:
    template <typename Operation>
    auto call(Repeat repeat, Operation&& operation);

    ServerLink& m_link;
};

} // namespace harbrix
