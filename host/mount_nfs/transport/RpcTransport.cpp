#include "mount_nfs/transport/RpcTransport.h"

#include <linux/sockios.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/ioctl.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace harbrix::nfs {

namespace {

using namespace std::chrono_literals;

constexpr auto connectLimit = 5s;
constexpr std::array<Duration, 6> pauses{50ms, 200ms, 500ms, 1s, 2s, 3s};
constexpr std::size_t largestRecord = (1 << 20) + 64 * 1024;
constexpr std::size_t receiveBurst = 8 << 20;
constexpr std::size_t smallMessage = 8 * 1024;
/// What the kernel may hold that is not on its way yet: no small message can overtake that.
constexpr int unsentLimit = 256 * 1024;
constexpr std::uint64_t goodPart = 1024;
constexpr std::uint64_t backlog = 16 * 1024;

std::string errnoText(int error) {
    return std::strerror(error);
}

/// The parts of a message from byte `skip` on, as sendmsg takes them.
void gather(const Message& message, std::size_t skip, std::vector<iovec>& into) {
    const auto add = [&](const std::uint8_t* data, std::size_t size) {
        const std::size_t cut = std::min(skip, size);
        skip -= cut;
        if (size > cut)
            into.push_back({const_cast<std::uint8_t*>(data + cut), size - cut});
    };
    std::size_t done = 0;
    for (const auto& attachment : message.attachments) {
        add(message.bytes.data() + done, attachment.position - done);
        add(attachment.data.bytes.data(), attachment.data.bytes.size());
        done = attachment.position;
    }
    add(message.bytes.data() + done, message.bytes.size() - done);
}

} // namespace

RpcTransport::RpcTransport(EventLoop& loop, BufferPool& pool, std::vector<Address> addresses,
                           SourcePort sourcePort, TransportListener& listener)
    : m_loop(loop), m_listener(listener), m_addresses(std::move(addresses)),
      m_sourcePort(sourcePort), m_reader(pool, largestRecord) {
    m_loop.beforeWait([this] { flush(); });
}

RpcTransport::~RpcTransport() {
    close();
}

void RpcTransport::close() {
    if (m_timer)
        m_loop.cancel(*m_timer);
    m_timer.reset();
    if (m_socket)
        m_loop.forget(m_socket.get());
    m_socket.reset();
    m_up = false;
    m_wantsWrite = false;
    ++m_connection;
    m_outgoing.clear();
    m_reader.reset();
    m_traffic = m_trafficBefore = {};
}

void RpcTransport::restart(const std::string& reason) {
    close();
    m_listener.transportDown(reason);
    connect();
}

void RpcTransport::lost(const std::string& reason) {
    close();
    const Duration pause = pauses[std::min<std::size_t>(m_failures, pauses.size() - 1)];
    ++m_failures;
    m_timer = m_loop.after(pause, [this] {
        m_timer.reset();
        connect();
    });
    m_listener.transportDown(reason);
}

bool RpcTransport::bindReserved(int fd, int family) {
    // As bindresvport(3) does, but for both families and from the top, where other services are
    // rare.
    for (std::uint16_t port = 1023; port >= 600; --port) {
        Address local;
        local.storage.ss_family = static_cast<sa_family_t>(family);
        if (family == AF_INET6) {
            reinterpret_cast<sockaddr_in6&>(local.storage).sin6_port = htons(port);
            local.length = sizeof(sockaddr_in6);
        } else {
            reinterpret_cast<sockaddr_in&>(local.storage).sin_port = htons(port);
            local.length = sizeof(sockaddr_in);
        }
        if (bind(fd, reinterpret_cast<const sockaddr*>(&local.storage), local.length) == 0)
            return true;
        if (errno != EADDRINUSE)
            return false;
    }
    return false;
}

