#pragma once

#include "mount_smbfs/FolderListing.h"
#include "mount_smbfs/NodeTable.h"
#include "mount_smbfs/Watchdog.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace harbrix {

/// Answers look-ups from listings of the last second, for one listing costs as much as a few dozen
/// look-ups, three questions to the server each. It tells when a folder is worth listing for that.
/// It also knows which names were changed from here, and so which part of a listing is no longer
/// true. Any thread.
///
/// To the server names are alike regardless of case, and some that exist are in no listing (short
/// names, snapshots): where that may be so it knows nothing rather than something wrong.
class FolderCache {
public:
    using Number = NodeTable::Number;
    using TimePoint = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    enum class Knowledge {
        unknown, ///< ask the server
        absent,
        present,
    };

    explicit FolderCache(Watchdog& watchdog) : m_watchdog(watchdog) {}

    /// Fills in the server's answer if the name is present.
    [[nodiscard]] Knowledge find(Number folder, const std::string& name, Answer& answer);

    /// Counts a look-up that the cache could not answer and that took so long. True if a listing
    /// would be worth it by now; it is then counted as under way until store() or noteNoListing().
    [[nodiscard]] bool noteMiss(Number folder, Duration cost);
    void store(Number folder, ListingPointer listing);
    void noteNoListing(Number folder);

    /// To be called after the server has made or altered the name, or may have, so that a listing
    /// from before counts as older.
    void noteChange(Number folder, const std::string& name);
    /// The same for a name that is gone.
    void noteRemoval(Number folder, const std::string& name);
    [[nodiscard]] bool wasChangedSince(Number folder, const std::string& name,
                                       TimePoint time) const;
    [[nodiscard]] bool wasRemovedSince(Number folder, const std::string& name,
                                       TimePoint time) const;

private:
    using Times = std::unordered_map<std::string, TimePoint>;
    struct Folder {
        ListingPointer listing;
        // Made from the listing with the first question.
        std::unordered_map<std::string_view, const ListedEntry*> byName;
        std::unordered_set<std::string> foldedNames;

        Times changed; ///< by folded name
        Times removed; ///< by name

        bool isListing = false;
        std::optional<Duration> listingCost; ///< of the last one
        Duration spent{};                    ///< on misses, and what the last listing has saved
        Duration missCost{};
        unsigned misses = 0;
        TimePoint missesSince;
        TimePoint usedAt;
    };

    static void buildIndex(Folder& folder);
    static void dropListing(Folder& folder);
    void scheduleTidy();
    [[nodiscard]] std::optional<TimePoint> tidy();

    Watchdog& m_watchdog;
    mutable std::mutex m_mutex;
    std::map<Number, Folder> m_folders;
    bool m_isTidyDue = false;
    Watchdog::Alarm m_tidyAlarm;
};

} // namespace harbrix
