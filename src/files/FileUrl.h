#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace harbrix {

// File URLs (RFC 8089) and the paths that they stand for. Linux names are bytes: a URL keeps bytes
// that are not UTF-8 as percent escapes, so that every file can be reached, and texts show them in
// that form ("caf%E9"). A slash at the end of a URL, which marks a directory, is no part of its
// path. Any thread.

/// The bytes for system calls. Empty for what is no URL of a local file.
[[nodiscard]] QByteArray nativePath(const QUrl& url);
/// The path as text, for comparing and showing.
[[nodiscard]] QString pathText(const QUrl& url);
/// The URL of an absolute path.
[[nodiscard]] QUrl fileUrl(const QByteArray& path);

/// The last component of the path, as bytes and as text.
[[nodiscard]] QByteArray nativeName(const QUrl& url);
[[nodiscard]] QString lastPathComponent(const QUrl& url);
/// The URL without its last component; the root is its own parent.
[[nodiscard]] QUrl parentUrl(const QUrl& url);
[[nodiscard]] QUrl childUrl(const QUrl& directory, const QByteArray& name);

/// The text form of a name or a path.
[[nodiscard]] QString nameText(const QByteArray& name);
/// The same for what has to be told from other names: "caf\xe9" and a file whose name really is
/// "caf%E9" read differently, as the escapes begin with the replacement character U+FFFD.
[[nodiscard]] QString distinctNameText(const QByteArray& name);

/// A name cut at its last dot. A dot in front or at the end makes no extension.
struct SplitName {
    QByteArray base;
    QByteArray extension; ///< without the dot
};
[[nodiscard]] SplitName splitName(const QByteArray& name);

} // namespace harbrix
