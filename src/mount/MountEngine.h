#pragma once

#include "mount/MountOperations.h"
#include "mount/VolumeProbe.h"

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace harbrix {

class AppStateManager;
class FileSystem;
class KeychainManager;
class NASConfigStore;
class ProcessLauncher;

/// Mounts, unmounts and probes by the system's tools, the one starter of child processes. Holds no
/// state that outlives a call. Main thread.
class MountEngine final : public MountOperations {
public:
    static constexpr Seconds mountTimeout{30.0};
    static constexpr auto smbMountCommand = "/sbin/mount_smbfs";
    static constexpr auto nfsMountCommand = "/sbin/mount_nfs";
    static constexpr auto unmountCommand = "/usr/sbin/diskutil";
    static constexpr auto pingCommand = "/usr/bin/ping";

    struct ProcessResult {
        qint32 exitCode = 0;
        QString stdout_; ///< empty as a whole where it is not valid UTF-8
        QString stderr_;
    };

    MountEngine(KeychainManager& keychain, NASConfigStore& store, AppStateManager& appState,
                FileSystem& fileSystem, ProcessLauncher& launcher, Scheduler& scheduler,
                QString homeDirectory);

    /// Runs a tool to its end. A non-zero exit code is a result; failures are a tool that cannot be
    /// started (mountFailed) and death by any signal, the time limit's included (timeout).
    Task<Result<ProcessResult>> executeProcess(QString executablePath, QStringList arguments,
                                               Seconds timeout,
                                               std::optional<QByteArray> stdinData);

    Task<Result<QUrl>> mountSMB(NASConfig config) override;
    Task<Result<QUrl>> mountNFS(NASConfig config) override;
    Task<Result<void>> unmount(QUrl mountPoint, UnmountMode mode) override;
    /// Measured from before the tool's start to after its end, on the monotonic clock.
    Task<Result<Seconds>> ping(NASConfig config) override;
    [[nodiscard]] QString resolveMountPoint(const NASConfig& config) const override;
    Task<bool> volumeIsMounted(QString path) override;

    /// Any thread; may block on a share whose server is gone.
    [[nodiscard]] bool isVolumeMounted(const QString& path) const;
    /// Any thread; may block.
    [[nodiscard]] Result<void> ensureMountPointDirectory(const QString& path);
    Task<void> unmountConflictingShares(NASConfig config);

private:
    struct Credentials {
        QString user;
        std::optional<QString> password; ///< absent for a guest
    };

    Task<Result<Credentials>> smbCredentials(NASConfig config);
    Task<Result<ProcessResult>> runSMBTool(QStringList arguments, Credentials credentials,
                                           QString server);
    Task<Result<ProcessResult>> runNFSTool(QStringList arguments);
    Task<Result<void>> prepareMountPoint(QString path);
    Task<bool> fileExists(QString path);
    [[nodiscard]] QString defaultVolumesDirectory() const;

    KeychainManager& m_keychain;
    NASConfigStore& m_store;
    AppStateManager& m_appState;
    FileSystem& m_fileSystem;
    ProcessLauncher& m_launcher;
    Scheduler& m_scheduler;
    QString m_homeDirectory;
    VolumeProbe m_probe;
};

// The decisions of the flows, as plain functions.

/// The script for expect(1) that answers the tool's password prompt. Backslashes and double quotes
/// are escaped, nothing else is: a dollar sign keeps its meaning to the interpreter.
[[nodiscard]] QString buildExpectScript(const QStringList& arguments, const QString& password);
/// The output of expect(1) with the password of its script hidden: a dollar sign, a bracket or a
/// leading hyphen in it makes the script fail, and the interpreter then quotes what it read.
[[nodiscard]] QString withoutPassword(QString message, const QString& password);
/// "//user@address/share"; never a password. The share part loses its outer slashes and is
/// percent-encoded as UTF-8 but for letters, digits and "-._~!$&'()*+,/:=@": the characters of an
/// RFC 3986 path without ";", which the original platform's set for paths leaves out too.
[[nodiscard]] QString buildShareUrl(const QString& user, const QString& address,
                                    const QString& sharePath);
[[nodiscard]] HarbrixError classifySMBFailure(const MountEngine::ProcessResult& result);
[[nodiscard]] HarbrixError classifyNFSFailure(const MountEngine::ProcessResult& result);
/// Whether the tool was refused for lack of privileges, so that sudo may help.
[[nodiscard]] bool isPrivilegeRefusal(const MountEngine::ProcessResult& result);
/// What a failed tool has to say: its standard error, trimmed, or else its standard output.
[[nodiscard]] QString toolMessage(const MountEngine::ProcessResult& result);

} // namespace harbrix
