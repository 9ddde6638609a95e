#include "base/Worker.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "credentials/KeychainManager.h"
#include "mount/MountEngine.h"
#include "mount/MountPoint.h"

#include <QRegularExpression>

namespace harbrix {

namespace {

constexpr auto expectCommand = "/usr/bin/expect";

QString escaped(QString text) {
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u'"', QStringLiteral("\\\""));
    return text;
}

QString quoted(const QString& text) {
    return u'"' + escaped(text) + u'"';
}

QString trimSlashes(const QString& path) {
    qsizetype begin = 0;
    qsizetype end = path.size();
    while (begin < end && path.at(begin) == u'/')
        ++begin;
    while (end > begin && path.at(end - 1) == u'/')
        --end;
    return path.mid(begin, end - begin);
}

} // namespace

QString buildExpectScript(const QStringList& arguments, const QString& password) {
    QString list;
    for (const QString& argument : arguments)
        list += u' ' + quoted(argument);
    return "set password " + quoted(password) +
           "\n"
           "set args [list" +
           list +
           "]\n"
           "spawn /sbin/mount_smbfs {*}$args\n"
           "expect {\n"
           "    \"Password for *:\" {\n"
           "        send \"$password\\r\"\n"
           "        expect eof\n"
           "    }\n"
           "    eof\n"
           "}\n";
}

QString withoutPassword(QString message, const QString& password) {
    if (password.isEmpty())
        return message;
    const QString hidden = QStringLiteral("••••••");
    const QString written = escaped(password);
    // The command itself, which the interpreter quotes in full or cut short.
    static const QRegularExpression command("set password \".*");
    message.replace(command, "set password " + hidden);
    message.replace(written, hidden);
    message.replace(password, hidden);
    // And the piece of it that it took for a name or a command of its own.
    QStringList pieces = message.split(u'"');
    for (QString& piece : pieces)
        if (!piece.isEmpty() && written.contains(piece))
            piece = hidden;
    return pieces.join(u'"');
}

QString buildShareUrl(const QString& user, const QString& address, const QString& sharePath) {
    QString share = trimSlashes(sharePath);
    if (share.isValidUtf16())
        share = QString::fromLatin1(QUrl::toPercentEncoding(share, "!$&'()*+,/:=@"));
    return "//" + user + u'@' + address + u'/' + share;
}

HarbrixError classifySMBFailure(const MountEngine::ProcessResult& result) {
    const QString message = toolMessage(result);
    if (result.exitCode == 64 && message.isEmpty())
        return HarbrixError::mountFailed(QStringLiteral(
            "mount_smbfs "
            "参数错误。可能原因：挂载点已被占用、共享路径格式不正确、或缺少必要参数。"));
    return HarbrixError::mountFailed("mount_smbfs exited with code " +
                                     QString::number(result.exitCode) + ": " + message);
}

Task<Result<QUrl>> MountEngine::mountSMB(NASConfig config) {
    if (config.sharePath.isEmpty())
        co_return std::unexpected(HarbrixError::mountFailed(QStringLiteral("共享路径不能为空")));
    auto conflicts = unmountConflictingShares(config);
    co_await conflicts;

    const QString path = resolveMountPoint(config);
    auto probe = volumeIsMounted(path);
    const bool alreadyMounted = co_await probe;
    if (alreadyMounted)
        co_return directoryUrl(path);
    auto prepare = prepareMountPoint(path);
    const auto prepared = co_await prepare;
    if (!prepared)
        co_return std::unexpected(prepared.error());

    auto lookUp = smbCredentials(config);
    const auto credentials = co_await lookUp;
    if (!credentials)
        co_return std::unexpected(credentials.error());
    QStringList arguments;
    if (config.mountOptions.readOnly)
        arguments << "-o"
                  << "ro";
    arguments << buildShareUrl(credentials->user, config.address, config.sharePath) << path;

    auto run = runSMBTool(arguments, *credentials, config.address);
    const auto result = co_await run;
    if (!result)
        co_return std::unexpected(result.error());
    if (result->exitCode != 0)
        co_return std::unexpected(classifySMBFailure(*result));
    co_return directoryUrl(path);
}

Task<Result<MountEngine::Credentials>> MountEngine::smbCredentials(NASConfig config) {
    const QString guest = QStringLiteral("guest");
    if (config.authMethod == AuthMethod::guest)
        co_return Credentials{guest, std::nullopt};

    KeychainManager& keychain = m_keychain;
    auto read = onWorker(
        [&keychain, account = config.keychainIdentifier] { return keychain.getPassword(account); });
    const auto password = co_await read;
    if (!password || password->isEmpty())
        co_return std::unexpected(
            HarbrixError::authenticationFailed("No password found in keychain for " + config.name));
    co_return Credentials{config.username.value_or(guest), password};
}

Task<Result<MountEngine::ProcessResult>>
MountEngine::runSMBTool(QStringList arguments, Credentials credentials, QString server) {
    if (!credentials.password) {
        auto run = executeProcess(smbMountCommand, arguments, mountTimeout, std::nullopt);
        co_return co_await run;
    }
    auto look = fileExists(expectCommand);
    const bool canExpect = co_await look;
    if (canExpect) {
        const QByteArray script = buildExpectScript(arguments, *credentials.password).toUtf8();
        auto run = executeProcess(expectCommand, {"-"}, mountTimeout, script);
        auto result = co_await run;
        if (result) {
            result->stdout_ = withoutPassword(result->stdout_, *credentials.password);
            result->stderr_ = withoutPassword(result->stderr_, *credentials.password);
        }
        co_return result;
    }

    // The entry for the tool is gone again before the tool starts; that order is settled.
    KeychainManager& keychain = m_keychain;
    auto leave = onWorker([&keychain, server, credentials]() -> Result<void> {
        auto written =
            keychain.writeSystemSMBKeychain(server, credentials.user, *credentials.password);
        if (written)
            keychain.cleanupSystemSMBKeychain(server, credentials.user);
        return written;
    });
    const auto left = co_await leave;
    if (!left)
        co_return std::unexpected(left.error());
    auto run =
        executeProcess(smbMountCommand, QStringList("-N") + arguments, mountTimeout, std::nullopt);
    co_return co_await run;
}

Task<void> MountEngine::unmountConflictingShares(NASConfig config) {
    std::vector<std::pair<QUuid, QUrl>> conflicts;
    for (const NASConfig& other : m_store.configs()) {
        if (other.id == config.id || other.address != config.address ||
            other.sharePath != config.sharePath)
            continue;
        const auto status = m_appState.status(other.id);
        if (status && status->mountState.kind() == MountState::Kind::mounted && status->mountPoint)
            conflicts.emplace_back(other.id, *status->mountPoint);
    }
    for (const auto& [id, mountPoint] : conflicts) {
        auto attempt = unmount(mountPoint, UnmountMode::Plain);
        const auto unmounted = co_await attempt;
        if (unmounted)
            m_appState.updateStatus(id, MountState::Kind::idle);
    }
}

} // namespace harbrix
