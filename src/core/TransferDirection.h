#pragma once

namespace harbrix {

/// Which way a file goes between this machine and a share.
enum class TransferDirection { upload, download };

} // namespace harbrix
