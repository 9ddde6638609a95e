#pragma once

#include <cstddef>
#include <string_view>

namespace harbrix {

/// A password in a memory page of its own that is kept out of swap (where the limits allow it) and
/// out of core files, and is wiped when it goes.
class Secret {
public:
    static constexpr std::size_t capacity = 1023;

    Secret();
    ~Secret();
    Secret(Secret&& other) noexcept;
    Secret& operator=(Secret&& other) noexcept;

    /// False if the text no longer fits; nothing is added then.
    [[nodiscard]] bool append(char c);
    void removeLast();
    void clear();
    [[nodiscard]] bool isEmpty() const { return m_size == 0; }
    /// Valid until the next change. The byte behind it is always NUL.
    [[nodiscard]] std::string_view view() const;

private:
    char* m_page = nullptr;
    std::size_t m_size = 0;
};

/// Makes this process keep its memory to itself: no core file, no ptrace by others of the same
/// user.
void forbidMemoryDumps();

} // namespace harbrix
