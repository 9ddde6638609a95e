#pragma once

#include "mount_smbfs/Answer.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace harbrix {

/// The numbers by which the kernel knows files, and the paths behind them. Any thread.
///
/// A number stays while the kernel holds look-ups of it, also when its name is taken away from it;
/// a path is then absent.
class NodeTable {
public:
    using Number = std::uint64_t;
    static constexpr Number root = 1;

    NodeTable();

    /// The number of this name, a new one if need be, with one look-up more.
    [[nodiscard]] Number lookUp(Number parent, const std::string& name);
    /// The same for what the server says of the name just now, which is remembered. If it has come
    /// to mean another file there, it gets another number, and the old one is left without a name.
    [[nodiscard]] Number lookUp(Number parent, const std::string& name, const Answer& answer);
    void forget(Number number, std::uint64_t lookUps);

    /// Below the mounted folder, "a/b"; empty for the root.
    [[nodiscard]] std::optional<std::string> path(Number number) const;
    [[nodiscard]] std::optional<std::string> childPath(Number parent,
                                                       const std::string& name) const;
    /// The number of a name the kernel knows.
    [[nodiscard]] std::optional<Number> find(Number parent, const std::string& name) const;
    /// Of these numbers those at or below `top`.
    [[nodiscard]] std::vector<Number> within(Number top, const std::vector<Number>& numbers) const;

    /// The name is gone from the server.
    void remove(Number parent, const std::string& name);
    /// The name has moved; whatever had the new one has lost it.
    void rename(Number oldParent, const std::string& oldName, Number newParent,
                const std::string& newName);

    /// What the server last said of it, e.g. its identity there.
    void remember(Number number, const Answer& answer);
    [[nodiscard]] std::optional<Answer> remembered(Number number) const;

    /// The folder and name of a number that has a name.
    [[nodiscard]] std::optional<std::pair<Number, std::string>> place(Number number) const;

private:
    using Key = std::pair<Number, std::string>;
    struct Node {
        Number parent = 0; ///< 0: it has no name any more
        std::string name;
        std::uint64_t lookUps = 0;
        std::size_t children = 0;
        std::optional<Answer> answer;
    };

    void detach(Number number);
    void attach(Number number, Number parent, const std::string& name);
    [[nodiscard]] Number lookUpLocked(Number parent, const std::string& name);
    void loseName(Number number);
    void eraseIfUnused(Number number);
    [[nodiscard]] std::optional<std::string> pathLocked(Number number) const;

    mutable std::mutex m_mutex;
    std::unordered_map<Number, Node> m_nodes;
    std::map<Key, Number> m_byName;
    Number m_next = root + 1;
};

} // namespace harbrix
