#include "platform/OpenUrl.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>

namespace harbrix {

namespace {

// The file viewer may have to be started first.
constexpr int showTimeoutMilliseconds = 10'000;

void openFolderOf(const QUrl& file) {
    openUrl(file.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash));
}

} // namespace

bool openUrl(const QUrl& url) {
    return QDesktopServices::openUrl(url);
}

void showInFileViewer(const QUrl& file, const QDBusConnection& sessionBus) {
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("/org/freedesktop/FileManager1"),
                                                  QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("ShowItems"));
    message << QStringList(file.toString(QUrl::FullyEncoded)) << QString();
    auto* watcher = new QDBusPendingCallWatcher(
        sessionBus.asyncCall(message, showTimeoutMilliseconds), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, file] {
        if (watcher->isError())
            openFolderOf(file);
        watcher->deleteLater();
    });
}

} // namespace harbrix
