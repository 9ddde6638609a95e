#include "ctl/RunningProgram.h"

#include "ctl/RemoteInterface.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>

namespace harbrix {
namespace {

RunningProgram::Failure notRunning() {
    return {NotRunning, QStringLiteral("Harbrix is not running; start it with `harbrix`")};
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
    const bool unclearShare = error.name() == QLatin1String(remote::noSuchShareError) ||
                              error.name() == QLatin1String(remote::ambiguousNameError);
    return {unclearShare ? NoSuchShare : Failed, error.message()};
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

} // namespace harbrix
