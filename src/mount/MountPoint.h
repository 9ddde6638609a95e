#pragma once

#include <QString>
#include <QUrl>

namespace harbrix {

/// The file URL of a mount point, marked as a directory.
[[nodiscard]] QUrl directoryUrl(const QString& path);
/// The path of such a URL, without the slash that marks it.
[[nodiscard]] QString directoryPath(const QUrl& url);

} // namespace harbrix
