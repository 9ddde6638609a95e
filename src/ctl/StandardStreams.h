#pragma once

#include <QString>

namespace harbrix {

/// Writes the text as UTF-8 and at once, so that a pipe sees each line when it happens.
void print(const QString& text);
void printError(const QString& text);

} // namespace harbrix
