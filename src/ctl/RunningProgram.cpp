#include "ctl/RunningProgram.h"

#include "ctl/RemoteInterface.h"
#include "ctl/StandardStreams.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusServiceWatcher>

#include <map>

namespace harbrix {
namespace {

RunningProgram::Failure notRunning() {
    return {NotRunning, QStringLiteral("Harbrix is not running; start it with `harbrix`")};
}

ExitCode codeOf(const QString& errorName) {
    static const std::map<QString, ExitCode> codes{{remote::noSuchShareError, NoSuchShare},
                                                   {remote::ambiguousNameError, NoSuchShare},
                                                   {remote::unknownKeyError, WrongUsage},
                                                   {remote::invalidValueError, WrongUsage},
                                                   {remote::invalidRecordsError, DamagedInput}};
    const auto found = codes.find(errorName);
    return found == codes.end() ? Failed : found->second;
}

RunningProgram::Failure failureOf(const QDBusError& error) {
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
        return notRunning();
    case QDBusError::UnknownObject:
        return {NotRunning, QStringLiteral("Harbrix is still starting or already ending")};
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
        return {NotRunning, QStringLiteral("Harbrix ended or does not answer")};
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownInterface:
        return {Failed, QStringLiteral("the running Harbrix is of another version and does not "
                                       "know this command")};
    default:
        break;
    }
    return {codeOf(error.name()), error.message()};
}

} // namespace

RunningProgram::RunningProgram() : m_bus(QDBusConnection::sessionBus()) {}

std::optional<RunningProgram::Failure> RunningProgram::unreachable() const {
    if (!m_bus.isConnected())
        return Failure{NotRunning, QStringLiteral("there is no session bus to reach Harbrix on")};
    if (!m_bus.interface()->isServiceRegistered(QLatin1String(remote::service)))
        return notRunning();
    return std::nullopt;
}

std::expected<QString, RunningProgram::Failure>
RunningProgram::call(const char* method, const QVariantList& arguments,
                     std::chrono::milliseconds limit) const {
    if (const auto failure = unreachable())
        return std::unexpected(*failure);
    QDBusMessage request =
        QDBusMessage::createMethodCall(QLatin1String(remote::service), QLatin1String(remote::path),
                                       QLatin1String(remote::interface), QLatin1String(method));
    request.setArguments(arguments);
    // Asking must not start what the user did not start.
    request.setAutoStartService(false);
    const QDBusMessage answer = m_bus.call(request, QDBus::Block, int(limit.count()));
    if (answer.type() == QDBusMessage::ErrorMessage)
        return std::unexpected(failureOf(QDBusError(answer)));
    return answer.arguments().value(0).toString();
}

void RunningProgram::exitWhenGone(QObject* owner) const {
    auto* watcher = new QDBusServiceWatcher(QLatin1String(remote::service), m_bus,
                                            QDBusServiceWatcher::WatchForUnregistration, owner);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceUnregistered, owner, [] {
        printError(QStringLiteral("harbrixctl: Harbrix has ended\n"));
        QCoreApplication::exit(NotRunning);
    });
}

} // namespace harbrix
