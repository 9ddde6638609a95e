#pragma once

#include "platform/MessageBus.h"
#include "support/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>

namespace harbrix {

/// A service of a template of python3-dbusmock on a private bus.
class MockService {
public:
    /// `path` is the object that calls go to unless they name another.
    MockService(const PrivateBus& bus, QString templateName, QString serviceName, QString path)
        : m_bus(bus), m_template(std::move(templateName)), m_service(std::move(serviceName)),
          m_path(std::move(path)), m_connection(BusAddress(bus.address()).connect()) {}
    ~MockService() { QDBusConnection::disconnectFromBus(m_connection.name()); }
    MockService(const MockService&) = delete;
    MockService& operator=(const MockService&) = delete;

    [[nodiscard]] static bool isInstalled() {
        return QFileInfo::exists(
            QStringLiteral("/usr/lib/python3/dist-packages/dbusmock/__init__.py"));
    }

    /// Whether the service is on the bus. `parameters` is JSON.
    [[nodiscard]] bool start(const QString& parameters = QStringLiteral("{}")) {
        m_process = std::make_unique<TestProcess>();
        m_process->setProcessEnvironment(m_bus.environment());
        m_process->setStandardOutputFile(QProcess::nullDevice());
        m_process->start(QStringLiteral("/usr/bin/python3"),
                         {QStringLiteral("-m"), QStringLiteral("dbusmock"),
                          QStringLiteral("--template"), m_template, QStringLiteral("--parameters"),
                          parameters});
        if (!m_connection.isConnected()) {
            QDBusConnection::disconnectFromBus(m_connection.name());
            m_connection = BusAddress(m_bus.address()).connect();
        }
        const QDeadlineTimer deadline(10'000);
        while (!deadline.hasExpired()) {
            // The name is claimed before the template is loaded, and only then it answers.
            if (m_connection.interface()->isServiceRegistered(m_service) &&
                call(QStringLiteral("GetCalls"), {}).type() == QDBusMessage::ReplyMessage)
                return true;
            QThread::msleep(20);
        }
        return false;
    }
    void stop() { m_process.reset(); }
    void freeze() const { ::kill(static_cast<pid_t>(m_process->processId()), SIGSTOP); }

    /// A method of the mock's own interface, org.freedesktop.DBus.Mock.
    QDBusMessage call(const QString& method, const QVariantList& arguments,
                      const QString& path = {},
                      const QString& interface = QStringLiteral("org.freedesktop.DBus.Mock")) {
        auto message = QDBusMessage::createMethodCall(m_service, path.isEmpty() ? m_path : path,
                                                      interface, method);
        message.setArguments(arguments);
        return m_connection.call(message);
    }
    bool emitSignal(const QString& interface, const QString& name, const QString& signature,
                    const QVariantList& arguments) {
        return call(QStringLiteral("EmitSignal"), {interface, name, signature, arguments}).type() ==
               QDBusMessage::ReplyMessage;
    }
    /// The arguments of each call of that method so far.
    [[nodiscard]] QList<QVariantList> callsOf(const QString& method) {
        QList<QVariantList> calls;
        const QVariant reply =
            call(QStringLiteral("GetMethodCalls"), {method}).arguments().value(0);
        const auto list = qvariant_cast<QDBusArgument>(reply);
        list.beginArray();
        while (!list.atEnd()) {
            qulonglong time = 0;
            QVariantList arguments;
            list.beginStructure();
            list >> time >> arguments;
            list.endStructure();
            calls << arguments;
        }
        list.endArray();
        return calls;
    }

private:
    const PrivateBus& m_bus;
    QString m_template;
    QString m_service;
    QString m_path;
    QDBusConnection m_connection;
    std::unique_ptr<TestProcess> m_process;
};

} // namespace harbrix
