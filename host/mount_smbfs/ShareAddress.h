#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace harbrix {

/// A share as the command line names it: //[user@]host[:port]/share[/folder/...].
struct ShareAddress {
    std::string domain; ///< of "DOMAIN;user" or "DOMAIN\user", else empty
    std::string user;   ///< as it stands, an at sign included; empty without one
    std::string host;   ///< a name or a numeric address, brackets taken off
    std::optional<std::uint16_t> port;
    std::string share;
    std::string folder; ///< below the share, segments joined by "/", else empty

    /// Whether the login is anonymous: no user or "guest".
    [[nodiscard]] bool isGuest() const;
    /// What the mount table shows: no port option, no password, nothing encoded.
    [[nodiscard]] std::string displayName() const;
    /// The host as the user wrote it, with its port: what a prompt or message names.
    [[nodiscard]] std::string hostAndPort() const;

    /// The share part is percent-decoded, a bad sequence taken as it stands; the user is not. The
    /// error is a text for the user that never repeats what stands before the host.
    [[nodiscard]] static std::expected<ShareAddress, std::string> parse(std::string_view text);
};

/// Decodes %XX; a sequence that is not two hexadecimal digits, or would be NUL, stays as it stands.
[[nodiscard]] std::string percentDecoded(std::string_view text);

} // namespace harbrix
