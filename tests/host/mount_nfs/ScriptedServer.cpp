#include "ScriptedServer.h"

#include "mount_nfs/protocol/Rpc.h"

#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace harbrix::nfs {

namespace {
using namespace std::chrono_literals;

Stateid readStateid(XdrReader& in) {
    Stateid stateid;
    stateid.sequence = in.u32();
    const Bytes other = in.fixed(12);
    std::copy(other.begin(), other.end(), stateid.other.begin());
    return stateid;
}
} // namespace

ScriptedServer::ScriptedServer(EventLoop& loop) : m_loop(loop) {
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
    auto& local = reinterpret_cast<sockaddr_in&>(m_address.storage);
    local.sin_family = AF_INET;
    local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    m_address.length = sizeof local;
    auto* plain = reinterpret_cast<sockaddr*>(&m_address.storage);
    if (bind(m_listener, plain, m_address.length) != 0 || listen(m_listener, 8) != 0)
        std::abort();
    getsockname(m_listener, plain, &m_address.length);
    m_loop.watch(m_listener, EPOLLIN, [this](std::uint32_t) { accept(); });
}

ScriptedServer::~ScriptedServer() {
    for (const int fd : {m_listener, m_connection}) {
        if (fd < 0)
            continue;
        m_loop.forget(fd);
        close(fd);
    }
}

void ScriptedServer::accept() {
    const int fd = ::accept4(m_listener, nullptr, nullptr, SOCK_NONBLOCK);
    if (fd < 0)
        return;
    if (m_connection >= 0) {
        m_loop.forget(m_connection);
        close(m_connection);
    }
    m_connection = fd;
    m_reader.reset();
    m_loop.watch(fd, EPOLLIN, [this](std::uint32_t) { receive(); });
}

void ScriptedServer::reboot() {
    m_sessionStands = m_clientIsKnown = false;
    file = committed;
    ++m_instance;
    m_gathered.clear();
    if (m_connection >= 0) {
        m_loop.forget(m_connection);
        close(std::exchange(m_connection, -1));
    }
}

void ScriptedServer::receive() {
    const auto space = m_reader.space();
    const ssize_t count = recv(m_connection, space.data(), space.size(), 0);
    if (count <= 0) {
        m_loop.forget(m_connection);
        close(std::exchange(m_connection, -1));
        return;
    }
    (void) m_reader.filled(static_cast<std::size_t>(count), [this](const Record& record) {
        std::vector<std::uint8_t> copy(record.bytes.begin(), record.bytes.end());
        if (m_silent)
            return;
        if (!m_disorderly)
            return execute(copy);
        if (m_gathered.empty())
            m_loop.after(5ms, [this] {
                auto all = std::exchange(m_gathered, {});
                for (auto each = all.rbegin(); each != all.rend(); ++each)
                    execute(*each);
            });
        m_gathered.push_back(std::move(copy));
    });
}

void ScriptedServer::execute(const std::vector<std::uint8_t>& record) {
    XdrReader in(record);
    const std::uint32_t xid = in.u32();
    for (int word = 0; word < 4; ++word)
        (void) in.u32();
    const std::uint32_t procedure = in.u32();
    for (int part = 0; part < 2; ++part) { // credentials and verifier
        (void) in.u32();
        (void) in.opaque(1000);
    }
    XdrWriter out;
    (void) out.placeholder();
    for (const std::uint32_t word : {xid, 1u, 0u, 0u, 0u, 0u})
        out.u32(word);
    if (procedure == 1) {
        (void) in.opaque(1000);
        (void) in.u32();
        const std::uint32_t count = in.u32();
        XdrWriter results;
        Status status = Status::Ok;
        std::uint32_t done = 0;
        for (; done < count && status == Status::Ok; ++done) {
            const auto op = static_cast<Op>(in.u32());
            XdrWriter body;
            status = run(op, in, body);
            results.u32(static_cast<std::uint32_t>(op));
            results.u32(static_cast<std::uint32_t>(status));
            results.fixed(body.take().flattened());
        }
        out.u32(static_cast<std::uint32_t>(status));
        out.u32(0);
        out.u32(done);
        out.fixed(results.take().bytes);
    }
    auto bytes = finishCall(std::move(out)).flattened();
    if (m_spoil)
        m_spoil(bytes);
    if (m_connection >= 0 && send(m_connection, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
        std::perror("send");
}

Status ScriptedServer::run(Op op, XdrReader& in, XdrWriter& out) {
    ++calls[op];
    if (const auto scripted = m_script.find(op); scripted != m_script.end())
        return scripted->second(in, out);
    Status status = Status::Ok;
    answerSetUp(op, in, out, status);
    answerFile(op, in, out, status);
    return status;
}

void ScriptedServer::answerSetUp(Op op, XdrReader& in, XdrWriter& out, Status& status) {
    const auto words = [](auto& stream, int count) {
        for (int word = 0; word < count; ++word)
            (void) stream.u32();
    };
    switch (op) {
    case Op::ExchangeId:
        m_clientIsKnown = true;
        out.u64(m_instance);
        for (const std::uint32_t word : {1u, 0u, 0u, 0u, 0u, 0u, 0u, 0u})
            out.u32(word);
        break;
    case Op::CreateSession:
        if (!m_clientIsKnown) {
            status = Status::StaleClientId;
            break;
        }
        m_sessionStands = true;
        out.fixed(std::vector<std::uint8_t>(16, m_instance));
        for (const std::uint32_t word : {1u, 0u, 0u, 1u << 20, 1u << 20, 8192u, 16u, 16u, 0u})
            out.u32(word);
        break;
    case Op::Sequence: {
        const Bytes session = in.fixed(16);
        const std::uint32_t sequence = in.u32(), slot = in.u32();
        words(in, 2);
        if (!m_sessionStands || session[0] != m_instance) {
            status = Status::BadSession;
            break;
        }
        out.fixed(session);
        for (const std::uint32_t word : {sequence, slot, 15u, 15u, 0u})
            out.u32(word);
        break;
    }
    case Op::ReclaimComplete:
        words(in, 1);
        break;
    case Op::PutFh:
        (void) in.opaque(128);
        break;
    default:
        break;
    }
}

void ScriptedServer::answerFile(Op op, XdrReader& in, XdrWriter& out, Status& status) {
    if (op == Op::Read) {
        (void) readStateid(in);
        const std::uint64_t offset = std::min<std::uint64_t>(in.u64(), file.size());
        const std::size_t count =
            std::min({std::size_t{in.u32()}, file.size() - offset, readLimit});
        out.boolean(offset + count == file.size());
        out.opaque({file.data() + offset, count});
    } else if (op == Op::Write) {
        (void) readStateid(in);
        const std::uint64_t offset = in.u64();
        const std::uint32_t stability = in.u32();
        const Bytes data = in.opaque(2 << 20);
        file.resize(std::max(file.size(), offset + data.size()));
        std::copy(data.begin(), data.end(), file.begin() + static_cast<std::ptrdiff_t>(offset));
        if (stability == 2)
            committed = file;
        out.u32(static_cast<std::uint32_t>(data.size()));
        out.u32(stability);
        out.fixed(verifier());
    } else if (op == Op::Commit) {
        (void) in.u64();
        (void) in.u32();
        committed = file;
        out.fixed(verifier());
    }
    (void) status;
}

} // namespace harbrix::nfs
