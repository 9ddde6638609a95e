#pragma once

#include "ctl/ExitCode.h"

#include <QObject>
#include <QString>

namespace harbrix {

class RunningProgram;

/// Prints each change of a share's state until the program goes away, which ends the event loop.
class Watch : public QObject {
    Q_OBJECT

public:
    enum class Form { Text, Json };

    Watch(const RunningProgram& program, Form form);

    /// Subscribes, then prints where each share stands now; false where the subscription failed.
    [[nodiscard]] bool begin();
    void printPresent(const QString& statusJson) const;

public slots:
    void shareChanged(const QString& shareJson) const;
    void shareRemoved(const QString& id) const;

private:
    const RunningProgram& m_program;
    Form m_form;
};

} // namespace harbrix
