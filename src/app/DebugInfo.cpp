#include "app/DebugInfo.h"

#include "base/Completion.h"
#include "base/Scheduler.h"
#include "config/NASConfigStore.h"
#include "mount/MountEngine.h"
#include "mount/VolumeProbe.h"
#include "platform/ChildProcess.h"
#include "platform/FileSystem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSysInfo>

#include <array>

namespace harbrix {
namespace {

constexpr Seconds longestAnswer{2.0};

struct Tool {
    const char* path;
    const char* versionOption;
};
constexpr std::array tools{
    Tool{MountEngine::smbMountCommand, "--version"},
    Tool{MountEngine::nfsMountCommand, "--version"},
    Tool{MountEngine::unmountCommand, "--version"},
    Tool{"/usr/bin/expect", "-v"},
    Tool{"/usr/bin/fusermount3", "-V"},
    Tool{MountEngine::pingCommand, "-V"},
    Tool{"/usr/bin/sudo", "-V"},
};

QString environmentValue(const char* name) {
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? QStringLiteral("(not set)") : value;
}

QString describeSystem() {
    QString text = QStringLiteral("Harbrix " HARBRIX_VERSION "\n");
    text +=
        QStringLiteral("Qt %1 (built with " QT_VERSION_STR ")\n").arg(QLatin1String(qVersion()));
    text += QStringLiteral("System: %1, kernel %2, %3\n")
                .arg(QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                     QSysInfo::currentCpuArchitecture());
    for (const char* name : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE", "DISPLAY",
                             "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "LANG"})
        text += QStringLiteral("%1: %2\n").arg(QLatin1String(name), environmentValue(name));
    return text;
}

QString describeShares(const QByteArray& json) {
    const auto configs = decodeConfigs(json);
    if (!configs)
        return QStringLiteral("%1 bytes that cannot be read: %2")
            .arg(json.size())
            .arg(configs.error().description);
    QJsonArray shown;
    for (const NASConfig& config : *configs) {
        QJsonObject record = config.toJson();
        record.remove("password");
        shown.append(record);
    }
    return QString::fromUtf8(QJsonDocument(shown).toJson()).trimmed();
}

struct PlainText {
    QString operator()(bool value) const { return value ? "true" : "false"; }
    QString operator()(qint64 value) const { return QString::number(value); }
    QString operator()(double value) const { return QString::number(value); }
    QString operator()(const QString& value) const { return value; }
    QString operator()(const QStringList& value) const { return value.join(QStringLiteral(", ")); }
    QString operator()(const QByteArray& value) const {
        return QStringLiteral("%1 bytes").arg(value.size());
    }
    QString operator()(const QDateTime& value) const { return value.toString(Qt::ISODate); }
};

} // namespace

DebugInfo::DebugInfo(const UserDefaults& defaults, const FileSystem& fileSystem,
                     ProcessLauncher& launcher, Scheduler& scheduler)
    : m_defaults(defaults), m_fileSystem(fileSystem), m_launcher(launcher), m_scheduler(scheduler) {
}

Task<QString> DebugInfo::collect() {
    QString text = describeSystem() + QStringLiteral("\nTools:\n");
    for (const Tool& tool : tools) {
        auto description =
            describeTool(QLatin1String(tool.path), QLatin1String(tool.versionOption));
        const QString line = co_await description;
        text += QStringLiteral("  %1: %2\n").arg(QLatin1String(tool.path), line);
    }
    text += QStringLiteral("\nNetwork and FUSE mounts:\n") + describeMounts();
    text += QStringLiteral("\nSettings in %1:\n").arg(m_defaults.filePath()) + describeSettings();
    co_return text;
}

Task<QString> DebugInfo::describeTool(QString path, QString versionOption) {
    auto child = m_launcher.launch(path, {versionOption}, ProcessLauncher::Input::Piped);
    if (!child)
        co_return QStringLiteral("not usable: ") + child.error().description;
    Completion<ChildProcess::End> ended;
    (*child)->setTerminationHandler(ended.resolver());
    (*child)->writeInput({}); // whoever would ask something finds the end
    const Timer limit = m_scheduler.after(longestAnswer, [&child] { (*child)->terminate(); });
    co_await ended;
    const QByteArray said = (*child)->readOutput() + (*child)->readError();
    const QString firstLine = QString::fromUtf8(said).section(QLatin1Char('\n'), 0, 0).trimmed();
    co_return firstLine.isEmpty() ? QStringLiteral("says no version") : firstLine;
}

QString DebugInfo::describeMounts() const {
    QString text;
    for (const MountEntry& mount : m_fileSystem.mountTable()) {
        const bool isFuse = mount.fileSystemType.startsWith("fuse");
        if (isFuse || isNetworkTypeName(mount.fileSystemType))
            text += QStringLiteral("  %1 on %2 (%3%4)\n")
                        .arg(mount.source, mount.mountPoint, mount.fileSystemType,
                             mount.readOnly ? QStringLiteral(", read-only") : QString());
    }
    return text.isEmpty() ? QStringLiteral("  none\n") : text;
}

QString DebugInfo::describeSettings() const {
    QStringList keys = m_defaults.keys();
    keys.sort();
    QString text;
    for (const QString& key : keys)
        if (const auto value = m_defaults.value(key))
            text += QStringLiteral("  %1 = %2\n").arg(key, settingText(key, *value));
    if (const auto error = m_defaults.loadError())
        text += QStringLiteral("  (not read: %1)\n").arg(error->description);
    return text.isEmpty() ? QStringLiteral("  none\n") : text;
}

QString settingText(const QString& key, const UserDefaults::Value& value) {
    if (key == QLatin1String(NASConfigStore::userDefaultsKey))
        if (const auto* data = std::get_if<QByteArray>(&value))
            return describeShares(*data);
    return std::visit(PlainText{}, value);
}

} // namespace harbrix
