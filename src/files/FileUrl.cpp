#include "files/FileUrl.h"

#include "base/Utf8.h"

#include <algorithm>

namespace harbrix {

namespace {

/// Every byte that cannot be part of a text is escaped by itself; the rest stays readable.
QString escapedText(const QByteArray& name, QChar mark) {
    if (const auto text = decodeUtf8(name))
        return *text;
    QString shown;
    for (qsizetype start = 0; start < name.size();) {
        qsizetype length = std::min<qsizetype>(4, name.size() - start);
        std::optional<QString> character;
        for (; length > 0 && !character; --length)
            character = decodeUtf8(QByteArrayView(name).sliced(start, length));
        if (character) {
            shown += *character;
            start += length + 1;
        } else {
            shown += mark + QLatin1String(name.mid(start, 1).toHex().toUpper());
            ++start;
        }
    }
    return shown;
}

} // namespace

QByteArray nativePath(const QUrl& url) {
    if (!url.isLocalFile() || !(url.host().isEmpty() || url.host() == QLatin1String("localhost")))
        return {};
    QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    // A system call would stop at the zero and touch another file.
    return path.contains('\0') ? QByteArray() : path;
}

QString nameText(const QByteArray& name) {
    return escapedText(name, u'%');
}

QString distinctNameText(const QByteArray& name) {
    return escapedText(name, QChar::ReplacementCharacter);
}

QString pathText(const QUrl& url) {
    return nameText(nativePath(url));
}

QUrl fileUrl(const QByteArray& path) {
    if (const auto text = decodeUtf8(path))
        return QUrl::fromLocalFile(*text);
    return QUrl::fromEncoded("file://" + path.toPercentEncoding("/!$&'()*+,;=:@[]"));
}

QByteArray nativeName(const QUrl& url) {
    const QByteArray path = nativePath(url);
    return path.mid(path.lastIndexOf('/') + 1);
}

QString lastPathComponent(const QUrl& url) {
    return nameText(nativeName(url));
}

QUrl parentUrl(const QUrl& url) {
    const QByteArray path = nativePath(url);
    const qsizetype slash = path.lastIndexOf('/');
    return fileUrl(slash <= 0 ? QByteArray("/") : path.left(slash));
}

QUrl childUrl(const QUrl& directory, const QByteArray& name) {
    const QByteArray path = nativePath(directory);
    return fileUrl(path.endsWith('/') ? path + name : path + '/' + name);
}

SplitName splitName(const QByteArray& name) {
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1)
        return {name, {}};
    return {name.left(dot), name.mid(dot + 1)};
}

} // namespace harbrix
