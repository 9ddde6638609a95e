#include "mount_smbfs/RequestThreads.h"

#include <sys/eventfd.h>

#include <cstdlib>
#include <thread>

namespace harbrix {

void RequestThreads::start() {
    m_gone.reset(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    const std::lock_guard lock(m_mutex);
    for (unsigned i = 0; i < kept; ++i)
        startOne();
}

void RequestThreads::startOne() {
    ++m_total;
    ++m_reading;
    // They end with the process, whose end does not wait for one that is stuck.
    std::thread([this] { run(); }).detach();
}

void RequestThreads::run() {
    fuse_buf buffer{};
    bool hasRequest = false;
    while (m_session.receive(buffer, hasRequest)) {
        if (!hasRequest)
            continue;
        {
            const std::lock_guard lock(m_mutex);
            if (--m_reading == 0 && m_total < maximum)
                startOne();
        }
        m_session.process(buffer);
        const std::lock_guard lock(m_mutex);
        if (m_reading >= kept) {
            --m_total;
            std::free(buffer.mem);
            return;
        }
        ++m_reading;
    }
    std::free(buffer.mem);
    (void) ::eventfd_write(m_gone.get(), 1);
}

} // namespace harbrix
