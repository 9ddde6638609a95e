#pragma once

#include <QString>

namespace harbrix {

/// Where the program keeps its files (XDG Base Directory Specification). Each is an absolute path
/// without a trailing slash; none is created here.
struct AppDirectories {
    QString home;               ///< the user's home directory
    QString config;             ///< $XDG_CONFIG_HOME or ~/.config
    QString applicationSupport; ///< $XDG_DATA_HOME or ~/.local/share
    QString caches;             ///< $XDG_CACHE_HOME or ~/.cache
    QString temporary;          ///< $TMPDIR or /tmp
    QString runtime;            ///< $XDG_RUNTIME_DIR, empty where there is none

    /// The directories of this process. A variable that holds no absolute path counts as unset.
    [[nodiscard]] static AppDirectories ofThisUser();
};

} // namespace harbrix
