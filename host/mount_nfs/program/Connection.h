#pragma once

#include "mount_nfs/program/Options.h"
#include "mount_nfs/session/Operations.h"

#include <expected>
#include <memory>
#include <string>

namespace harbrix::nfs {

/// A client that stands: its session is made and the export's root is known.
struct Connection {
    std::unique_ptr<Session> session;
    std::unique_ptr<Operations> operations;
    Node root;
    Attributes statistics;
};

/// Resolves the host, connects and finds the export, all within a limit of its own. Runs the loop
/// meanwhile. The error is a text for the user; "permission" and "not permitted" stand in it only
/// where more rights would help.
[[nodiscard]] std::expected<Connection, std::string>
connectTo(EventLoop& loop, BufferPool& pool, const Options& options, const Credentials& who);

} // namespace harbrix::nfs
