#include "ctl/Telling.h"

#include "ctl/StandardStreams.h"
#include "ctl/Table.h"

#include <QJsonDocument>

namespace harbrix {

ExitCode tell(ExitCode code, const QString& text) {
    printError(QStringLiteral("harbrixctl: %1\n").arg(visible(text)));
    return code;
}

ExitCode tell(const RunningProgram::Failure& failure) {
    return tell(failure.code, failure.text);
}

ExitCode tell(const Outcome& outcome) {
    print(outcome.output);
    printError(outcome.error);
    return outcome.code;
}

QJsonObject parseObject(const QString& json) {
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

QJsonArray parseArray(const QString& json) {
    return QJsonDocument::fromJson(json.toUtf8()).array();
}

} // namespace harbrix
