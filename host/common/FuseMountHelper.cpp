#include "common/FuseMountHelper.h"

#include "common/Pipe.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

namespace harbrix {

namespace {

// Where the helper finds the socket over which it sends the descriptor, by the protocol of
// fusermount3.
constexpr int socketInHelper = 3;
constexpr std::string_view socketVariable = "_FUSE_COMMFD=3";

UniqueDescriptor receiveDescriptor(int socket) {
    char byte = 0;
    iovec data{&byte, 1};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
    msghdr message{};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    ssize_t count = 0;
    do {
        count = ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    } while (count < 0 && errno == EINTR);
    const cmsghdr* header = count > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
    if (!header || header->cmsg_type != SCM_RIGHTS)
        return UniqueDescriptor();
    int fd = -1;
    std::memcpy(&fd, CMSG_DATA(header), sizeof fd);
    return UniqueDescriptor(fd);
}

std::string complaint(int errors) {
    std::string text = readToEnd(errors);
    while (text.ends_with('\n'))
        text.pop_back();
    return text;
}

// An environment of the one variable and the path: the helper runs with root's rights.
int spawnHelper(const std::string& mountPoint, const std::string& options, int socket, int errors,
                pid_t& child) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, socket, socketInHelper);
    std::vector<std::string> words{"fusermount3", "-o", options, "--", mountPoint};
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    std::string variable(socketVariable);
    std::string path = "PATH=/usr/bin:/bin:/usr/sbin:/sbin";
    char* const environment[] = {variable.data(), path.data(), nullptr};
    const int error =
        ::posix_spawnp(&child, "fusermount3", &actions, nullptr, arguments.data(), environment);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace

std::expected<UniqueDescriptor, std::string> mountThroughFusermount(const std::string& mountPoint,
                                                                    const std::string& options) {
    int sockets[2];
    int errors[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
        return std::unexpected(std::strerror(errno));
    const UniqueDescriptor ours(sockets[0]);
    UniqueDescriptor theirs(::fcntl(sockets[1], F_DUPFD_CLOEXEC, socketInHelper + 1));
    ::close(sockets[1]);
    if (::pipe2(errors, O_CLOEXEC) != 0)
        return std::unexpected(std::strerror(errno));
    const UniqueDescriptor errorsRead(errors[0]);
    UniqueDescriptor errorsWrite(::fcntl(errors[1], F_DUPFD_CLOEXEC, socketInHelper + 1));
    ::close(errors[1]);

    pid_t child = 0;
    const int error = spawnHelper(mountPoint, options, theirs.get(), errorsWrite.get(), child);
    theirs.reset();
    errorsWrite.reset();
    if (error != 0)
        return std::unexpected(std::string("fusermount3: ") + std::strerror(error));
    UniqueDescriptor device = receiveDescriptor(ours.get());
    const std::string said = complaint(errorsRead.get());
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR)
        ;
    if (!device)
        return std::unexpected(said.empty() ? "fusermount3 failed without a word" : said);
    return device;
}

} // namespace harbrix
