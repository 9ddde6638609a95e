#include "common/Pipe.h"

#include <unistd.h>

#include <cerrno>

namespace harbrix {

std::string readToEnd(int pipe) {
    std::string text;
    char buffer[512];
    for (;;) {
        const ssize_t count = ::read(pipe, buffer, sizeof buffer);
        if (count > 0)
            text.append(buffer, static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return text;
    }
}

} // namespace harbrix
