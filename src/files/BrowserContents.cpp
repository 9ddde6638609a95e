#include "files/BrowserContents.h"

#include "base/ByteCount.h"
#include "files/FileItem.h"
#include "files/FileUrl.h"

#include <algorithm>

namespace harbrix {

BrowserContents contentsToShow(bool isLoading, bool hasItems) {
    if (hasItems)
        return BrowserContents::Table;
    return isLoading ? BrowserContents::Progress : BrowserContents::EmptyFolder;
}

std::vector<Crumb> breadcrumbs(const QUrl& currentPath, const QUrl& mountPoint,
                               const QString& nasName) {
    const QString root = pathText(mountPoint);
    std::vector<Crumb> crumbs;
    QUrl step = currentPath;
    QString path = pathText(step);
    // Every parent is shorter, but for that of the root.
    while (path != root && path.startsWith(root) && path != QLatin1String("/")) {
        crumbs.push_back({lastPathComponent(step), step});
        step = parentUrl(step);
        path = pathText(step);
    }
    crumbs.push_back({nasName, mountPoint});
    std::ranges::reverse(crumbs);
    return crumbs;
}

QString sizeText(const FileItem& item, const QLocale& locale) {
    return item.isDirectory || item.size < 0 ? QStringLiteral("--")
                                             : byteCountText(item.size, locale);
}

} // namespace harbrix
