#pragma once

#include "mount_nfs/session/Session.h"

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace harbrix::nfs {

template <typename T>
using Outcome = std::expected<T, Status>;
/// Takes the outcome of an operation, on the loop's thread, once; never from inside the operation's
/// call.
template <typename T>
using Then = std::move_only_function<void(Outcome<T>)>;

/// A file, and what was known of it when the server answered a question `asked` at that time.
struct Node {
    FileHandle handle;
    Attributes attributes;
    TimePoint asked{};
};

struct AccessRights {
    std::uint32_t allowed = 0;
    Attributes attributes;
};

struct NewNode {
    FileType type = FileType::Directory;
    AttributeChange attributes;
    std::string linkTarget;
    std::uint32_t deviceMajor = 0;
    std::uint32_t deviceMinor = 0;
};

struct DirectoryPage {
    struct Entry {
        std::uint64_t cookie = 0;
        std::string name;
        Attributes attributes;
    };
    Verifier verifier{};
    std::vector<Entry> entries;
    bool end = false;
    TimePoint asked{};
};

struct ReadPiece {
    Slice data;
    bool endOfFile = false;
};

struct OpenedFile {
    std::shared_ptr<OpenState> state;
    Node node;
    std::optional<ReadPiece> start; ///< The file's beginning, where it was asked for.
};

/// The operations of a file system, each as one compound (4.0 needs more for creating a file).
/// Directory operations bring the directory's new attributes along.
class Operations {
public:
    explicit Operations(Session& session) : m_session(session) {}

    /// From the server's root down to the export.
    CallId root(const Credentials& who, std::vector<std::string> path, Then<Node> then);
    CallId lookup(const Credentials& who, const FileHandle& directory, std::string name,
                  Then<Node> then);
    CallId lookupParent(const Credentials& who, const FileHandle& directory, Then<Node> then);
    CallId getAttributes(const Credentials& who, const FileHandle& file, Then<Node> then);
    /// `state`: an open file through which the size may be changed whatever the mode says; or none.
    CallId setAttributes(const Credentials& who, const FileHandle& file,
                         std::shared_ptr<OpenState> state, AttributeChange change, Then<Node> then);
    CallId access(const Credentials& who, const FileHandle& file, std::uint32_t wanted,
                  Then<AccessRights> then);
    CallId readLink(const Credentials& who, const FileHandle& link, Then<std::string> then);
    CallId fileSystem(const Credentials& who, const FileHandle& file, Then<Attributes> then);

    struct Created {
        Node node;
        Attributes directory;
    };
    CallId create(const Credentials& who, const FileHandle& directory, std::string name,
                  NewNode what, Then<Created> then);
    CallId remove(const Credentials& who, const FileHandle& directory, std::string name,
                  Then<Attributes> then);
    struct Renamed {
        Attributes from;
        Attributes to;
    };
    CallId rename(const Credentials& who, const FileHandle& fromDirectory, std::string from,
                  const FileHandle& toDirectory, std::string to, Then<Renamed> then);
    CallId link(const Credentials& who, const FileHandle& file, const FileHandle& directory,
                std::string name, Then<Created> then);
    CallId readDirectory(const Credentials& who, const FileHandle& directory, std::uint64_t cookie,
                         const Verifier& verifier, std::uint32_t bytes, Then<DirectoryPage> then);

    enum class Truncate { No, Yes };
    /// A program that may be run but not read: servers let it be read too, and leave the rest to
    /// the client.
    enum class Purpose { Use, Execute };
    /// `startBytes`: how much of the file's beginning to read in the same round trip.
    CallId open(const Credentials& who, const FileHandle& file, std::uint32_t access,
                Purpose purpose, Truncate truncate, std::uint32_t startBytes,
                Then<OpenedFile> then);
    CallId createFile(const Credentials& who, const FileHandle& directory, std::string name,
                      std::uint32_t access, CreateMode mode, AttributeChange attributes,
                      Then<std::pair<OpenedFile, Attributes>> then);
    /// Gives the state back; failures are of no interest to anybody.
    void close(const std::shared_ptr<OpenState>& state);

    CallId read(const std::shared_ptr<OpenState>& state, std::uint64_t offset, std::uint32_t count,
                Then<ReadPiece> then);
    CallId write(const std::shared_ptr<OpenState>& state, std::uint64_t offset, Stability stability,
                 Slice data, Then<WriteResult> then);
    CallId commit(const std::shared_ptr<OpenState>& state, Then<Verifier> then);

    /// Takes or extends a lock; `Status::Denied` where somebody else holds it.
    CallId lock(const std::shared_ptr<OpenState>& state, std::uint64_t owner, LockType type,
                const ByteRange& range, Then<void> then);
    CallId unlock(const std::shared_ptr<OpenState>& state, std::uint64_t owner,
                  const ByteRange& range, Then<void> then);
    /// Who would be in the way; nothing if nobody.
    CallId testLock(const std::shared_ptr<OpenState>& state, std::uint64_t owner, LockType type,
                    const ByteRange& range, Then<std::optional<CompoundReader::Denied>> then);

    [[nodiscard]] Session& session() { return m_session; }

private:
    void giveBack(const Credentials& who, const FileHandle& file, const Stateid& stateid);
    void returnDelegation(const Credentials& who, const FileHandle& file, const OpenResult& result);
    void settleMinorZeroOpen(const Credentials& who, const FileHandle& file,
                             const OpenResult& result);

    Session& m_session;
};

} // namespace harbrix::nfs
