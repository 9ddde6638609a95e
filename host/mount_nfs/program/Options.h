#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harbrix::nfs {

/// "host:/path" taken apart.
struct Remote {
    std::string host;              ///< A name or an address, an IPv6 one without its brackets.
    std::vector<std::string> path; ///< The components below the server's root; none for "/".
    std::string source;            ///< As the mount table shows it.
};

/// What the command line asks for.
struct Options {
    Remote remote;
    std::string mountPoint;
    std::uint16_t port = 2049;
    std::optional<std::uint32_t> minorVersion; ///< Absent: the best that the server has.
    bool readOnly = false;
    bool reservedPort = false;
    bool synchronous = false;
    bool ownFiles = false; ///< Shows all files as the mounting user's own.
    bool allowOther = false;
    bool ownClient = false; ///< Not the kernel's client, even as root.
    std::uint32_t readSize = 1 << 20;
    std::uint32_t writeSize = 1 << 20;
    std::size_t memory = std::size_t{64} << 20;
    std::vector<std::string>
        mountFlags;            ///< "noexec" and the like, handed to the mount as they are.
    std::string kernelOptions; ///< What mount.nfs4 is given.
};

/// The error is a text for the user; it never holds the words by which refused rights are
/// recognised.
[[nodiscard]] std::expected<Options, std::string>
parseOptions(const std::vector<std::string>& arguments);
[[nodiscard]] std::expected<Remote, std::string> parseRemote(std::string_view text);

} // namespace harbrix::nfs
