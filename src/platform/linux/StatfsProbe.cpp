#include "platform/linux/StatfsProbe.h"

#include <sys/vfs.h>

#include <cerrno>
#include <condition_variable>
#include <system_error>
#include <thread>

namespace harbrix {

struct StatfsProbe::Question {
    std::condition_variable answered; ///< with the board's mutex
    Outcome outcome;
    const std::chrono::steady_clock::time_point put = std::chrono::steady_clock::now();
};

void StatfsProbe::answer(const std::shared_ptr<Board>& board, int mountId, int path) {
    struct statfs status = {};
    int result = -1;
    while ((result = ::fstatfs(path, &status)) != 0 && errno == EINTR) {
    }
    const std::scoped_lock lock(board->mutex);
    // Off the board, so that nobody is given an old answer later on.
    const auto question = board->open.extract(mountId).mapped();
    question->outcome = {result == 0 ? Answer::Alive : Answer::Dead,
                         static_cast<quint32>(status.f_type)};
    question->answered.notify_all();
}

StatfsProbe::Outcome StatfsProbe::ask(int mountId, UniqueDescriptor path,
                                      std::chrono::milliseconds limit) {
    std::unique_lock lock(m_board->mutex);
    std::shared_ptr<Question>& open = m_board->open[mountId];
    if (!open) {
        open = std::make_shared<Question>();
        try {
            // Detached, since a server may leave it waiting for ever.
            std::thread([board = m_board, mountId, file = std::move(path)] {
                answer(board, mountId, file.get());
            }).detach();
        } catch (const std::system_error&) {
            m_board->open.erase(mountId);
            return {};
        }
    }
    const auto question = open;
    question->answered.wait_until(lock, question->put + limit,
                                  [&] { return question->outcome.answer != Answer::None; });
    return question->outcome;
}

} // namespace harbrix
