#pragma once

#include <QByteArray>
#include <QString>

#include <expected>

namespace harbrix {

/// Everything up to the end of standard input, less one line end at its end. Fails on an empty
/// password, one with a line break or a NUL inside, and one past 64 KiB.
[[nodiscard]] std::expected<QByteArray, QString> readPasswordFromStandardInput();

[[nodiscard]] bool hasTerminal();
/// Asks on the controlling terminal, without echo; standard input and output are left alone. A
/// signal that ends the program restores the echo first.
[[nodiscard]] std::expected<QByteArray, QString> askPasswordOnTerminal(const QString& prompt);

/// The rules above for what was read, the line end included.
[[nodiscard]] std::expected<QByteArray, QString> checkedPassword(QByteArray read);

} // namespace harbrix
