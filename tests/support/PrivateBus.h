#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <sys/prctl.h>

#include <csignal>
#include <memory>

namespace harbrix {

/// A process of a test that ends with it, also when the test crashes.
class TestProcess : public QProcess {
public:
    TestProcess() {
        setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    ~TestProcess() override {
        if (state() == QProcess::NotRunning)
            return;
        // One that a test has stopped takes no other signal.
        kill();
        waitForFinished();
    }

    /// Starts it and waits for its first line; empty where none came within ten seconds.
    [[nodiscard]] QByteArray startAndReadLine(const QString& program,
                                              const QStringList& arguments) {
        start(program, arguments);
        while (!canReadLine() && waitForReadyRead(10'000)) {
        }
        return readLine().trimmed();
    }
};

/// A message bus of the test's own, on which nothing is started on demand. It keeps its address
/// when it is stopped and started again.
class PrivateBus {
public:
    PrivateBus() {
        QFile config(m_directory.filePath(QStringLiteral("bus.conf")));
        if (!config.open(QIODevice::WriteOnly))
            return;
        config.write("<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration "
                     "1.0//EN\" \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
                     "<busconfig><type>session</type><auth>EXTERNAL</auth><listen>" +
                     address().toUtf8() +
                     "</listen><policy context=\"default\"><allow send_destination=\"*\" "
                     "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                     "</busconfig>");
        config.close();
        start();
    }
    ~PrivateBus() { stop(); }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// Whether it runs now.
    bool start() {
        m_daemon = std::make_unique<TestProcess>();
        // As root it complains about a limit that it cannot raise.
        m_daemon->setProcessChannelMode(QProcess::SeparateChannels);
        const QByteArray printed = m_daemon->startAndReadLine(
            QStringLiteral("dbus-daemon"),
            {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
             QStringLiteral("--config-file=") + m_directory.filePath(QStringLiteral("bus.conf"))});
        return !printed.isEmpty();
    }
    /// Ends it, and with it every connection.
    void stop() {
        m_daemon.reset();
        QFile::remove(socketPath());
    }

    [[nodiscard]] QString address() const { return QStringLiteral("unix:path=") + socketPath(); }
    /// The test's environment with this bus as both the session bus and the system bus.
    [[nodiscard]] QProcessEnvironment environment() const {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address());
        environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), address());
        return environment;
    }

private:
    [[nodiscard]] QString socketPath() const { return m_directory.filePath(QStringLiteral("bus")); }

    QTemporaryDir m_directory;
    std::unique_ptr<TestProcess> m_daemon;
};

} // namespace harbrix
