#pragma once

#include "mount_smbfs/FolderListing.h"
#include "mount_smbfs/NodeTable.h"
#include "mount_smbfs/Watchdog.h"

#include <sys/stat.h>

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace harbrix {

/// Answers look-ups from listings of the last second: one listing costs as much as a few dozen
/// look-ups, three questions to the server each. A folder is listed for that when many of its names
/// are looked up at a time. It also knows which names were changed from here, and so which part of
/// a listing is no longer true. Any thread.
class FolderCache {
public:
    using Number = NodeTable::Number;
    using TimePoint = std::chrono::steady_clock::time_point;

    enum class Knowledge {
        unknown, ///< ask the server
        absent,
        present,
    };
    enum class Change {
        none,
        changed, ///< made or altered
        removed,
    };

    explicit FolderCache(Watchdog& watchdog) : m_watchdog(watchdog) {}

    /// Fills in the attributes of a name that is present.
    [[nodiscard]] Knowledge find(Number folder, const std::string& name,
                                 struct stat& attributes) const;

    void store(Number folder, const FolderListing& listing);

    /// Counts a look-up that the cache could not answer; true if a listing would be worth it by
    /// now.
    [[nodiscard]] bool noteMiss(Number folder);

    /// To be called after the server has done it, so that a listing from before counts as older.
    void noteChange(Number folder, const std::string& name, Change change);
    [[nodiscard]] Change changeSince(Number folder, const std::string& name, TimePoint time) const;

private:
    struct ChangedName {
        Change change;
        TimePoint at;
    };
    struct Folder {
        std::unordered_map<std::string, struct stat> entries;
        std::unordered_map<std::string, ChangedName> changed;
        TimePoint readAt;
        TimePoint missesSince;
        std::size_t lastCount = 0;
        unsigned misses = 0;
    };

    void scheduleTidy();
    [[nodiscard]] std::optional<TimePoint> tidy();

    Watchdog& m_watchdog;
    mutable std::mutex m_mutex;
    std::map<Number, Folder> m_folders;
    bool m_isTidyDue = false;
    Watchdog::Alarm m_tidyAlarm;
};

} // namespace harbrix
