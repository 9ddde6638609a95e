#include "files/Preview.h"

#include "base/Utf8.h"
#include "files/FileIo.h"
#include "files/FileUrl.h"

#include <QMimeDatabase>

#include <sys/stat.h>

#include <algorithm>

namespace harbrix {
namespace {

// Enough for every signature of the type database.
constexpr qint64 headSize = 16 * 1024;

QByteArray readUpTo(int descriptor, qint64 size) {
    QByteArray bytes(size, Qt::Uninitialized);
    const auto count = readFully(descriptor, {bytes.data(), static_cast<std::size_t>(size)});
    bytes.truncate(count ? static_cast<qsizetype>(*count) : 0);
    return bytes;
}

qint64 bytesWanted(PreviewKind kind, qint64 size) {
    switch (kind) {
    case PreviewKind::Text:
        return std::min(size, maxPreviewedText);
    case PreviewKind::Pdf:
        return size;
    case PreviewKind::Image:
    case PreviewKind::Card:
        break;
    }
    return 0;
}

QString decoded(const QByteArray& bytes) {
    // A character that the limit has cut in two has at most three bytes left.
    for (qsizetype cut = 0; cut <= std::min<qsizetype>(3, bytes.size()); ++cut)
        if (const auto text = decodeUtf8(bytes.chopped(cut)))
            return *text;
    return QString::fromLatin1(bytes);
}

} // namespace

PreviewKind previewKind(const QString& mimeType, qint64 size) {
    const QMimeType type = QMimeDatabase().mimeTypeForName(mimeType);
    if (mimeType.startsWith(QLatin1String("image/")))
        return PreviewKind::Image;
    if (type.inherits(QStringLiteral("application/pdf")))
        return size <= maxPreviewedDocument ? PreviewKind::Pdf : PreviewKind::Card;
    if (type.inherits(QStringLiteral("text/plain")))
        return PreviewKind::Text;
    return PreviewKind::Card;
}

PreviewedFile readForPreview(const QUrl& url) {
    PreviewedFile file;
    file.name = lastPathComponent(url);
    struct stat status {};
    const auto descriptor = openForReading(nativePath(url), status);
    file.isDirectory = S_ISDIR(status.st_mode);
    if (!descriptor || !S_ISREG(status.st_mode))
        return file;
    file.size = status.st_size;
    file.modificationDate = QDateTime::fromSecsSinceEpoch(status.st_mtim.tv_sec, Qt::UTC);
    const QByteArray head = readUpTo(descriptor->get(), std::min<qint64>(file.size, headSize));
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(file.name, head);
    file.typeName = type.comment();
    file.kind = previewKind(type.name(), file.size);
    const qint64 wanted = bytesWanted(file.kind, file.size);
    file.bytes = head.left(wanted);
    if (wanted > head.size())
        file.bytes += readUpTo(descriptor->get(), wanted - head.size());
    return file;
}

QString previewText(const QByteArray& bytes) {
    const QString text = decoded(bytes);
    QString shown;
    shown.reserve(text.size() + text.size() / longestPreviewedLine);
    qsizetype length = 0;
    for (const QChar character : text) {
        // Not between the two halves of one character.
        if (length >= longestPreviewedLine && character != u'\n' && !character.isLowSurrogate()) {
            shown += u'\n';
            length = 0;
        }
        length = character == u'\n' ? 0 : length + 1;
        shown += character;
    }
    return shown;
}

} // namespace harbrix
