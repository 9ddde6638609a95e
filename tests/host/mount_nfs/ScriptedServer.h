#pragma once

#include "mount_nfs/protocol/Compound.h"
#include "mount_nfs/transport/EventLoop.h"
#include "mount_nfs/transport/RecordReader.h"
#include "mount_nfs/transport/RpcTransport.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace harbrix::nfs {

/// An NFSv4.1 server on loopback, in the test's own loop, that knows sessions and one file. Single
/// answers can be scripted, and it can be as bad as a server may ever be.
class ScriptedServer {
public:
    /// Answers one operation: reads its arguments, writes its results.
    using Answer = std::function<Status(XdrReader& arguments, XdrWriter& results)>;

    explicit ScriptedServer(EventLoop& loop);
    ~ScriptedServer();

    [[nodiscard]] Address address() const { return m_address; }
    void script(Op op, Answer answer) { m_script[op] = std::move(answer); }

    /// Starts anew: sessions, open files and data that was not committed are forgotten.
    void reboot();
    /// Requests are gathered for a few milliseconds and carried out in reverse order.
    void setDisorderly() { m_disorderly = true; }
    void setSilent(bool silent) { m_silent = silent; }
    /// Changes what goes out; nothing ends that.
    void setSpoiler(std::function<void(std::vector<std::uint8_t>&)> spoil) {
        m_spoil = std::move(spoil);
    }

    std::vector<std::uint8_t> committed; ///< The file on the server's disk.
    std::vector<std::uint8_t> file;      ///< The file as the server sees it.
    std::map<Op, int> calls;             ///< How often each operation was asked for.
    std::size_t readLimit = 1 << 20;     ///< The most that one READ returns.

private:
    void accept();
    void receive();
    void execute(const std::vector<std::uint8_t>& record);
    Status run(Op op, XdrReader& in, XdrWriter& out);
    void answerSetUp(Op op, XdrReader& in, XdrWriter& out, Status& status);
    void answerFile(Op op, XdrReader& in, XdrWriter& out, Status& status);
    [[nodiscard]] Verifier verifier() const { return {m_instance}; }

    EventLoop& m_loop;
    BufferPool m_pool{64 << 20};
    Address m_address;
    int m_listener = -1;
    int m_connection = -1;
    RecordReader m_reader{m_pool, 2 << 20};
    std::map<Op, Answer> m_script;
    std::vector<std::vector<std::uint8_t>> m_gathered;
    std::uint8_t m_instance = 1;
    bool m_sessionStands = false;
    bool m_clientIsKnown = false;
    std::function<void(std::vector<std::uint8_t>&)> m_spoil;
    bool m_disorderly = false;
    bool m_silent = false;
};

} // namespace harbrix::nfs