void RpcTransport::connect() {
    if (m_socket || m_addresses.empty())
        return;
    const Address& address = m_addresses[m_nextAddress++ % m_addresses.size()];
    const int family = address.storage.ss_family;
    UniqueDescriptor fd(::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!fd)
        return lost(errnoText(errno));
    const int on = 1;
    setsockopt(fd.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    setsockopt(fd.get(), SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
    setsockopt(fd.get(), IPPROTO_TCP, TCP_NOTSENT_LOWAT, &unsentLimit, sizeof unsentLimit);
    if (m_sourcePort == SourcePort::Reserved && !bindReserved(fd.get(), family))
        m_reservedPortRefused = true;
    const int result =
        ::connect(fd.get(), reinterpret_cast<const sockaddr*>(&address.storage), address.length);
    if (result != 0 && errno != EINPROGRESS)
        return lost(errnoText(errno));
    m_socket = std::move(fd);
    if (result == 0)
        return connected();
    m_timer = m_loop.after(connectLimit, [this] { lost(errnoText(ETIMEDOUT)); });
    m_loop.watch(m_socket.get(), EPOLLOUT, [this](std::uint32_t) {
        int error = 0;
        socklen_t length = sizeof error;
        getsockopt(m_socket.get(), SOL_SOCKET, SO_ERROR, &error, &length);
        if (error != 0)
            lost(errnoText(error));
        else
            connected();
    });
}

void RpcTransport::connected() {
    if (m_timer)
        m_loop.cancel(*m_timer);
    m_timer.reset();
    m_up = true;
    ++m_connection;
    m_loop.watch(m_socket.get(), EPOLLIN, [this](std::uint32_t events) { onEvents(events); });
    m_listener.transportUp();
}

void RpcTransport::onEvents(std::uint32_t events) {
    const std::uint64_t connection = m_connection;
    if (events & (EPOLLIN | EPOLLHUP | EPOLLERR))
        receive();
    if (connection == m_connection && (events & EPOLLOUT)) {
        m_wantsWrite = false;
        m_loop.rewatch(m_socket.get(), EPOLLIN);
        flush();
    }
}

void RpcTransport::receive() {
    const std::uint64_t connection = m_connection;
    const std::function<void(Record)> deliver = [this, connection](Record record) {
        // A reply's handler may have closed the connection that this one came over.
        if (connection != m_connection)
            return;
        const RpcReply reply = parseReply(record.bytes);
        if (reply.outcome != RpcOutcome::Malformed)
            m_failures = 0;
        m_listener.transportReply(reply, record);
    };
    for (std::size_t total = 0; total < receiveBurst && connection == m_connection;) {
        const std::span<std::uint8_t> space = m_reader.space();
        const ssize_t count = recv(m_socket.get(), space.data(), space.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && errno == EAGAIN)
            return;
        if (count <= 0)
            return lost(count == 0 ? "the server closed the connection" : errnoText(errno));
        m_traffic.received += static_cast<std::uint64_t>(count);
        const bool sound = m_reader.filled(static_cast<std::size_t>(count), deliver);
        if (connection != m_connection)
            return;
        if (!sound)
            return lost("the server sent a record that is too long");
        total += static_cast<std::size_t>(count);
        if (static_cast<std::size_t>(count) < space.size())
            return;
    }
}

void RpcTransport::send(std::shared_ptr<const Message> message) {
    if (!m_up)
        return;
    const std::size_t total = message->size();
    // Nobody who lists a folder is to wait for the megabytes of a copy.
    auto place = m_outgoing.end();
    if (total <= smallMessage)
        place = std::find_if(m_outgoing.begin(), m_outgoing.end(), [](const Outgoing& each) {
            return each.sent == 0 && each.total > smallMessage;
        });
    m_outgoing.insert(place, {std::move(message), 0, total});
}

void RpcTransport::flush() {
    while (m_up && !m_wantsWrite && !m_outgoing.empty()) {
        std::vector<iovec> parts;
        for (const Outgoing& outgoing : m_outgoing) {
            gather(*outgoing.message, outgoing.sent, parts);
            if (parts.size() > 32)
                break;
        }
        msghdr header{};
        header.msg_iov = parts.data();
        header.msg_iovlen = parts.size();
        ssize_t sent = sendmsg(m_socket.get(), &header, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0 && errno == EAGAIN) {
            m_wantsWrite = true;
            m_loop.rewatch(m_socket.get(), EPOLLIN | EPOLLOUT);
            return;
        }
        if (sent < 0)
            return lost(errnoText(errno));
        auto left = static_cast<std::size_t>(sent);
        m_traffic.sent += left;
        while (left > 0) {
            Outgoing& front = m_outgoing.front();
            const std::size_t part = std::min(left, front.total - front.sent);
            front.sent += part;
            left -= part;
            if (front.sent == front.total)
                m_outgoing.pop_front();
        }
    }
}

bool RpcTransport::hasMovedData() {
    if (!m_up)
        return false;
    int waiting = 0;
    if (ioctl(m_socket.get(), SIOCOUTQ, &waiting) == 0)
        m_traffic.waiting = static_cast<std::uint64_t>(waiting);
    m_traffic.taken = m_traffic.sent - m_traffic.waiting;
    const Traffic before = std::exchange(m_trafficBefore, m_traffic);
    // The kernel of a server that hangs still acknowledges small requests: they prove nothing.
    const bool gave = m_traffic.received - before.received >= goodPart;
    const bool took = before.waiting >= backlog && m_traffic.taken - before.taken >= goodPart;
    return gave || took;
}

} // namespace harbrix::nfs
