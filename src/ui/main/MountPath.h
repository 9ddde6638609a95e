#pragma once

#include <QString>
#include <QUrl>

namespace harbrix {

/// The path of a mount point as it is shown: without the slash that marks its address as a folder.
[[nodiscard]] inline QString shownPath(const QUrl& mountPoint) {
    return mountPoint.adjusted(QUrl::StripTrailingSlash).toLocalFile();
}

} // namespace harbrix
