#include "mount_smbfs/FolderCache.h"

#include <algorithm>

namespace harbrix {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// A reader of a large folder may still hold a listing of so long ago.
constexpr auto changesKeptFor = 30s;
constexpr auto listingsKeptFor = 2s;
// What a listing costs is remembered for longer, so that a huge folder is not tried again soon.
constexpr auto costsKeptFor = 10min;
// Look-ups within a second before a folder of unknown size is listed, and before any is.
constexpr unsigned missesOfUnknown = 32;
constexpr unsigned fewestMisses = 8;

bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

// Names that the server may take for the same have the same folded name; so may a few others.
std::string folded(std::string_view name) {
    std::string text;
    text.reserve(name.size());
    for (char c : name) {
        if (c >= 'A' && c <= 'Z')
            text += static_cast<char>(c - 'A' + 'a');
        else if (isAscii(c))
            text += c;
        else if (text.empty() || isAscii(text.back()))
            text += '\x80';
    }
    return text;
}

// Whether a name that exists is sure to be in the listing: neither a short name nor one of the
// hidden entries to snapshots, which begin with a dot or an at sign.
bool isSurelyListed(std::string_view name) {
    return !name.empty() && name.front() != '.' && name.front() != '@' &&
           std::all_of(name.begin(), name.end(), [](char c) { return isAscii(c) && c != '~'; });
}

bool isSince(const std::unordered_map<std::string, FolderCache::TimePoint>& times,
             const std::string& name, FolderCache::TimePoint time) {
    const auto found = times.find(name);
    return found != times.end() && found->second >= time;
}

} // namespace

void FolderCache::buildIndex(Folder& folder) {
    if (!folder.byName.empty())
        return;
    folder.byName.reserve(folder.listing->entries.size());
    folder.foldedNames.reserve(folder.listing->entries.size());
    for (const ListedEntry& entry : folder.listing->entries) {
        folder.byName.emplace(entry.name, &entry);
        folder.foldedNames.insert(folded(entry.name));
    }
}

void FolderCache::dropListing(Folder& folder) {
    folder.byName = {};
    folder.foldedNames = {};
    folder.listing = nullptr;
}

FolderCache::Knowledge FolderCache::find(Number number, const std::string& name, Answer& answer) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_folders.find(number);
    if (found == m_folders.end() || !found->second.listing || !found->second.listing->isFresh())
        return Knowledge::unknown;
    Folder& folder = found->second;
    const std::string key = folded(name);
    if (isSince(folder.changed, key, folder.listing->askedAt))
        return Knowledge::unknown;
    buildIndex(folder);
    const auto entry = folder.byName.find(name);
    if (entry == folder.byName.end()) {
        if (!isSurelyListed(name) || folder.foldedNames.contains(key))
            return Knowledge::unknown;
    } else if (entry->second->isLink) {
        return Knowledge::unknown;
    }
    folder.spent += folder.missCost;
    if (entry == folder.byName.end())
        return Knowledge::absent;
    answer = {entry->second->attributes, folder.listing->answeredAt};
    return Knowledge::present;
}

bool FolderCache::noteMiss(Number number, Duration cost) {
    const std::lock_guard lock(m_mutex);
    Folder& folder = m_folders[number];
    scheduleTidy();
    const auto now = steady_clock::now();
    folder.usedAt = now;
    if (now - folder.missesSince > answersValidFor) {
        folder.missesSince = now;
        folder.misses = 0;
        // What the listing has saved until now speaks for the next one; older misses do not.
        if (!folder.listing)
            folder.spent = {};
    }
    folder.missCost = cost;
    folder.spent += cost;
    ++folder.misses;
    const bool isWorthIt = folder.listingCost
                               ? *folder.listingCost < answersValidFor &&
                                     folder.spent >= *folder.listingCost &&
                                     (folder.misses >= fewestMisses || folder.listing)
                               : folder.misses >= missesOfUnknown;
    if (!isWorthIt || folder.isListing)
        return false;
    folder.isListing = true;
    return true;
}

void FolderCache::store(Number number, ListingPointer listing) {
    const std::lock_guard lock(m_mutex);
    Folder& folder = m_folders[number];
    scheduleTidy();
    folder.isListing = false;
    folder.usedAt = steady_clock::now();
    folder.listingCost = listing->answeredAt - listing->askedAt;
    if (folder.listing && listing->askedAt < folder.listing->askedAt)
        return;
    dropListing(folder);
    folder.spent = {};
    folder.misses = 0;
    folder.listing = std::move(listing);
}

void FolderCache::noteNoListing(Number number) {
    const std::lock_guard lock(m_mutex);
    m_folders[number].isListing = false;
}

void FolderCache::noteChange(Number number, const std::string& name) {
    const std::lock_guard lock(m_mutex);
    // Also where there is no listing yet: one may be under way.
    Folder& folder = m_folders[number];
    scheduleTidy();
    folder.changed[folded(name)] = steady_clock::now();
    folder.removed.erase(name);
}

void FolderCache::noteRemoval(Number number, const std::string& name) {
    const std::lock_guard lock(m_mutex);
    Folder& folder = m_folders[number];
    scheduleTidy();
    const auto now = steady_clock::now();
    folder.changed[folded(name)] = now;
    folder.removed[name] = now;
}

bool FolderCache::wasChangedSince(Number number, const std::string& name, TimePoint time) const {
    const std::lock_guard lock(m_mutex);
    const auto folder = m_folders.find(number);
    return folder != m_folders.end() && !folder->second.changed.empty() &&
           isSince(folder->second.changed, folded(name), time);
}

bool FolderCache::wasRemovedSince(Number number, const std::string& name, TimePoint time) const {
    const std::lock_guard lock(m_mutex);
    const auto folder = m_folders.find(number);
    return folder != m_folders.end() && isSince(folder->second.removed, name, time);
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
    bool hasChanges = false;
    for (auto& [number, folder] : m_folders) {
        if (folder.listing && now - folder.listing->answeredAt > listingsKeptFor)
            dropListing(folder);
        const auto isOld = [&](const auto& item) { return now - item.second > changesKeptFor; };
        std::erase_if(folder.changed, isOld);
        std::erase_if(folder.removed, isOld);
        hasListings = hasListings || folder.listing;
        hasChanges = hasChanges || !folder.changed.empty() || !folder.removed.empty();
    }
    std::erase_if(m_folders, [&](const auto& item) {
        const Folder& folder = item.second;
        return !folder.listing && folder.changed.empty() && folder.removed.empty() &&
               !folder.isListing && now - folder.usedAt > costsKeptFor;
    });
    m_isTidyDue = hasListings || hasChanges;
    if (!m_isTidyDue)
        return std::nullopt;
    return now + (hasListings ? std::chrono::seconds(listingsKeptFor)
                              : std::chrono::seconds(changesKeptFor));
}

} // namespace harbrix
