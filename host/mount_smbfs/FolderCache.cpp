#include "mount_smbfs/FolderCache.h"

#include <algorithm>

namespace harbrix {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr auto freshFor = 1s;
// A reader of a large folder may still hold a listing of so long ago.
constexpr auto changesKeptFor = 30s;
constexpr auto listingsKeptFor = 2s;
// So many look-ups within a second pay for a listing; a larger folder needs more of them.
constexpr std::size_t fewMisses = 8;
constexpr std::size_t entriesPerMiss = 100;
// A larger listing takes too long to be worth its second.
constexpr std::size_t mostEntries = 20'000;

} // namespace

FolderCache::Knowledge FolderCache::find(Number number, const std::string& name,
                                         struct stat& attributes) const {
    const std::lock_guard lock(m_mutex);
    const auto folder = m_folders.find(number);
    if (folder == m_folders.end() || steady_clock::now() - folder->second.readAt > freshFor)
        return Knowledge::unknown;
    const auto change = folder->second.changed.find(name);
    if (change != folder->second.changed.end() && change->second.at >= folder->second.readAt)
        return Knowledge::unknown;
    const auto entry = folder->second.entries.find(name);
    if (entry == folder->second.entries.end())
        return Knowledge::absent;
    attributes = entry->second;
    return Knowledge::present;
}

void FolderCache::store(Number number, const FolderListing& listing) {
    const std::lock_guard lock(m_mutex);
    Folder& folder = m_folders[number];
    folder.lastCount = listing.entries.size();
    folder.misses = 0;
    if (listing.entries.size() > mostEntries || listing.readAt < folder.readAt)
        return;
    folder.entries.clear();
    folder.readAt = listing.readAt;
    for (const ListedEntry& entry : listing.entries)
        folder.entries.emplace(entry.name, entry.attributes);
    scheduleTidy();
}

bool FolderCache::noteMiss(Number number) {
    const std::lock_guard lock(m_mutex);
    Folder& folder = m_folders[number];
    const auto now = steady_clock::now();
    if (now - folder.missesSince > freshFor) {
        folder.missesSince = now;
        folder.misses = 0;
    }
    ++folder.misses;
    scheduleTidy();
    return folder.lastCount <= mostEntries &&
           folder.misses >= std::max(fewMisses, folder.lastCount / entriesPerMiss);
}

void FolderCache::noteChange(Number number, const std::string& name, Change change) {
    const std::lock_guard lock(m_mutex);
    // Also where there is no listing yet: one may be under way.
    m_folders[number].changed[name] = {change, steady_clock::now()};
    scheduleTidy();
}

FolderCache::Change FolderCache::changeSince(Number number, const std::string& name,
                                             TimePoint time) const {
    const std::lock_guard lock(m_mutex);
    const auto folder = m_folders.find(number);
    if (folder == m_folders.end())
        return Change::none;
    const auto change = folder->second.changed.find(name);
    const bool isNewer = change != folder->second.changed.end() && change->second.at >= time;
    return isNewer ? change->second.change : Change::none;
}

void FolderCache::scheduleTidy() {
    if (m_isTidyDue)
        return;
    m_isTidyDue = true;
    m_tidyAlarm = Watchdog::Alarm(m_watchdog, steady_clock::now() + listingsKeptFor,
                                  [this] { return tidy(); });
}

// Frees what can answer nothing any more. Returns when to look again, if anything is left.
std::optional<FolderCache::TimePoint> FolderCache::tidy() {
    const std::lock_guard lock(m_mutex);
    const auto now = steady_clock::now();
    bool hasListings = false;
    for (auto& [number, folder] : m_folders) {
        if (now - folder.readAt > freshFor)
            folder.entries = {};
        hasListings = hasListings || !folder.entries.empty();
        std::erase_if(folder.changed,
                      [&](const auto& item) { return now - item.second.at > changesKeptFor; });
    }
    std::erase_if(m_folders, [&](const auto& item) {
        const Folder& folder = item.second;
        return folder.entries.empty() && folder.changed.empty() &&
               now - folder.missesSince > changesKeptFor;
    });
    m_isTidyDue = !m_folders.empty();
    if (!m_isTidyDue)
        return std::nullopt;
    return now + (hasListings ? std::chrono::seconds(listingsKeptFor)
                              : std::chrono::seconds(changesKeptFor));
}

} // namespace harbrix
