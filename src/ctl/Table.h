#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace harbrix {

/// The text on one line of a terminal: control and other unprintable characters are shown as
/// escapes, so that a name can neither break the table nor steer the terminal.
[[nodiscard]] QString visible(const QString& text);

/// Rows as lines with aligned columns, two blanks apart, by the width that a terminal gives each
/// character (wcwidth(3)); no blanks at the end of a line.
[[nodiscard]] QString alignedTable(const std::vector<QStringList>& rows);

} // namespace harbrix
