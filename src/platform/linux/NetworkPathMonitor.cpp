#include "platform/NetworkPathMonitor.h"

#include "platform/SystemLog.h"
#include "platform/linux/NetworkState.h"

#include <QSocketNotifier>

#include <linux/rtnetlink.h>
#include <netlink/errno.h>
#include <netlink/netlink.h>
#include <netlink/socket.h>
#include <sys/socket.h>

#include <cerrno>
#include <memory>

namespace harbrix {

namespace {

using Socket = std::unique_ptr<nl_sock, decltype(&nl_socket_free)>;

/// Listens for the kernel's notices only to know that something has changed, and then asks for the
/// whole state: so a notice that was lost in an overrun costs nothing.
class RtnetlinkPathMonitor final : public NetworkPathMonitor {
public:
    void start() override;

private:
    [[nodiscard]] int listen();
    void onReadable();
    void drain() const;
    void look();

    Socket m_socket{::nl_socket_alloc(), &::nl_socket_free};
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::optional<NetworkState> m_state;
    bool m_isStarted = false;
};

void RtnetlinkPathMonitor::start() {
    if (std::exchange(m_isStarted, true))
        return;
    // Listening comes before looking, or a change in between would be missed.
    if (const int error = listen(); error < 0) {
        static const SystemLog logger(QStringLiteral("com.harbrix"), QStringLiteral("Network"));
        logger.write(SystemLog::Type::Error, QStringLiteral("No news from the network: ") +
                                                 QString::fromUtf8(::nl_geterror(error)));
    }
    QMetaObject::invokeMethod(this, &RtnetlinkPathMonitor::look, Qt::QueuedConnection);
}

int RtnetlinkPathMonitor::listen() {
    if (!m_socket)
        return -NLE_NOMEM;
    if (const int error = ::nl_connect(m_socket.get(), NETLINK_ROUTE); error < 0)
        return error;
    if (const int error = ::nl_socket_add_memberships(
            m_socket.get(), RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR,
            RTNLGRP_IPV4_ROUTE, RTNLGRP_IPV6_ROUTE, RTNLGRP_NONE);
        error < 0)
        return error;
    m_notifier = std::make_unique<QSocketNotifier>(::nl_socket_get_fd(m_socket.get()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &RtnetlinkPathMonitor::onReadable);
    return 0;
}

void RtnetlinkPathMonitor::onReadable() {
    drain();
    look();
}

void RtnetlinkPathMonitor::drain() const {
    char notice[16 * 1024];
    // ENOBUFS tells of an overrun once; what fitted into the buffer is still there.
    while (::recv(::nl_socket_get_fd(m_socket.get()), notice, sizeof notice, MSG_DONTWAIT) >= 0 ||
           errno == ENOBUFS || errno == EINTR) {
    }
}

void RtnetlinkPathMonitor::look() {
    auto state = readNetworkState();
    const bool isFirst = !m_state;
    if (!state && !isFirst)
        return;
    if (!isFirst && *state == *m_state)
        return;
    m_state = state ? std::move(*state) : NetworkState();
    emit pathChanged(isSatisfied(*m_state));
}

} // namespace

std::unique_ptr<NetworkPathMonitor> NetworkPathMonitor::create() {
    return std::make_unique<RtnetlinkPathMonitor>();
}

} // namespace harbrix
