#pragma once

#include <cstdint>

struct fuse_session;

namespace harbrix {

/// Abilities of the kernel's FUSE that are newer than the libfuse of Debian 12; bits of FUSE_INIT.
struct KernelAbility {
    /// Files that are read directly can be mapped shared all the same (Linux 6.6).
    static constexpr std::uint64_t mapDirectFiles = std::uint64_t{1} << 36;
};

/// Answers the first request of a mount, FUSE_INIT, asking for these abilities beside what libfuse
/// asks for. Returns those that the kernel has. To be called before anybody else serves requests.
[[nodiscard]] std::uint64_t answerInit(fuse_session* session, std::uint64_t wanted);

} // namespace harbrix
