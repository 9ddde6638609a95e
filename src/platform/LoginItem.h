#pragma once

#include "base/Result.h"

#include <QString>

namespace harbrix {

/// A program that the desktop starts when the user logs in (Desktop Application Autostart
/// Specification). The calls touch one small local file and do not block for long. Any thread.
class LoginItem {
public:
    /// `configDirectory` is the user's ($XDG_CONFIG_HOME), `command` the absolute path of the
    /// program.
    LoginItem(const QString& configDirectory, const QString& identifier, QString command);

    [[nodiscard]] bool isRegistered() const;
    [[nodiscard]] Result<void, SystemError> registerItem() const;
    [[nodiscard]] Result<void, SystemError> unregisterItem() const;

private:
    QString m_path;
    QString m_command;
};

} // namespace harbrix
