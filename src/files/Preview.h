#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

namespace harbrix {

/// How a file is previewed: what cannot be shown stands as a card that tells of it.
enum class PreviewKind { Image, Text, Pdf, Card };

/// What a preview tells of a file, and how much of it was read.
struct PreviewedFile {
    QString name;
    QString typeName; ///< as the desktop calls it ("PNG image")
    qint64 size = -1; ///< bytes; -1 where it is not known
    QDateTime modificationDate;
    bool isDirectory = false;
    PreviewKind kind = PreviewKind::Card;
    QByteArray bytes; ///< a text up to maxPreviewedText, a document whole, of others nothing
};

constexpr qint64 maxPreviewedText = 256 * 1024;           ///< bytes
constexpr qint64 maxPreviewedDocument = 64 * 1024 * 1024; ///< bytes

constexpr qsizetype longestPreviewedLine = 1000; ///< UTF-16 units

/// The kind by the type (a MIME name of the shared database) and the size of a file.
[[nodiscard]] PreviewKind previewKind(const QString& mimeType, qint64 size);

/// Looks at a file and reads what its preview needs. Never fails: what cannot be read is a card.
/// Blocks: workers only.
[[nodiscard]] PreviewedFile readForPreview(const QUrl& url);

/// The text of a file, which may be cut in the middle of a character or be no UTF-8 at all. Lines
/// that would take seconds to lay out are broken after longestPreviewedLine characters.
[[nodiscard]] QString previewText(const QByteArray& bytes);

} // namespace harbrix
