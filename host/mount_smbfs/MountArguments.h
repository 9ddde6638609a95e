#pragma once

#include "common/FuseSession.h"
#include "mount_smbfs/ShareAddress.h"

#include <expected>
#include <string>
#include <vector>

namespace harbrix {

enum class PasswordSource {
    prompt,
    none, ///< -N: nobody is asked and none is sent
};

/// The command line of mount_smbfs.
struct MountArguments {
    ShareAddress share;
    std::string mountPoint;
    MountAccess access = MountAccess::readWrite;
    PasswordSource password = PasswordSource::prompt;

    /// Takes the arguments behind the program's name. The error is a text for the user.
    [[nodiscard]] static std::expected<MountArguments, std::string>
    parse(const std::vector<std::string>& arguments);
};

} // namespace harbrix
