#pragma once

#include <QDBusConnection>
#include <QUrl>

namespace harbrix {

/// Opens what the desktop opens for it: a folder in the file viewer, a file with its application, a
/// page in the browser. False where the desktop has no handler.
bool openUrl(const QUrl& url);

/// Shows the file selected in the file viewer (org.freedesktop.FileManager1), else opens its
/// folder. Returns at once. Main thread.
void showInFileViewer(const QUrl& file,
                      const QDBusConnection& sessionBus = QDBusConnection::sessionBus());

} // namespace harbrix
