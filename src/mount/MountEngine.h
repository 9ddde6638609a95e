#pragma once

#include "mount/MountOperations.h"

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
    Task<Result<Seconds>> ping(NASConfig config) override;
    [[nodiscard]] QString resolveMountPoint(const NASConfig& config) const override;
    Task<bool> volumeIsMounted(QString path) override;

    /// Any thread; may block on a share whose server is gone.
    [[nodiscard]] bool isVolumeMounted(const QString& path) const;
    /// Any thread; may block.
    [[nodiscard]] Result<void> ensureMountPointDirectory(const QString& path);
    Task<void> unmountConflictingShares(NASConfig config);

private:
    KeychainManager& m_keychain;
    NASConfigStore& m_store;
    AppStateManager& m_appState;
    FileSystem& m_fileSystem;
    ProcessLauncher& m_launcher;
    Scheduler& m_scheduler;
    QString m_homeDirectory;
};

// The decisions of the flows, as plain functions.

/// The script for expect(1) that answers the tool's password prompt. Backslashes and double quotes
/// are escaped, nothing else is: a dollar sign keeps its meaning to the interpreter.
[[nodiscard]] QString buildExpectScript(const QStringList& arguments, const QString& password);
/// "//user@address/share", the share percent-encoded; never a password.
[[nodiscard]] QString buildShareUrl(const QString& user, const QString& address,
                                    const QString& sharePath);
[[nodiscard]] HarbrixError classifySMBFailure(const MountEngine::ProcessResult& result);
[[nodiscard]] HarbrixError classifyNFSFailure(const MountEngine::ProcessResult& result);

} // namespace harbrix
