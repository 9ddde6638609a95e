#include "mount_smbfs/NodeTable.h"

#include <algorithm>

namespace harbrix {

NodeTable::NodeTable() {
    m_nodes[root].lookUps = 1;
}

NodeTable::Number NodeTable::lookUp(Number parent, const std::string& name) {
    const std::lock_guard lock(m_mutex);
    return lookUpLocked(parent, name);
}

NodeTable::Number NodeTable::lookUp(Number parent, const std::string& name, const Answer& answer) {
    const std::lock_guard lock(m_mutex);
    if (const auto known = m_byName.find({parent, name}); known != m_byName.end()) {
        const auto& before = m_nodes[known->second].answer;
        const ino_t identity = answer.attributes.st_ino;
        // 0 comes from a server that does not number its files.
        if (before && before->attributes.st_ino != identity && before->attributes.st_ino != 0 &&
            identity != 0)
            loseName(known->second);
    }
    const Number number = lookUpLocked(parent, name);
    m_nodes[number].answer = answer;
    return number;
}

NodeTable::Number NodeTable::lookUpLocked(Number parent, const std::string& name) {
    const auto known = m_byName.find({parent, name});
    const Number number = known != m_byName.end() ? known->second : m_next++;
    if (known == m_byName.end())
        attach(number, parent, name);
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

void NodeTable::remember(Number number, const Answer& answer) {
    const std::lock_guard lock(m_mutex);
    if (const auto node = m_nodes.find(number); node != m_nodes.end())
        node->second.answer = answer;
}

std::optional<Answer> NodeTable::remembered(Number number) const {
    const std::lock_guard lock(m_mutex);
    const auto node = m_nodes.find(number);
    return node == m_nodes.end() ? std::nullopt : node->second.answer;
}

std::optional<std::pair<NodeTable::Number, std::string>> NodeTable::place(Number number) const {
    const std::lock_guard lock(m_mutex);
    const auto node = m_nodes.find(number);
    if (node == m_nodes.end() || node->second.parent == 0)
        return std::nullopt;
    return std::pair(node->second.parent, node->second.name);
}

} // namespace harbrix
