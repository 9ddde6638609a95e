#pragma once

#include "common/Secret.h"

#include <cstdint>
#include <string>

namespace harbrix {

/// Who logs in where; shared by all connections of one mount and unchanged while it lives.
struct SmbLogin {
    std::string domain;
    std::string user; ///< empty: anonymous
    Secret password;
    bool isGuest = false;
    std::uint16_t port = 445;
    std::string share;
    std::string folder; ///< below the share, "a/b", else empty
};

} // namespace harbrix
