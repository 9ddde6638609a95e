#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QUrl>

#include <vector>

namespace harbrix {

struct FileItem;

/// What the list area of the browser window shows.
enum class BrowserContents { Progress, EmptyFolder, Table };
/// A refresh of a directory that has rows keeps the table.
[[nodiscard]] BrowserContents contentsToShow(bool isLoading, bool hasItems);

/// A step of the path bar.
struct Crumb {
    QString title;
    QUrl url;

    bool operator==(const Crumb&) const = default;
};
/// From the share, under its name, down to the directory on screen.
[[nodiscard]] std::vector<Crumb> breadcrumbs(const QUrl& currentPath, const QUrl& mountPoint,
                                             const QString& nasName);

/// The text of the size column: "--" where there is no size to tell.
[[nodiscard]] QString sizeText(const FileItem& item, const QLocale& locale = QLocale());

} // namespace harbrix
