#include "mount_smbfs/NameMapping.h"

#include <cerrno>

namespace harbrix {

namespace {

constexpr std::size_t longestName = 255;
constexpr std::string_view reserved = "\"*:<>?\\|";
constexpr unsigned reservedBase = 0x20;
constexpr unsigned trailingBlank = 0x28;
constexpr unsigned trailingDot = 0x29;

// U+F000 + code as UTF-8; code is below 0x40.
std::string privateUse(unsigned code) {
    return {'\xEF', '\x80', static_cast<char>(0x80 + code)};
}

// Length of the UTF-8 sequence at the front, or 0 if there is none (RFC 3629).
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    }
    const bool isOverlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    const bool isSurrogate = first == 0xED && byte(1) > 0x9F;
    const bool isTooLarge = first == 0xF4 && byte(1) > 0x8F;
    return isOverlong || isSurrogate || isTooLarge ? 0 : length;
}

std::string mapped(std::string_view sequence, bool isLast) {
    const char c = sequence[0];
    if (const std::size_t index = reserved.find(c); index != std::string_view::npos)
        return privateUse(reservedBase + static_cast<unsigned>(index));
    if (static_cast<unsigned char>(c) < 0x20)
        return privateUse(static_cast<unsigned char>(c));
    if (isLast && c == ' ')
        return privateUse(trailingBlank);
    if (isLast && c == '.')
        return privateUse(trailingDot);
    return std::string(sequence);
}

char unmapped(unsigned code) {
    if (code == trailingBlank)
        return ' ';
    if (code == trailingDot)
        return '.';
    if (code >= reservedBase && code < reservedBase + reserved.size())
        return reserved[code - reservedBase];
    return code >= 1 && code < 0x20 ? static_cast<char>(code) : '\0';
}

} // namespace

std::expected<std::string, int> nameForServer(std::string_view name) {
    if (name.size() > longestName)
        return std::unexpected(ENAMETOOLONG);
    std::string text;
    while (!name.empty()) {
        const std::size_t length = sequenceLength(name);
        if (length == 0)
            return std::unexpected(EILSEQ);
        text += mapped(name.substr(0, length), name.size() == length);
        name.remove_prefix(length);
    }
    return text;
}

std::string nameFromServer(std::string_view name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name.substr(i).starts_with("\xEF\x80") && i + 2 < name.size()) {
            if (const char c = unmapped(static_cast<unsigned char>(name[i + 2]) - 0x80U)) {
                text += c;
                i += 2;
                continue;
            }
        }
        text += name[i];
    }
    return text;
}

std::string urlEncoded(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (char c : text) {
        const bool isUnreserved = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
                                  (c >= 'a' && c <= 'z') || c == '-' || c == '.' || c == '_' ||
                                  c == '~';
        if (isUnreserved) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    return encoded;
}

std::expected<std::string, int> urlPath(std::string_view path) {
    std::string url;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const auto name = nameForServer(path.substr(0, slash));
        if (!name)
            return std::unexpected(name.error());
        url += "/" + urlEncoded(*name);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    return url;
}

} // namespace harbrix
