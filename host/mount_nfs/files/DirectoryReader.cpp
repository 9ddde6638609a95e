#include "mount_nfs/files/DirectoryReader.h"

#include <utility>

namespace harbrix::nfs {

void DirectoryReader::after(std::uint64_t cookie, Then<View> then) {
    if (cookie == 0) {
        m_starts.clear();
        m_verifier = {};
        m_next = nullptr;
        m_current = fetch(0);
        return deliver(m_current, std::move(then));
    }
    if (const auto index = indexAfter(cookie)) {
        const auto& content = m_current->content;
        if (*index < content->entries.size() || content->end) {
            m_hint = *index;
            return then(View{content, *index});
        }
        m_current = m_next ? std::exchange(m_next, nullptr) : fetch(cookie);
        return deliver(m_current, std::move(then));
    }
    // The reader has gone to another place.
    m_starts.clear();
    m_next = nullptr;
    m_current = fetch(cookie);
    deliver(m_current, std::move(then));
}

std::optional<std::size_t> DirectoryReader::indexAfter(std::uint64_t cookie) {
    if (!m_current || !m_current->content)
        return std::nullopt;
    const auto& entries = m_current->content->entries;
    if (cookie == m_current->start && !entries.empty())
        return 0;
    for (std::size_t step = 0; step < entries.size(); ++step) {
        const std::size_t index = (m_hint + step) % entries.size();
        if (entries[index].cookie == cookie)
            return index + 1;
    }
    return std::nullopt;
}

std::shared_ptr<DirectoryReader::Page> DirectoryReader::fetch(std::uint64_t cookie) {
    auto page = std::make_shared<Page>();
    page->start = cookie;
    m_hint = 0;
    if (!m_starts.insert(cookie).second) {
        page->status = Status::Io;
        page->ready = true;
        return page;
    }
    m_operations.readDirectory(m_who, m_directory, cookie, m_verifier, m_pageBytes,
                               [self = shared_from_this(), page](Outcome<DirectoryPage> outcome) {
                                   self->arrived(page, std::move(outcome));
                               });
    return page;
}

void DirectoryReader::arrived(const std::shared_ptr<Page>& page, Outcome<DirectoryPage> outcome) {
    page->ready = true;
    if (!outcome) {
        page->status = outcome.error();
    } else if (outcome->entries.empty() && !outcome->end) {
        page->status = Status::Io; // a server that makes no progress
    } else {
        m_verifier = outcome->verifier;
        page->content = std::make_shared<const DirectoryPage>(std::move(*outcome));
        if (page == m_current && !page->content->end)
            m_next = fetch(page->content->entries.back().cookie);
    }
    for (auto& then : std::exchange(page->waiters, {}))
        deliver(page, std::move(then));
}

void DirectoryReader::deliver(const std::shared_ptr<Page>& page, Then<View> then) {
    if (!page->ready) {
        page->waiters.push_back(std::move(then));
        return;
    }
    if (page->status != Status::Ok)
        return then(std::unexpected(page->status));
    if (page == m_current && !m_next && !page->content->end)
        m_next = fetch(page->content->entries.back().cookie);
    then(View{page->content, 0});
}

} // namespace harbrix::nfs
