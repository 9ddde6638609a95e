#include "mount_smbfs/NodeTable.h"

#include <algorithm>

namespace harbrix {

namespace {
constexpr std::chrono::seconds rememberRemovalFor(30);
}

NodeTable::NodeTable() {
    m_nodes[root].lookUps = 1;
}

NodeTable::Number NodeTable::lookUp(Number parent, const std::string& name) {
    const std::lock_guard lock(m_mutex);
    const auto known = m_byName.find({parent, name});
    const Number number = known != m_byName.end() ? known->second : m_next++;
    if (known == m_byName.end())
        attach(number, parent, name);
    if (!m_removed.empty())
        m_removed.erase({parent, name});
    ++m_nodes[number].lookUps;
    return number;
}

void NodeTable::forget(Number number, std::uint64_t lookUps) {
    const std::lock_guard lock(m_mutex);
    const auto node = m_nodes.find(number);
    if (node == m_nodes.end() || number == root)
        return;
    node->second.lookUps -= std::min(node->second.lookUps, lookUps);
    eraseIfUnused(number);
}

// A folder outlives the kernel's interest while something below it is known: paths lead through it.
void NodeTable::eraseIfUnused(Number number) {
    while (number != root && number != 0) {
        const auto node = m_nodes.find(number);
        if (node == m_nodes.end() || node->second.lookUps > 0 || node->second.children > 0)
            return;
        const Number parent = node->second.parent;
        detach(number);
        m_nodes.erase(number);
        number = parent;
    }
}

void NodeTable::attach(Number number, Number parent, const std::string& name) {
    Node& node = m_nodes[number];
    node.parent = parent;
    node.name = name;
    m_byName[{parent, name}] = number;
    ++m_nodes[parent].children;
}

void NodeTable::detach(Number number) {
    Node& node = m_nodes[number];
    if (node.parent == 0)
        return;
    m_byName.erase({node.parent, node.name});
    --m_nodes[node.parent].children;
    node.parent = 0;
}

std::optional<std::string> NodeTable::pathLocked(Number number) const {
    std::string path;
    while (number != root) {
        const auto node = m_nodes.find(number);
        if (node == m_nodes.end() || node->second.parent == 0)
            return std::nullopt;
        path = path.empty() ? node->second.name : node->second.name + "/" + path;
        number = node->second.parent;
    }
    return path;
}

std::optional<std::string> NodeTable::path(Number number) const {
    const std::lock_guard lock(m_mutex);
    return pathLocked(number);
}

std::optional<std::string> NodeTable::childPath(Number parent, const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    const auto folder = pathLocked(parent);
    if (!folder)
        return std::nullopt;
    return folder->empty() ? name : *folder + "/" + name;
}

std::optional<NodeTable::Number> NodeTable::find(Number parent, const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    const auto known = m_byName.find({parent, name});
    if (known == m_byName.end())
        return std::nullopt;
    return known->second;
}

std::vector<NodeTable::Number> NodeTable::within(Number top,
                                                 const std::vector<Number>& numbers) const {
    const std::lock_guard lock(m_mutex);
    std::vector<Number> found;
    for (Number number : numbers) {
        Number at = number;
        while (at != top && at != 0) {
            const auto node = m_nodes.find(at);
            at = node == m_nodes.end() ? 0 : node->second.parent;
        }
        if (at == top)
            found.push_back(number);
    }
    return found;
}

void NodeTable::remove(Number parent, const std::string& name) {
    const std::lock_guard lock(m_mutex);
    noteRemoval(parent, name);
    const auto known = m_byName.find({parent, name});
    if (known == m_byName.end())
        return;
    loseName(known->second);
}

// The kernel may still know the number; the folder it was in may have been kept only for its sake.
void NodeTable::loseName(Number number) {
    const Number parent = m_nodes[number].parent;
    detach(number);
    eraseIfUnused(number);
    eraseIfUnused(parent);
}

void NodeTable::rename(Number oldParent, const std::string& oldName, Number newParent,
                       const std::string& newName) {
    const std::lock_guard lock(m_mutex);
    noteRemoval(oldParent, oldName);
    m_removed.erase({newParent, newName});
    const auto moved = m_byName.find({oldParent, oldName});
    if (const auto replaced = m_byName.find({newParent, newName});
        replaced != m_byName.end() && replaced != moved)
        loseName(replaced->second);
    if (moved == m_byName.end())
        return;
    const Number number = moved->second;
    detach(number);
    attach(number, newParent, newName);
}

void NodeTable::remember(Number number, const struct stat& attributes) {
    const std::lock_guard lock(m_mutex);
    if (const auto node = m_nodes.find(number); node != m_nodes.end())
        node->second.attributes = attributes;
}

void NodeTable::noteChange(Number number) {
    const std::lock_guard lock(m_mutex);
    if (const auto node = m_nodes.find(number); node != m_nodes.end())
        node->second.changedAt = std::chrono::steady_clock::now();
}

bool NodeTable::wasChangedSince(Number number, TimePoint time) const {
    const std::lock_guard lock(m_mutex);
    const auto node = m_nodes.find(number);
    return node != m_nodes.end() && node->second.changedAt >= time;
}

void NodeTable::noteRemoval(Number parent, const std::string& name) {
    const TimePoint now = std::chrono::steady_clock::now();
    if (now - m_removedPrunedAt > rememberRemovalFor) {
        std::erase_if(m_removed,
                      [&](const auto& item) { return now - item.second > rememberRemovalFor; });
        m_removedPrunedAt = now;
    }
    m_removed[{parent, name}] = now;
}

bool NodeTable::wasRemovedSince(Number parent, const std::string& name, TimePoint time) const {
    const std::lock_guard lock(m_mutex);
    const auto removed = m_removed.find({parent, name});
    return removed != m_removed.end() && removed->second >= time;
}

std::optional<struct stat> NodeTable::remembered(Number number) const {
    const std::lock_guard lock(m_mutex);
    const auto node = m_nodes.find(number);
    return node == m_nodes.end() ? std::nullopt : node->second.attributes;
}

} // namespace harbrix
