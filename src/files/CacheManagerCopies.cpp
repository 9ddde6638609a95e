#include "base/Scheduler.h"
#include "base/Worker.h"
#include "files/CacheManager.h"
#include "files/FileUrl.h"
#include "services/LogManager.h"

#include <algorithm>
#include <limits>

// How CacheManager takes files in.

namespace harbrix {
namespace {

// A share with many small files would spend its time on handing each one to a worker and back.
constexpr std::size_t offersAtOnce = 64;
// What a caller who comes meanwhile has to wait for at most, but for the copy that is under way.
constexpr std::chrono::milliseconds offersBudget{20};

/// What is there already is only looked at, which nobody needs to be told of.
bool mayCopy(const std::vector<CopyRequest>& requests) {
    return !std::ranges::all_of(requests, &CopyRequest::isPresent);
}

} // namespace

Task<std::optional<CacheEntry>> CacheManager::cacheFile(QUrl sourceURL, QUuid configID,
                                                        QString relativePath) {
    const Offer offer{sourceURL, configID, relativePath};
    auto storing = store(offer);
    auto entry = co_await storing;
    if (entry) {
        auto written = saved();
        co_await written;
    }
    co_return entry;
}

CopyRequest CacheManager::requestFor(const Offer& offer, const QByteArray& directory) const {
    return {nativePath(offer.sourceURL),
            {directory, cacheFolderName(offer.configID).toLatin1(), offer.relativePath.toUtf8()},
            m_index.find(offer.configID, offer.relativePath) != nullptr,
            isSafeRelativePath(offer.relativePath)};
}

qint64 CacheManager::roomLeft() const {
    qint64 room = 0;
    if (__builtin_sub_overflow(effectiveMaxSize(), m_index.totalSize(), &room))
        return std::numeric_limits<qint64>::min();
    return room;
}

Task<std::optional<CacheEntry>> CacheManager::store(Offer offer) {
    auto waiting = turn();
    const auto held = co_await waiting;
    const std::vector<CopyRequest> requests{requestFor(offer, nativePath(cacheDirectory()))};
    setProcessing(mayCopy(requests));
    auto copying = onWorker([requests, room = roomLeft()] {
        return copyInTurn(requests, maxSingleFileSize, room, offersBudget);
    });
    const auto outcomes = co_await copying;
    auto entering = enter(offer, requests.front(), outcomes.front());
    auto entry = co_await entering;
    setProcessing(false);
    co_return entry;
}

/// Draws the consequence of what a worker has made of an offer. The request says where the copy is:
/// the setting may name another directory by now.
Task<std::optional<CacheEntry>> CacheManager::enter(Offer offer, CopyRequest request,
                                                    CopyOutcome outcome) {
    using enum CopyOutcome::Kind;
    if (outcome.kind == NeedsRoom) {
        auto copying = copyAfterEviction(request, outcome);
        outcome = co_await copying;
    }
    switch (outcome.kind) {
    case Copied:
        co_return enterCopy(offer, request.target, outcome);
    case Present: {
        const CacheEntry* present = m_index.find(offer.configID, offer.relativePath);
        auto touched = m_index.touch(present->id, m_scheduler.wallClock());
        indexChanged();
        co_return touched;
    }
    case Unreadable:
        log(LogLevel::warning,
            QStringLiteral("Cannot read file attributes for caching: ") + pathText(offer.sourceURL),
            LogCategory::cache);
        co_return std::nullopt;
    case TooLarge:
        log(LogLevel::info,
            QStringLiteral("Skipping cache for large file (%1 bytes): ")
                    .arg(outcome.attributes.size) +
                lastPathComponent(offer.sourceURL),
            LogCategory::cache);
        co_return std::nullopt;
    case Special:
        if (m_reportedSpecials.contains({offer.configID, offer.relativePath}))
            co_return std::nullopt;
        m_reportedSpecials.insert({offer.configID, offer.relativePath});
        outcome.error.description = QStringLiteral("Not a regular file");
        break;
    case Unsafe:
        outcome.error.description =
            QStringLiteral("The path leads out of the cache: ") + offer.relativePath;
        break;
    case NeedsRoom:
    case Failed:
        break;
    }
    log(LogLevel::error, QStringLiteral("Failed to cache file: ") + outcome.error.description,
        LogCategory::cache);
    co_return std::nullopt;
}

Task<CopyOutcome> CacheManager::copyAfterEviction(CopyRequest request, CopyOutcome outcome) {
    auto evicting = evict(outcome.attributes.size);
    co_await evicting;
    auto copying = onWorker(
        [request] { return copyIntoCache(request.source, request.target, maxSingleFileSize); });
    const auto copied = co_await copying;
    outcome.kind = copied ? CopyOutcome::Kind::Copied : CopyOutcome::Kind::Failed;
    if (!copied)
        outcome.error = copied.error();
    co_return outcome;
}

CacheEntry CacheManager::enterCopy(const Offer& offer, const CopyTarget& target,
                                   const CopyOutcome& outcome) {
    CacheEntry entry;
    entry.id = QUuid::createUuid();
    entry.configID = offer.configID;
    entry.relativePath = offer.relativePath;
    entry.localURL = fileUrl(target.path());
    entry.fileSize = outcome.attributes.size;
    entry.isDirectory = outcome.attributes.isDirectory;
    entry.fileName = lastPathComponent(offer.sourceURL);
    entry.cachedAt = m_scheduler.wallClock();
    entry.lastAccessedAt = entry.cachedAt;
    m_index.insert(entry);
    indexChanged();
    log(LogLevel::info,
        QStringLiteral("Cached file: %1 (%2 bytes)").arg(entry.fileName).arg(entry.fileSize),
        LogCategory::cache);
    return entry;
}

void CacheManager::offer(const QUrl& sourceURL, const QUuid& configID,
                         const QString& relativePath) {
    const auto sizeBefore = m_offered.size();
    m_offered.insert({configID, relativePath});
    if (m_offered.size() == sizeBefore)
        return;
    m_offers.push_back({sourceURL, configID, relativePath});
    if (!m_isServingOffers)
        m_flows.launch(serveOffers());
}

void CacheManager::expectOffers(std::size_t count) {
    m_offered.reserve(m_offered.size() + static_cast<qsizetype>(count));
}

Task<void> CacheManager::serveOffers() {
    m_isServingOffers = true;
    while (!m_offers.empty()) {
        auto serving = serveSomeOffers();
        co_await serving;
    }
    m_isServingOffers = false;
    if (m_owesSyncedSave)
        requestSave();
}

/// Copies a handful one after the other. The saves run beside the next ones.
Task<void> CacheManager::serveSomeOffers() {
    auto waiting = turn();
    const auto held = co_await waiting;
    const QByteArray directory = nativePath(cacheDirectory());
    std::vector<CopyRequest> requests;
    for (std::size_t place = 0; place < std::min(m_offers.size(), offersAtOnce); ++place)
        requests.push_back(requestFor(m_offers[place], directory));
    setProcessing(mayCopy(requests));
    auto copying = onWorker([requests, room = roomLeft()] {
        return copyInTurn(requests, maxSingleFileSize, room, offersBudget);
    });
    const auto outcomes = co_await copying;
    for (std::size_t place = 0; place < outcomes.size(); ++place) {
        const Offer offer = std::move(m_offers.front());
        m_offers.pop_front();
        auto entering = enter(offer, requests[place], outcomes[place]);
        co_await entering;
        m_offered.remove({offer.configID, offer.relativePath});
    }
    setProcessing(false);
}

} // namespace harbrix
