#pragma once

#include <QByteArray>
#include <QString>

#include <expected>

namespace harbrix {

enum class ExistingFile { Kept, Replaced };

/// Writes a file that is complete or not there at all, readable for its owner alone (mode 0600),
/// on disk when this returns. The error is one line that names the file.
[[nodiscard]] std::expected<void, QString>
writeFile(const QString& path, const QByteArray& contents, ExistingFile existing);

/// The whole file, or of "-" standard input; at most 64 MiB.
[[nodiscard]] std::expected<QByteArray, QString> readInput(const QString& path);

} // namespace harbrix
