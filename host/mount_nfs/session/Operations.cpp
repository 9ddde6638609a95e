#include "mount_nfs/session/Operations.h"

#include <utility>

namespace harbrix::nfs {

namespace {

/// Reads the results of one compound step by step and remembers the first thing that went wrong.
class Steps {
public:
    explicit Steps(Reply& reply) : m_reply(reply) {}
    /// Whether `op` succeeded and its body can be read.
    bool at(Op op) { return !m_failed && (m_reply.results.next(op) || !(m_failed = true)); }
    [[nodiscard]] Status status() const {
        if (m_reply.results.malformed() && m_reply.status == Status::Ok)
            return Status::LocalMalformed;
        if (m_failed && m_reply.status == Status::Ok)
            return Status::LocalMalformed;
        return m_reply.status;
    }
    CompoundReader* operator->() { return &m_reply.results; }

private:
    Reply& m_reply;
    bool m_failed = false;
};

Call metadata(const Credentials& who, std::function<void(CompoundWriter&)> encode) {
    Call call;
    call.credentials = who;
    call.encode = std::move(encode);
    return call;
}

Call changing(const Credentials& who, std::function<void(CompoundWriter&)> encode) {
    Call call = metadata(who, std::move(encode));
    call.cacheReply = true;
    return call;
}

template <typename T>
void finish(Then<T>& then, const Steps& steps, T value) {
    if (steps.status() == Status::Ok)
        then(std::move(value));
    else
        then(std::unexpected(steps.status()));
}

/// The common end of compounds that lead to a file: GETFH and GETATTR.
void readNode(Steps& steps, Node& node) {
    if (steps.at(Op::GetFh))
        node.handle = steps->getFh();
    if (steps.at(Op::GetAttr))
        node.attributes = steps->getAttr();
}

} // namespace

CallId Operations::root(const Credentials& who, std::vector<std::string> path, Then<Node> then) {
    const std::size_t depth = path.size();
    Call call = metadata(who, [path = std::move(path)](CompoundWriter& out) {
        out.putRootFh();
        for (const std::string& name : path)
            out.lookup(name);
        out.getFh();
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then), depth](Reply& reply) mutable {
        Steps steps(reply);
        Node node{{}, {}, reply.asked};
        (void) steps.at(Op::PutRootFh);
        for (std::size_t index = 0; index < depth; ++index)
            (void) steps.at(Op::Lookup);
        readNode(steps, node);
        finish(then, steps, std::move(node));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::lookup(const Credentials& who, const FileHandle& directory, std::string name,
                          Then<Node> then) {
    Call call = metadata(who, [directory, name = std::move(name)](CompoundWriter& out) {
        out.putFh(directory);
        out.lookup(name);
        out.getFh();
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        Node node{{}, {}, reply.asked};
        (void) steps.at(Op::PutFh);
        (void) steps.at(Op::Lookup);
        readNode(steps, node);
        finish(then, steps, std::move(node));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::lookupParent(const Credentials& who, const FileHandle& directory,
                                Then<Node> then) {
    Call call = metadata(who, [directory](CompoundWriter& out) {
        out.putFh(directory);
        out.lookupParent();
        out.getFh();
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        Node node{{}, {}, reply.asked};
        (void) steps.at(Op::PutFh);
        (void) steps.at(Op::LookupParent);
        readNode(steps, node);
        finish(then, steps, std::move(node));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::getAttributes(const Credentials& who, const FileHandle& file, Then<Node> then) {
    Call call = metadata(who, [file](CompoundWriter& out) {
        out.putFh(file);
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then), file](Reply& reply) mutable {
        Steps steps(reply);
        Node node{file, {}, reply.asked};
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::GetAttr))
            node.attributes = steps->getAttr();
        finish(then, steps, std::move(node));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::setAttributes(const Credentials& who, const FileHandle& file,
                                 std::shared_ptr<OpenState> state, AttributeChange change,
                                 Then<Node> then) {
    Call call = changing(who, [file, state, change = std::move(change)](CompoundWriter& out) {
        out.putFh(file);
        out.setAttr(state ? state->forIo() : Stateid::anonymous(), change);
        out.getAttr(statAttributes);
    });
    call.state = std::move(state);
    call.done = [then = std::move(then), file](Reply& reply) mutable {
        Steps steps(reply);
        Node node{file, {}, reply.asked};
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::SetAttr))
            steps->setAttr();
        if (steps.at(Op::GetAttr))
            node.attributes = steps->getAttr();
        finish(then, steps, std::move(node));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::access(const Credentials& who, const FileHandle& file, std::uint32_t wanted,
                          Then<AccessRights> then) {
    Call call = metadata(who, [file, wanted](CompoundWriter& out) {
        out.putFh(file);
        out.access(wanted);
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        AccessRights rights;
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::Access))
            rights.allowed = steps->access();
        if (steps.at(Op::GetAttr))
            rights.attributes = steps->getAttr();
        finish(then, steps, std::move(rights));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::readLink(const Credentials& who, const FileHandle& link,
                            Then<std::string> then) {
    Call call = metadata(who, [link](CompoundWriter& out) {
        out.putFh(link);
        out.readLink();
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        std::string target;
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::ReadLink))
            target = steps->readLink();
        finish(then, steps, std::move(target));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::fileSystem(const Credentials& who, const FileHandle& file,
                              Then<Attributes> then) {
    Call call = metadata(who, [file](CompoundWriter& out) {
        out.putFh(file);
        out.getAttr(fileSystemAttributes);
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        Attributes found;
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::GetAttr))
            found = steps->getAttr();
        finish(then, steps, std::move(found));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::create(const Credentials& who, const FileHandle& directory, std::string name,
                          NewNode what, Then<Created> then) {
    Call call = changing(
        who, [directory, name = std::move(name), what = std::move(what)](CompoundWriter& out) {
            out.putFh(directory);
            out.saveFh();
            out.create(what.type, name, what.attributes, what.linkTarget, what.deviceMajor,
                       what.deviceMinor);
            out.getFh();
            out.getAttr(statAttributes);
            out.restoreFh();
            out.getAttr(statAttributes);
        });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        Created created{{{}, {}, reply.asked}, {}};
        (void) steps.at(Op::PutFh);
        (void) steps.at(Op::SaveFh);
        if (steps.at(Op::Create))
            steps->create();
        readNode(steps, created.node);
        (void) steps.at(Op::RestoreFh);
        if (steps.at(Op::GetAttr))
            created.directory = steps->getAttr();
        finish(then, steps, std::move(created));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::remove(const Credentials& who, const FileHandle& directory, std::string name,
                          Then<Attributes> then) {
    Call call = changing(who, [directory, name = std::move(name)](CompoundWriter& out) {
        out.putFh(directory);
        out.remove(name);
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        Attributes after;
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::Remove))
            steps->changeInfo();
        if (steps.at(Op::GetAttr))
            after = steps->getAttr();
        finish(then, steps, std::move(after));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::rename(const Credentials& who, const FileHandle& fromDirectory, std::string from,
                          const FileHandle& toDirectory, std::string to, Then<Renamed> then) {
    Call call = changing(who, [fromDirectory, from = std::move(from), toDirectory,
                               to = std::move(to)](CompoundWriter& out) {
        out.putFh(fromDirectory);
        out.saveFh();
        out.putFh(toDirectory);
        out.rename(from, to);
        out.getAttr(statAttributes);
        out.restoreFh();
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        Renamed renamed;
        (void) steps.at(Op::PutFh);
        (void) steps.at(Op::SaveFh);
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::Rename)) {
            steps->changeInfo();
            steps->changeInfo();
        }
        if (steps.at(Op::GetAttr))
            renamed.to = steps->getAttr();
        (void) steps.at(Op::RestoreFh);
        if (steps.at(Op::GetAttr))
            renamed.from = steps->getAttr();
        finish(then, steps, std::move(renamed));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::link(const Credentials& who, const FileHandle& file, const FileHandle& directory,
                        std::string name, Then<Created> then) {
    Call call = changing(who, [file, directory, name = std::move(name)](CompoundWriter& out) {
        out.putFh(file);
        out.saveFh();
        out.putFh(directory);
        out.link(name);
        out.getAttr(statAttributes);
        out.restoreFh();
        out.getAttr(statAttributes);
    });
    call.done = [then = std::move(then), file](Reply& reply) mutable {
        Steps steps(reply);
        Created created{{file, {}, reply.asked}, {}};
        (void) steps.at(Op::PutFh);
        (void) steps.at(Op::SaveFh);
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::Link))
            steps->changeInfo();
        if (steps.at(Op::GetAttr))
            created.directory = steps->getAttr();
        (void) steps.at(Op::RestoreFh);
        if (steps.at(Op::GetAttr))
            created.node.attributes = steps->getAttr();
        finish(then, steps, std::move(created));
    };
    return m_session.submit(std::move(call));
}

CallId Operations::readDirectory(const Credentials& who, const FileHandle& directory,
                                 std::uint64_t cookie, const Verifier& verifier,
                                 std::uint32_t bytes, Then<DirectoryPage> then) {
    Call call = metadata(who, [=](CompoundWriter& out) {
        out.putFh(directory);
        out.readDir(cookie, verifier, bytes, entryAttributes);
    });
    call.done = [then = std::move(then)](Reply& reply) mutable {
        Steps steps(reply);
        DirectoryPage page;
        page.asked = reply.asked;
        (void) steps.at(Op::PutFh);
        if (steps.at(Op::ReadDir)) {
            page.verifier = steps->verifier();
            DirectoryEntry entry;
            while (steps->nextEntry(entry))
                page.entries.push_back(
                    {entry.cookie, std::string(entry.name), std::move(entry.attributes)});
            page.end = steps->endOfDirectory();
        }
        finish(then, steps, std::move(page));
    };
    return m_session.submit(std::move(call));
}

} // namespace harbrix::nfs
