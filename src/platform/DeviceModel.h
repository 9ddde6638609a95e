#pragma once

#include <QString>

namespace harbrix {

/// The machine's product name as its firmware tells it (SMBIOS, by way of /sys/class/dmi),
/// "unknown" where there is none.
[[nodiscard]] QString deviceModel();

} // namespace harbrix
