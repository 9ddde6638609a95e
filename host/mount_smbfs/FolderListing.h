#pragma once

#include <sys/stat.h>

#include <chrono>
#include <string>
#include <vector>

namespace harbrix {

/// One entry of a listing, with the server's attributes.
struct ListedEntry {
    std::string name;
    struct stat attributes;
};

/// What a folder held when it was listed. `readAt` is the time before the question: what changes
/// while it is answered counts as newer.
struct FolderListing {
    std::vector<ListedEntry> entries;
    std::chrono::steady_clock::time_point readAt;
};

} // namespace harbrix
