#pragma once

#include "base/UniqueDescriptor.h"
#include "mount_nfs/protocol/Rpc.h"
#include "mount_nfs/transport/EventLoop.h"
#include "mount_nfs/transport/RecordReader.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace harbrix::nfs {

/// A socket address of either family.
struct Address {
    sockaddr_storage storage{};
    socklen_t length = 0;
};

enum class SourcePort { Any, Reserved };

/// What the transport tells the session above it.
class TransportListener {
public:
    virtual ~TransportListener() = default;
    /// A new connection stands; nothing of the old one will be answered.
    virtual void transportUp() = 0;
    /// The connection, or an attempt to make one, has failed. The transport tries again by itself.
    virtual void transportDown(const std::string& reason) = 0;
    /// A reply has come. `record` keeps the bytes alive that `reply` points into.
    virtual void transportReply(const RpcReply& reply, const Record& record) = 0;
};

/// One TCP connection to the server at a time, made anew with growing pauses whenever it is lost.
class RpcTransport {
public:
    RpcTransport(EventLoop& loop, BufferPool& pool, std::vector<Address> addresses,
                 SourcePort sourcePort, TransportListener& listener);
    ~RpcTransport();
    RpcTransport(const RpcTransport&) = delete;
    RpcTransport& operator=(const RpcTransport&) = delete;

    void start() { connect(); }
    /// Drops the connection and makes another one at once.
    void restart(const std::string& reason);
    [[nodiscard]] bool isUp() const { return m_up; }
    /// No reserved port could be had, so connections come from any port.
    [[nodiscard]] bool reservedPortRefused() const { return m_reservedPortRefused; }
    void setSourcePort(SourcePort port) { m_sourcePort = port; }

    /// Queues a message; it goes out before the loop sleeps. Only while up. The bytes stay with the
    /// caller.
    void send(std::shared_ptr<const Message> message);

    /// Whether a good part of a large message has moved, either way, since this was asked last.
    /// Over a slow link that takes longer than a server may be silent.
    [[nodiscard]] bool hasMovedData();

private:
    void connect();
    void connected();
    void lost(const std::string& reason);
    void close();
    void onEvents(std::uint32_t events);
    void receive();
    void flush();
    [[nodiscard]] bool bindReserved(int fd, int family);

    EventLoop& m_loop;
    TransportListener& m_listener;
    std::vector<Address> m_addresses;
    std::size_t m_nextAddress = 0;
    SourcePort m_sourcePort;
    bool m_reservedPortRefused = false;

    UniqueDescriptor m_socket;
    bool m_up = false;
    bool m_wantsWrite = false;
    std::uint64_t m_connection = 0; ///< Counts connections, so that a loop over one sees its end.
    unsigned m_failures = 0;
    std::optional<EventLoop::TimerId> m_timer;
    RecordReader m_reader;

    struct Outgoing {
        std::shared_ptr<const Message> message;
        std::size_t sent = 0;
        std::size_t total = 0;
    };
    std::deque<Outgoing> m_outgoing;

    /// Bytes over this connection.
    struct Traffic {
        std::uint64_t received = 0;
        std::uint64_t sent = 0;    ///< Given to the socket.
        std::uint64_t taken = 0;   ///< Acknowledged by the other side.
        std::uint64_t waiting = 0; ///< Given to the socket and not acknowledged.
    };
    Traffic m_traffic;
    Traffic m_trafficBefore; ///< As `hasMovedData` saw it last.
};

} // namespace harbrix::nfs
