#include "mount_nfs/fuse/FileSystem.h"

#include <cerrno>
#include <cstdio>
#include <utility>

// Everything that looks up, makes, moves or removes names.
namespace harbrix::nfs {

namespace {

std::string hiddenName(std::uint64_t fileId, std::uint64_t serial) {
    char name[64];
    std::snprintf(name, sizeof name, ".nfs%016llx%08llx", static_cast<unsigned long long>(fileId),
                  static_cast<unsigned long long>(serial));
    return name;
}

} // namespace

void FileSystem::lookup(fuse_req_t request, fuse_ino_t parent, std::string name) {
    const auto directory = inodeOf(request, parent);
    if (!directory)
        return;
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (!nameFits(pending, name))
        return;
    auto then = [this, pending](Outcome<Node> node) {
        if (!node)
            return pending->fail(node.error());
        replyEntry(pending, *node);
    };
    const Credentials who = m_callers.of(request);
    pending->waitsFor(
        name == ".."
            ? m_operations.lookupParent(who, directory->handle, std::move(then))
            : m_operations.lookup(who, directory->handle, std::move(name), std::move(then)));
}

void FileSystem::create(fuse_req_t request, fuse_ino_t parent, std::string name, NewNode what) {
    const auto directory = inodeOf(request, parent);
    if (!directory)
        return;
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (!nameFits(pending, name))
        return;
    pending->waitsFor(m_operations.create(
        m_callers.of(request), directory->handle, std::move(name), std::move(what),
        [this, pending, directory](Outcome<Operations::Created> created) {
            if (!created)
                return pending->fail(created.error());
            directory->learn(created->directory, created->node.asked);
            replyEntry(pending, created->node);
        }));
}

void FileSystem::hideIfOpen(const Pending& pending, const Credentials& who,
                            const std::shared_ptr<Inode>& directory, const std::string& name,
                            std::function<void(std::shared_ptr<Inode> hidden)> then) {
    // Without an open file no name can be one; most removals are spared the question.
    if (m_files.empty())
        return then(nullptr);
    pending->waitsFor(m_operations.lookup(
        who, directory->handle, name,
        [this, pending, directory, name, who, then = std::move(then)](Outcome<Node> node) {
            if (pending->isAnswered())
                return;
            const auto inode = node ? m_inodes.find(node->handle) : nullptr;
            // With another name left the file outlives this one at the server.
            if (!inode || inode->opens == 0 || inode->hidden || node->attributes.links > 1 ||
                node->attributes.type != FileType::Regular)
                return then(nullptr);
            hide(pending, who, {directory, name}, inode, then);
        }));
}

void FileSystem::hide(const Pending& pending, const Credentials& who, const Place& place,
                      const std::shared_ptr<Inode>& inode,
                      std::function<void(std::shared_ptr<Inode> hidden)> then) {
    const std::string hidden = hiddenName(inode->attributes.fileId, m_nextHandle++);
    pending->waitsFor(m_operations.rename(
        who, place.directory->handle, place.name, place.directory->handle, hidden,
        [this, pending, directory = place.directory, inode, hidden, who,
         then = std::move(then)](Outcome<Operations::Renamed> renamed) {
            if (!renamed)
                return pending->fail(renamed.error());
            inode->hidden =
                std::make_unique<Inode::HiddenName>(Inode::HiddenName{directory, hidden, who});
            directory->learn(renamed->to, Clock::now());
            if (inode->opens == 0) // closed while this was on its way
                removeHidden(inode);
            if (!pending->isAnswered())
                then(inode);
        }));
}

void FileSystem::removeHidden(const std::shared_ptr<Inode>& inode) {
    const auto hidden = std::move(inode->hidden);
    if (hidden)
        m_operations.remove(hidden->who, hidden->directory->handle, hidden->name,
                            [hidden = hidden->directory](Outcome<Attributes>) {});
}

void FileSystem::remove(fuse_req_t request, fuse_ino_t parent, std::string name) {
    const auto directory = inodeOf(request, parent);
    if (!directory)
        return;
    const Credentials who = m_callers.of(request);
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (!nameFits(pending, name))
        return;
    hideIfOpen(pending, who, directory, name,
               [this, pending, directory, name, who](const std::shared_ptr<Inode>& hidden) {
                   if (hidden)
                       return pending->succeed();
                   pending->waitsFor(
                       m_operations.remove(who, directory->handle, name,
                                           [pending, directory](Outcome<Attributes> after) {
                                               if (!after)
                                                   return pending->fail(after.error());
                                               directory->learn(*after, Clock::now());
                                               pending->succeed();
                                           }));
               });
}

void FileSystem::removeDirectory(fuse_req_t request, fuse_ino_t parent, std::string name) {
    const auto directory = inodeOf(request, parent);
    if (!directory)
        return;
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (!nameFits(pending, name))
        return;
    pending->waitsFor(m_operations.remove(m_callers.of(request), directory->handle, std::move(name),
                                          [pending, directory](Outcome<Attributes> after) {
                                              if (!after)
                                                  return pending->fail(after.error());
                                              directory->learn(*after, Clock::now());
                                              pending->succeed();
                                          }));
}

void FileSystem::rename(fuse_req_t request, fuse_ino_t fromParent, std::string from,
                        fuse_ino_t toParent, std::string to, unsigned flags) {
    const auto source = inodeOf(request, fromParent);
    if (!source)
        return;
    const auto target = inodeOf(request, toParent);
    if (!target)
        return;
    const Credentials who = m_callers.of(request);
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (flags != 0) // NFS can neither exchange names nor refuse to replace one
        return pending->fail(EINVAL);
    if (!nameFits(pending, from) || !nameFits(pending, to))
        return;
    hideIfOpen(
        pending, who, target, to,
        [this, pending, source, from, target, to, who](const std::shared_ptr<Inode>& hidden) {
            pending->waitsFor(m_operations.rename(
                who, source->handle, from, target->handle, to,
                [this, pending, source, target, to, hidden](Outcome<Operations::Renamed> renamed) {
                    if (!renamed) {
                        if (hidden)
                            unhide(hidden, to);
                        return pending->fail(renamed.error());
                    }
                    source->learn(renamed->from, Clock::now());
                    target->learn(renamed->to, Clock::now());
                    pending->succeed();
                }));
        });
}

void FileSystem::unhide(const std::shared_ptr<Inode>& inode, const std::string& name) {
    const auto hidden = std::move(inode->hidden);
    if (hidden)
        m_operations.rename(hidden->who, hidden->directory->handle, hidden->name,
                            hidden->directory->handle, name,
                            [](const Outcome<Operations::Renamed>&) {});
}

void FileSystem::link(fuse_req_t request, fuse_ino_t number, fuse_ino_t parent, std::string name) {
    const auto inode = inodeOf(request, number);
    if (!inode)
        return;
    const auto directory = inodeOf(request, parent);
    if (!directory)
        return;
    const Credentials who = m_callers.of(request);
    const Pending pending = m_requests.add(request, CallKind::Metadata);
    if (!nameFits(pending, name))
        return;
    drained(inode, [this, pending, inode, directory, name, who] {
        if (pending->isAnswered())
            return;
        pending->waitsFor(
            m_operations.link(who, inode->handle, directory->handle, name,
                              [this, pending, directory](Outcome<Operations::Created> created) {
                                  if (!created)
                                      return pending->fail(created.error());
                                  directory->learn(created->directory, created->node.asked);
                                  replyEntry(pending, created->node);
                              }));
    });
}

} // namespace harbrix::nfs
