#pragma once

#include "mount_nfs/session/Operations.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace harbrix::nfs {

/// An open directory: pages of entries with their attributes, the next one under way while one is
/// used.
class DirectoryReader : public std::enable_shared_from_this<DirectoryReader> {
public:
    /// Entries of `page` from `index` on; none left means the end.
    struct View {
        std::shared_ptr<const DirectoryPage> page;
        std::size_t index = 0;
    };

    DirectoryReader(Operations& operations, Credentials who, FileHandle directory,
                    std::uint32_t pageBytes)
        : m_operations(operations), m_who(std::move(who)), m_directory(directory),
          m_pageBytes(pageBytes) {}

    /// What follows the entry with this cookie; 0: from the beginning.
    void after(std::uint64_t cookie, Then<View> then);

private:
    struct Page {
        std::uint64_t start = 0; ///< The cookie that it was asked for with.
        std::shared_ptr<const DirectoryPage> content;
        Status status = Status::Ok;
        bool ready = false;
        std::vector<Then<View>> waiters;
    };

    std::shared_ptr<Page> fetch(std::uint64_t cookie);
    void arrived(const std::shared_ptr<Page>& page, Outcome<DirectoryPage> outcome);
    void deliver(const std::shared_ptr<Page>& page, Then<View> then);
    [[nodiscard]] std::optional<std::size_t> indexAfter(std::uint64_t cookie);

    Operations& m_operations;
    Credentials m_who;
    FileHandle m_directory;
    std::uint32_t m_pageBytes;
    Verifier m_verifier{};
    std::shared_ptr<Page> m_current;
    std::shared_ptr<Page> m_next;
    std::size_t m_hint = 0;
    std::set<std::uint64_t>
        m_starts; ///< Where pages of this pass began: a cookie seen again is a loop.
};

} // namespace harbrix::nfs
