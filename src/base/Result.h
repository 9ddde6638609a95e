#pragma once

#include <QString>

#include <expected>

namespace harbrix {

class HarbrixError;

/// What a call on the machine reports when it fails: the number (an errno unless the call says
/// otherwise) and a text that a user can read.
struct SystemError {
    int code = 0;
    QString description;

    bool operator==(const SystemError&) const = default;
};

/// The text of an errno, as strerror(3) gives it; the one source of such texts.
[[nodiscard]] SystemError systemError(int errorNumber);

/// A value or the reason why there is none. Rooms hand HarbrixError to each other; platform, which
/// lies below that type, hands up a SystemError.
template <typename T, typename E = HarbrixError>
using Result = std::expected<T, E>;

} // namespace harbrix
