#pragma once

#include "base/Task.h"
#include "platform/UserDefaults.h"

#include <QByteArray>
#include <QString>

namespace harbrix {

class FileSystem;
class ProcessLauncher;
class Scheduler;

/// What a helper wants to know of a machine on which something does not work: versions, tools with
/// what they say of themselves, network mounts, settings. No secrets. Tools are asked for two
/// seconds each at most.
class DebugInfo {
public:
    DebugInfo(const UserDefaults& defaults, const FileSystem& fileSystem, ProcessLauncher& launcher,
              Scheduler& scheduler);

    [[nodiscard]] Task<QString> collect();

private:
    Task<QString> describeTool(QString path, QString versionOption);
    [[nodiscard]] QString describeMounts() const;
    [[nodiscard]] QString describeSettings() const;

    const UserDefaults& m_defaults;
    const FileSystem& m_fileSystem;
    ProcessLauncher& m_launcher;
    Scheduler& m_scheduler;
};

/// A stored value as text. The list of shares is shown without passwords, or with the reason why it
/// cannot be read; other binary data only by its size, since what is not understood may hold a
/// secret.
[[nodiscard]] QString settingText(const QString& key, const UserDefaults::Value& value);

} // namespace harbrix
