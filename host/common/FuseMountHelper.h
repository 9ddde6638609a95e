#pragma once

#include "base/UniqueDescriptor.h"

#include <expected>
#include <string>

namespace harbrix {

/// Lets fusermount3(1) make a FUSE mount for an ordinary user and hand over its device descriptor.
/// Unlike libfuse's own way it does not need /dev/fuse to be open to everybody. The options are
/// those of mount(8), escaped already. The error is what fusermount3 says.
[[nodiscard]] std::expected<UniqueDescriptor, std::string>
mountThroughFusermount(const std::string& mountPoint, const std::string& options);

} // namespace harbrix
