#include "mount/MountEngine.h"
#include "mount/MountPoint.h"
#include "services/Text.h"

namespace harbrix {

namespace {
constexpr auto sudoCommand = "/usr/bin/sudo";
} // namespace

bool isPrivilegeRefusal(const MountEngine::ProcessResult& result) {
    // "not permitted" covers "operation not permitted" too.
    const QString message = result.stderr_.toLower();
    return result.exitCode == 1 &&
           (message.contains(u"permission") || message.contains(u"not permitted"));
}

HarbrixError classifyNFSFailure(const MountEngine::ProcessResult& result) {
    if (result.exitCode == 64)
        return HarbrixError::mountFailed(text("nfs.error.invalidArgument"));
    const QString message = toolMessage(result);
    if (result.exitCode == 1 && message.contains(u"sudo"))
        return HarbrixError::mountFailed(text("nfs.error.sudoRequired"));
    return HarbrixError::mountFailed("mount_nfs exited with code " +
                                     QString::number(result.exitCode) + ": " + message);
}

Task<Result<QUrl>> MountEngine::mountNFS(NASConfig config) {
    if (config.sharePath.isEmpty())
        co_return std::unexpected(HarbrixError::mountFailed(text("nfs.error.emptySharePath")));

    const QString path = resolveMountPoint(config);
    auto probe = volumeIsMounted(path);
    const bool alreadyMounted = co_await probe;
    if (alreadyMounted)
        co_return directoryUrl(path);
    auto prepare = prepareMountPoint(path);
    const auto prepared = co_await prepare;
    if (!prepared)
        co_return std::unexpected(prepared.error());

    QString options = QStringLiteral("vers=4,tcp,noresvport");
    if (config.mountOptions.readOnly)
        options += u",ro";
    auto run = runNFSTool({"-o", options, config.address + u':' + config.sharePath, path});
    const auto result = co_await run;
    if (!result)
        co_return std::unexpected(result.error());
    if (result->exitCode != 0)
        co_return std::unexpected(classifyNFSFailure(*result));
    co_return directoryUrl(path);
}

Task<Result<MountEngine::ProcessResult>> MountEngine::runNFSTool(QStringList arguments) {
    auto run = executeProcess(nfsMountCommand, arguments, mountTimeout, std::nullopt);
    auto result = co_await run;
    if (!result || !isPrivilegeRefusal(*result))
        co_return result;
    auto look = fileExists(sudoCommand);
    const bool canRetry = co_await look;
    if (!canRetry)
        co_return result;
    auto rerun = executeProcess(sudoCommand, QStringList{"-n", nfsMountCommand} + arguments,
                                mountTimeout, std::nullopt);
    co_return co_await rerun;
}

} // namespace harbrix
