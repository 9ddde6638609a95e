#include "common/InitAnswer.h"

#include "base/UniqueDescriptor.h"

#include <fcntl.h>
#include <fuse_lowlevel.h>
#include <linux/fuse.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace harbrix {

namespace {

template <typename Header>
Header readHeader(const void* memory, std::size_t offset) {
    Header header;
    std::memcpy(&header, static_cast<const char*>(memory) + offset, sizeof header);
    return header;
}

std::uint64_t offeredAbilities(const fuse_buf& request) {
    if (request.size < sizeof(fuse_in_header) + sizeof(fuse_init_in) ||
        readHeader<fuse_in_header>(request.mem, 0).opcode != FUSE_INIT)
        return 0;
    const auto init = readHeader<fuse_init_in>(request.mem, sizeof(fuse_in_header));
    const bool isExtended = (init.flags & FUSE_INIT_EXT) != 0;
    return isExtended ? std::uint64_t{init.flags2} << 32 : 0;
}

// libfuse writes its answer straight to the device: for this one request a pipe stands in its
// place.
void processWith(fuse_session* session, const fuse_buf& request, std::uint64_t abilities) {
    const int device = fuse_session_fd(session);
    int ends[2];
    const UniqueDescriptor saved(::fcntl(device, F_DUPFD_CLOEXEC, 0));
    if (!saved || ::pipe2(ends, O_CLOEXEC) != 0) {
        fuse_session_process_buf(session, &request);
        return;
    }
    const UniqueDescriptor readEnd(ends[0]);
    UniqueDescriptor writeEnd(ends[1]);
    ::dup3(writeEnd.get(), device, O_CLOEXEC);
    fuse_session_process_buf(session, &request);
    ::dup3(saved.get(), device, O_CLOEXEC);
    writeEnd.reset();

    std::array<char, 4096> answer;
    const ssize_t size = ::read(readEnd.get(), answer.data(), answer.size());
    if (size >= static_cast<ssize_t>(sizeof(fuse_out_header) + sizeof(fuse_init_out))) {
        auto init = readHeader<fuse_init_out>(answer.data(), sizeof(fuse_out_header));
        init.flags |= FUSE_INIT_EXT;
        init.flags2 |= static_cast<std::uint32_t>(abilities >> 32);
        std::memcpy(answer.data() + sizeof(fuse_out_header), &init, sizeof init);
    }
    if (size > 0)
        (void) !::write(device, answer.data(), static_cast<std::size_t>(size));
}

} // namespace

std::uint64_t answerInit(fuse_session* session, std::uint64_t wanted) {
    fuse_buf request{};
    int size = 0;
    do {
        size = fuse_session_receive_buf(session, &request);
    } while (size == -EINTR);
    std::uint64_t granted = 0;
    if (size > 0) {
        granted = offeredAbilities(request) & wanted;
        if (granted != 0)
            processWith(session, request, granted);
        else
            fuse_session_process_buf(session, &request);
    }
    std::free(request.mem);
    return granted;
}

} // namespace harbrix
