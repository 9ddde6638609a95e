#include "mount_smbfs/OpenFile.h"

#include <fcntl.h>

#include <cerrno>

namespace harbrix {

namespace {

constexpr int readBit = static_cast<int>(OpenFile::Access::read);

using std::chrono::steady_clock;

// The kernel asks for so much at most without having seen a sequence.
constexpr off_t smallFile = off_t{128} << 10;

int openFlags(int access) {
    if (access == static_cast<int>(OpenFile::Access::readWrite))
        return O_RDWR;
    return access == static_cast<int>(OpenFile::Access::write) ? O_WRONLY : O_RDONLY;
}

} // namespace

OpenFile::OpenFile(FileServices services, PathSource path)
    : m_services(services), m_path(std::move(path)),
      m_readAhead(services.jobs, services.buffers, services.watchdog) {}

OpenFile::~OpenFile() = default;

Outcome<Answer> OpenFile::open(Access access, int creationFlags,
                               const std::optional<Answer>& known) {
    m_wanted |= static_cast<int>(access);
    if ((creationFlags & O_TRUNC) != 0) {
        (void) flush();
        m_readAhead.drop();
    }
    // A small file is read through one handle, so nothing but reading it need be asked.
    const bool isKnown = known && creationFlags == 0 && access == Access::read &&
                         known->attributes.st_size <= smallFile;
    const bool isExclusive = (creationFlags & O_EXCL) != 0;
    const CallPlan plan{.repeat = isExclusive ? Repeat::never : Repeat::once,
                        .preferred = m_occupied};
    const auto opened = m_services.link.call(
        plan, [&](Lane & lane) -> Outcome<struct stat> {
            const auto file = handleOn(lane, access, creationFlags);
            if (!file)
                return std::unexpected(file.error());
            if (isKnown)
                return known->attributes;
            return attributesOn(lane);
        });
    if (!opened)
        return std::unexpected(opened.error());
    // Only the first time: all later handles must be of the same file.
    ino_t none = 0;
    if (m_identity.compare_exchange_strong(none, opened->st_ino))
        m_isIdentityCertain = !isKnown;
    else if (!isKnown && opened->st_ino == m_identity)
        m_isIdentityCertain = true;
    return isKnown ? *known : Answer{*opened, steady_clock::now()};
}

bool OpenFile::isWritable() const {
    return (m_wanted & static_cast<int>(Access::write)) != 0;
}

// A further handle could turn out to be of another file than the first; where that could not be
// told the first one's lane has to do.
unsigned OpenFile::usableLanes(unsigned allowed) const {
    const unsigned occupied = m_occupied;
    return m_isIdentityCertain || occupied == 0 ? allowed : occupied;
}

Outcome<SMBCFILE*> OpenFile::handleOn(Lane& lane, Access access, int creationFlags) {
    Slot& slot = m_slots[lane.index];
    const int needed = static_cast<int>(access);
    const bool isValid = slot.file && slot.epoch == lane.connection.epoch();
    if (isValid && (slot.access & needed) == needed && creationFlags == 0)
        return slot.file;
    if (isValid)
        closeSlot(lane);
    slot.file = nullptr;
    const auto path = m_path();
    if (!path)
        return std::unexpected(ESTALE);
    if (m_isClosed)
        return std::unexpected(EBADF);
    // A handle without read access does not even tell its attributes.
    const bool onlyReads = needed == readBit && m_wanted == readBit;
    int granted = static_cast<int>(onlyReads ? Access::read : Access::readWrite);
    auto file = lane.connection.open(*path, openFlags(granted) | creationFlags);
    if (!file && file.error() == EACCES && granted != needed) {
        granted = needed;
        file = lane.connection.open(*path, openFlags(granted) | creationFlags);
    }
    if (!file)
        return file;
    slot = {*file, lane.connection.epoch(), granted};
    m_occupied |= 1U << lane.index;
    // The first handle is what its opener asked for, whichever file that is.
    if (creationFlags == 0 && m_identity != 0) {
        if (auto same = checkIdentity(lane); !same) {
            closeSlot(lane);
            return std::unexpected(same.error());
        }
    }
    return file;
}

Outcome<struct stat> OpenFile::attributesOn(Lane& lane) {
    const Slot& slot = m_slots[lane.index];
    if (slot.file && slot.epoch == lane.connection.epoch() && (slot.access & readBit) != 0)
        return lane.connection.attributes(slot.file);
    const auto path = m_path();
    if (!path)
        return std::unexpected(ESTALE);
    return lane.connection.attributes(*path);
}

// Between two opens the name may have come to mean another file: never mix the data of two.
Outcome<void> OpenFile::checkIdentity(Lane& lane) {
    const auto info = attributesOn(lane);
    if (!info)
        return std::unexpected(info.error());
    if (info->st_ino != m_identity)
        return std::unexpected(ESTALE);
    return {};
}

void OpenFile::closeSlot(Lane& lane) {
    Slot& slot = m_slots[lane.index];
    if (slot.file && slot.epoch == lane.connection.epoch())
        (void) lane.connection.close(slot.file);
    slot.file = nullptr;
    m_occupied &= ~(1U << lane.index);
}

void OpenFile::releaseHandles() {
    const unsigned occupied = m_occupied;
    for (unsigned index = 0; index < m_slots.size(); ++index) {
        const unsigned bit = 1U << index;
        if ((occupied & bit) == 0)
            continue;
        const auto closed =
            m_services.link.call({.allowed = bit}, [&](Lane& lane) -> Outcome<void> {
                closeSlot(lane);
                return {};
            });
        if (!closed) {
            m_services.link.addChore(
                index, [self = shared_from_this()](Lane& lane) { self->closeSlot(lane); });
        }
    }
}

void OpenFile::close() {
    (void) flush();
    m_isClosed = true;
    m_flushAlarm.cancel();
    m_readAhead.drop();
    releaseHandles();
}

Outcome<std::size_t> OpenFile::fetch(std::span<char> buffer, off_t offset, unsigned allowedLanes) {
    const CallPlan plan{
        .kind = CallKind::transfer, .allowed = usableLanes(allowedLanes), .preferred = m_occupied};
    return m_services.link.call(plan, [&](Lane& lane) -> Outcome<std::size_t> {
        const auto file = handleOn(lane, Access::read);
        if (!file)
            return std::unexpected(file.error());
        return lane.connection.read(*file, buffer, offset);
    });
}

Outcome<ReadResult> OpenFile::read(std::size_t size, off_t offset) {
    {
        Lock lock(m_mutex);
        if (auto drained = drain(lock); !drained)
            return std::unexpected(drained.error());
    }
    const auto self = shared_from_this();
    const auto ahead = [this](std::span<char> buffer, off_t at) {
        return fetch(buffer, at, m_services.link.transferLanes());
    };
    if (auto result = m_readAhead.take(size, offset, self, ahead))
        return *result;
    auto memory = std::make_shared<std::vector<char>>(size);
    const auto count = fetch(*memory, offset, ~0U);
    if (!count)
        return std::unexpected(count.error());
    return ReadResult{memory, std::span<const char>(memory->data(), *count)};
}

Outcome<void> OpenFile::truncate(off_t size) {
    Lock lock(m_mutex);
    if (auto drained = drain(lock); !drained)
        return drained;
    m_readAhead.drop();
    // The lock stays: a write that came in between would be cut off or not, by chance.
    const CallPlan plan{.allowed = usableLanes(~0U), .preferred = m_occupied};
    return m_services.link.call(plan, [&](Lane& lane) -> Outcome<void> {
        const auto file = handleOn(lane, Access::write);
        if (!file)
            return std::unexpected(file.error());
        return lane.connection.truncate(*file, size);
    });
}

Outcome<Answer> OpenFile::attributes() {
    {
        Lock lock(m_mutex);
        // A failed write is told to the writer; whoever asks for the size gets the server's answer.
        (void) drain(lock);
    }
    const CallPlan plan{.allowed = usableLanes(~0U), .preferred = m_occupied};
    const auto info = m_services.link.call(plan, [&](Lane& lane) { return attributesOn(lane); });
    if (!info)
        return std::unexpected(info.error());
    return Answer{*info, steady_clock::now()};
}

} // namespace harbrix
