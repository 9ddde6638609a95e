#pragma once

#include <QString>
#include <QStringList>

#include <expected>

namespace harbrix {

/// What `harbrix` is asked to do.
enum class ProgramAction { Run, ShowVersion, ShowHelp, ShowDebugInfo };

/// `arguments` begins with the program's name. The error is one line without its end.
[[nodiscard]] std::expected<ProgramAction, QString> parseOptions(const QStringList& arguments);

[[nodiscard]] QString helpText();

} // namespace harbrix
