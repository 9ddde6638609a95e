#include "common/MountTable.h"

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>

namespace harbrix {

namespace {

// Blanks, tabs, line ends and backslashes stand as three octal digits behind a backslash.
std::string unescape(std::string_view field) {
    std::string text;
    const auto octal = [](char c) { return c >= '0' && c <= '7'; };
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && octal(field[i + 1]) &&
            octal(field[i + 2]) && octal(field[i + 3])) {
            text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                      (field[i + 3] - '0'));
            i += 3;
        } else {
            text += field[i];
        }
    }
    return text;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return parts;
}

template <typename Number>
std::optional<Number> number(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<MountEntry> parseLine(std::string_view line) {
    const auto fields = split(line, ' ');
    // The optional fields between the mount options and the lone hyphen vary in number.
    std::size_t hyphen = 6;
    while (hyphen < fields.size() && fields[hyphen] != "-")
        ++hyphen;
    if (hyphen + 2 >= fields.size())
        return std::nullopt;
    const auto device = split(fields[2], ':');
    if (device.size() != 2)
        return std::nullopt;
    const auto major = number<unsigned>(device[0]);
    const auto minor = number<unsigned>(device[1]);
    if (!major || !minor)
        return std::nullopt;
    MountEntry entry;
    entry.deviceMajor = *major;
    entry.deviceMinor = *minor;
    entry.mountPoint = unescape(fields[4]);
    entry.options = unescape(fields[5]);
    entry.fileSystemType = unescape(fields[hyphen + 1]);
    entry.source = unescape(fields[hyphen + 2]);
    if (hyphen + 3 < fields.size())
        entry.superOptions = unescape(fields[hyphen + 3]);
    return entry;
}

std::optional<std::string> realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                               &std::free);
    if (!resolved)
        return std::nullopt;
    return std::string(resolved.get());
}

} // namespace

bool MountEntry::isFuse() const {
    return fileSystemType == "fuse" || fileSystemType == "fuseblk" ||
           fileSystemType.starts_with("fuse.") || fileSystemType.starts_with("fuseblk.");
}

std::string_view MountEntry::subtype() const {
    const std::size_t dot = fileSystemType.find('.');
    if (dot == std::string::npos)
        return {};
    return std::string_view(fileSystemType).substr(dot + 1);
}

std::optional<uid_t> MountEntry::fuseOwner() const {
    constexpr std::string_view key = "user_id=";
    for (std::string_view option : split(superOptions, ',')) {
        if (isFuse() && option.starts_with(key))
            return number<uid_t>(option.substr(key.size()));
    }
    return std::nullopt;
}

MountTable MountTable::read() {
    std::ifstream file("/proc/self/mountinfo", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return parse(text);
}

MountTable MountTable::parse(std::string_view text) {
    MountTable table;
    for (std::string_view line : split(text, '\n')) {
        if (auto entry = parseLine(line))
            table.m_entries.push_back(std::move(*entry));
    }
    return table;
}

const MountEntry* MountTable::at(std::string_view path) const {
    for (auto entry = m_entries.rbegin(); entry != m_entries.rend(); ++entry) {
        if (entry->mountPoint == path)
            return &*entry;
    }
    return nullptr;
}

std::optional<std::string> canonicalMountPath(const std::string& path, const MountTable& table) {
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.ends_with('/'))
        trimmed.pop_back();
    const std::size_t slash = trimmed.rfind('/');
    const std::string last = slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
    if (!last.empty() && last != "." && last != "..") {
        std::string parent = ".";
        if (slash != std::string::npos)
            parent = slash == 0 ? "/" : trimmed.substr(0, slash);
        if (const auto resolved = realPath(parent)) {
            const std::string candidate = (*resolved == "/" ? "" : *resolved) + "/" + last;
            if (table.at(candidate))
                return candidate;
        }
    }
    return realPath(trimmed);
}

} // namespace harbrix
