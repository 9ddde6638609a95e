#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace harbrix {

/// SMB forbids " * : < > ? | \, control characters and a trailing blank or dot in a name. They
/// travel as private-use characters (U+F001 to U+F029), the mapping that Services for Macintosh
/// began and that other clients follow, so that a name made here reads the same from there.
///
/// The error is an errno value: ENAMETOOLONG past 255 bytes, EILSEQ for what is not UTF-8.
[[nodiscard]] std::expected<std::string, int> nameForServer(std::string_view name);

/// The reverse; names without such characters come back as they stand.
[[nodiscard]] std::string nameFromServer(std::string_view name);

/// Percent-encodes everything but unreserved characters (RFC 3986, section 2.3).
[[nodiscard]] std::string urlEncoded(std::string_view text);

/// The part of a URL behind the share for a path "a/b/c" below it, mapped and encoded, led by "/".
/// Empty for an empty path. Errors as nameForServer().
[[nodiscard]] std::expected<std::string, int> urlPath(std::string_view path);

} // namespace harbrix
