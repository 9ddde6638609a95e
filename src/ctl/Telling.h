#pragma once

#include "ctl/ExitCode.h"
#include "ctl/Rendering.h"
#include "ctl/RunningProgram.h"

#include <QJsonArray>
#include <QJsonObject>

namespace harbrix {

// What every command says about its outcome, and the answers of the program as JSON.

/// One line on standard error; the code is given back.
ExitCode tell(ExitCode code, const QString& text);
ExitCode tell(const RunningProgram::Failure& failure);
ExitCode tell(const Outcome& outcome);

[[nodiscard]] QJsonObject parseObject(const QString& json);
[[nodiscard]] QJsonArray parseArray(const QString& json);

} // namespace harbrix
