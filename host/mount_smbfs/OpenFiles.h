#pragma once

#include "mount_smbfs/NodeTable.h"
#include "mount_smbfs/OpenFile.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

namespace harbrix {

/// The files that the kernel holds open, by number, each once however often it was opened. Any
/// thread.
class OpenFiles {
public:
    using Number = NodeTable::Number;
    using File = std::shared_ptr<OpenFile>;

    /// A file whose last opener has gone.
    struct Released {
        File file;
        bool isDoomed; ///< it was removed from sight and is to be deleted
    };

    OpenFiles(FileServices services, const NodeTable& nodes)
        : m_services(services), m_nodes(nodes) {}

    /// Null if it is not open just now.
    [[nodiscard]] File find(Number number) const;
    [[nodiscard]] std::vector<File> all() const;

    /// One opener more.
    [[nodiscard]] File acquire(Number number);
    /// One less. If it was the last, the caller has to close the file and tell so by noteClosed().
    [[nodiscard]] std::optional<Released> release(Number number);
    void noteClosed(Number number);

    /// Of a file that is open: the last to close it shall delete it.
    void doom(Number number);

    /// Until the server's handles of a file that is being closed are gone; bounded.
    void waitUntilClosed(Number number);
    /// Closes on the server whatever is open at or below, so that names can change.
    void releaseHandlesWithin(Number top);

private:
    struct Opened {
        File file;
        unsigned count = 0;
        bool isDoomed = false;
    };

    FileServices m_services;
    const NodeTable& m_nodes;
    mutable std::mutex m_mutex;
    std::condition_variable m_closed;
    std::map<Number, Opened> m_open;
    std::multiset<Number> m_closing;
};

} // namespace harbrix
