#include "mount_smbfs/ServerTree.h"

#include <algorithm>
#include <cerrno>

namespace harbrix {

namespace {

using std::chrono::steady_clock;

constexpr mode_t anyExecute = S_IXUSR | S_IXGRP | S_IXOTH;

// The library counts in sectors of a unit and leaves out what the kernel wants to know.
struct statvfs normalised(const struct statvfs& info) {
    struct statvfs result = info;
    const unsigned long unit = info.f_bsize * std::max(1UL, info.f_frsize);
    result.f_bsize = unit;
    result.f_frsize = unit;
    result.f_namemax = 255;
    result.f_flag = 0;
    return result;
}

// What libsmbclient makes of a server's refusal to delete or replace a read-only file.
bool mayMeanReadOnly(int error) {
    return error == EACCES || error == EPERM || error == EEXIST || error == EINVAL;
}

bool isReadOnlyFile(const struct stat& info) {
    return S_ISREG(info.st_mode) && (info.st_mode & anyWrite) == 0;
}

Outcome<Answer> answered(const Outcome<struct stat>& info) {
    if (!info)
        return std::unexpected(info.error());
    return Answer{*info, steady_clock::now()};
}

} // namespace

template <typename Operation>
auto ServerTree::call(Repeat repeat, Operation&& operation) {
    return m_link.call({.kind = CallKind::metadata, .repeat = repeat},
                       std::forward<Operation>(operation));
}

Outcome<Answer> ServerTree::attributes(const std::string& path) {
    return answered(
        call(Repeat::once, [&](Lane& lane) { return lane.connection.attributes(path); }));
}

Outcome<ListingPointer> ServerTree::list(const std::string& path, const CallPlan& plan) {
    const auto listing = std::make_shared<FolderListing>();
    listing->askedAt = steady_clock::now();
    auto entries = m_link.call(plan, [&](Lane& lane) { return lane.connection.list(path); });
    if (!entries)
        return std::unexpected(entries.error());
    listing->answeredAt = steady_clock::now();
    listing->entries = std::move(*entries);
    return listing;
}

Outcome<struct statvfs> ServerTree::capacity() {
    const auto info = call(Repeat::once, [](Lane& lane) { return lane.connection.capacity(); });
    if (!info)
        return info;
    return normalised(*info);
}

Outcome<Answer> ServerTree::makeFolder(const std::string& path) {
    return answered(call(
        Repeat::never, [&](Lane & lane) -> Outcome<struct stat> {
            if (auto made = lane.connection.makeFolder(path); !made)
                return std::unexpected(made.error());
            return lane.connection.attributes(path);
        }));
}

Outcome<void> ServerTree::removeFolder(const std::string& path) {
    return call(Repeat::never, [&](Lane& lane) { return lane.connection.removeFolder(path); });
}

Outcome<void> ServerTree::removeFile(const std::string& path) {
    const auto remove = [&] {
        return call(Repeat::never, [&](Lane& lane) { return lane.connection.removeFile(path); });
    };
    const auto removed = remove();
    if (removed || !mayMeanReadOnly(removed.error()))
        return removed;
    const auto there = attributes(path);
    if (!there || !isReadOnlyFile(there->attributes) ||
        !setWritable(path, there->attributes.st_mode, true))
        return removed;
    const auto again = remove();
    if (!again)
        (void) setWritable(path, there->attributes.st_mode, false);
    return again;
}

Outcome<void> ServerTree::rename(const std::string& from, const std::string& to) {
    const auto rename = [&] {
        return call(Repeat::never, [&](Lane& lane) { return lane.connection.rename(from, to); });
    };
    const auto renamed = rename();
    if (renamed || !mayMeanReadOnly(renamed.error()))
        return renamed;
    const auto there = attributes(to);
    if (!there || !isReadOnlyFile(there->attributes) ||
        !setWritable(to, there->attributes.st_mode, true))
        return renamed;
    const auto again = rename();
    if (!again)
        (void) setWritable(to, there->attributes.st_mode, false);
    return again;
}

Outcome<void> ServerTree::setWritable(const std::string& path, mode_t serverMode, bool isWritable) {
    // The library sees the archive, system and hidden attributes in the execute bits: keep those.
    const mode_t mode = (serverMode & anyExecute) | (isWritable ? 0666 : 0444);
    return call(Repeat::once, [&](Lane& lane) { return lane.connection.setMode(path, mode); });
}

Outcome<void> ServerTree::setTimes(const std::string& path, timespec access,
                                   timespec modification) {
    return call(Repeat::once,
                [&](Lane& lane) { return lane.connection.setTimes(path, access, modification); });
}

} // namespace harbrix
