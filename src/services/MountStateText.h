#pragma once

#include "core/MountState.h"

namespace harbrix {

/// The state as menus and lists show it; a failure with the text of its error. Main thread.
[[nodiscard]] QString statusText(const MountState& state);

/// The state as the status indicator tells it to a screen reader. Main thread.
[[nodiscard]] QString accessibilityLabel(const MountState& state);

} // namespace harbrix
