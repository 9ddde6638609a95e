#pragma once

#include "mount_smbfs/Answer.h"

#include <sys/stat.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace harbrix {

/// One entry of a listing, with the server's attributes.
struct ListedEntry {
    std::string name;
    struct stat attributes;
    bool isLink = false; ///< the attributes are those of the link itself, not of what it means
};

/// What a folder held when it was listed. `askedAt` is the time before the question: what changes
/// while it is answered counts as newer.
struct FolderListing {
    std::vector<ListedEntry> entries;
    std::chrono::steady_clock::time_point askedAt;
    std::chrono::steady_clock::time_point answeredAt;

    [[nodiscard]] bool isFresh() const {
        return std::chrono::steady_clock::now() < answeredAt + answersValidFor;
    }
};

using ListingPointer = std::shared_ptr<const FolderListing>;

} // namespace harbrix
