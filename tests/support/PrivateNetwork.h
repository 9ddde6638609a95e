#pragma once

#include "base/UniqueDescriptor.h"

#include <QProcess>
#include <QString>

#include <fcntl.h>
#include <sched.h>

namespace harbrix {

/// Puts the calling thread into an empty network of its own for as long as the object lives.
class PrivateNetwork {
public:
    PrivateNetwork() { m_isEntered = m_home && ::unshare(CLONE_NEWNET) == 0; }
    ~PrivateNetwork() {
        if (m_isEntered)
            ::setns(m_home.get(), CLONE_NEWNET);
    }
    PrivateNetwork(const PrivateNetwork&) = delete;
    PrivateNetwork& operator=(const PrivateNetwork&) = delete;

    /// False without the right to make one.
    [[nodiscard]] bool isEntered() const { return m_isEntered; }

    /// Runs ip(8) in it with the lines as a batch; whether all of them worked.
    [[nodiscard]] bool ip(const QByteArray& lines) const {
        QProcess batch;
        batch.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        batch.start(QStringLiteral("ip"), {QStringLiteral("-batch"), QStringLiteral("-")});
        batch.write(lines);
        batch.waitForBytesWritten();
        batch.closeWriteChannel();
        return batch.waitForFinished() && batch.exitCode() == 0;
    }

private:
    UniqueDescriptor m_home{::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC)};
    bool m_isEntered = false;
};

} // namespace harbrix
