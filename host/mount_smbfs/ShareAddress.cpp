#include "mount_smbfs/ShareAddress.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace harbrix {

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::vector<std::string> segments(std::string_view path) {
    std::vector<std::string> parts;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        if (slash != 0)
            parts.push_back(percentDecoded(path.substr(0, slash)));
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    return parts;
}

std::optional<std::uint16_t> portNumber(std::string_view text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0)
        return std::nullopt;
    return port;
}

std::expected<void, std::string> parseHost(std::string_view text, ShareAddress& address) {
    std::string_view port;
    if (text.starts_with('[')) {
        const std::size_t close = text.find(']');
        if (close == std::string_view::npos)
            return std::unexpected("the address lacks its closing bracket");
        address.host = text.substr(1, close - 1);
        port = text.substr(close + 1);
        if (!port.empty() && !port.starts_with(':'))
            return std::unexpected("the address is followed by something that is no port");
    } else if (const std::size_t colon = text.find(':');
               colon != std::string_view::npos && text.find(':', colon + 1) == text.npos) {
        address.host = text.substr(0, colon);
        port = text.substr(colon);
    } else {
        // More than one colon without brackets is an IPv6 address, which leaves no room for a port.
        address.host = text;
    }
    if (address.host.empty())
        return std::unexpected("the share names no host");
    if (port.empty())
        return {};
    address.port = portNumber(port.substr(1));
    if (!address.port)
        return std::unexpected("'" + std::string(port.substr(1)) + "' is no port number");
    return {};
}

std::expected<void, std::string> parseUser(std::string_view text, ShareAddress& address) {
    if (text.find(':') != std::string_view::npos)
        return std::unexpected("a password does not belong on the command line");
    if (const std::size_t separator = text.find_first_of(";\\");
        separator != std::string_view::npos) {
        address.domain = text.substr(0, separator);
        text.remove_prefix(separator + 1);
    }
    address.user = text;
    return {};
}

} // namespace

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const int high = hexDigit(text[i + 1]);
            const int low = hexDigit(text[i + 2]);
            if (high >= 0 && low >= 0 && high + low > 0) {
                decoded += static_cast<char>(high * 16 + low);
                i += 2;
                continue;
            }
        }
        decoded += text[i];
    }
    return decoded;
}

bool ShareAddress::isGuest() const {
    return user.empty() || user == "guest";
}

std::string ShareAddress::displayName() const {
    std::string text = "//";
    if (!user.empty())
        text += user + "@";
    text += hostAndPort() + "/" + share;
    if (!folder.empty())
        text += "/" + folder;
    return text;
}

std::string ShareAddress::hostAndPort() const {
    const bool isIpv6 = host.find(':') != std::string::npos;
    std::string text = isIpv6 ? "[" + host + "]" : host;
    if (port)
        text += ":" + std::to_string(*port);
    return text;
}

std::expected<ShareAddress, std::string> ShareAddress::parse(std::string_view text) {
    if (!text.starts_with("//"))
        return std::unexpected("the share is written //[user@]host/share");
    text.remove_prefix(2);
    const std::size_t slash = text.find('/');
    std::string_view authority = text.substr(0, slash);
    ShareAddress address;
    // A user name may hold an at sign; a host cannot.
    if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos) {
        if (auto parsed = parseUser(authority.substr(0, at), address); !parsed)
            return std::unexpected(parsed.error());
        authority.remove_prefix(at + 1);
    }
    if (auto parsed = parseHost(authority, address); !parsed)
        return std::unexpected(parsed.error());
    auto parts = segments(slash == std::string_view::npos ? "" : text.substr(slash));
    if (parts.empty())
        return std::unexpected("no share is named behind the host");
    const auto isDots = [](const std::string& part) { return part == "." || part == ".."; };
    if (std::any_of(parts.begin(), parts.end(), isDots))
        return std::unexpected("the path of the share holds '.' or '..'");
    address.share = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i)
        address.folder += (i == 1 ? "" : "/") + parts[i];
    return address;
}

} // namespace harbrix
