#pragma once

#include "base/UniqueDescriptor.h"

#include <QtGlobal>

#include <chrono>
#include <map>
#include <memory>
#include <mutex>

namespace harbrix {

/// Asks a file system whether it is alive without being held up by a server that does not answer.
/// At most one question is open per mount, so callers that come again and again cost one thread.
/// Thread-safe.
class StatfsProbe {
public:
    enum class Answer { Alive, Dead, None };

    struct Outcome {
        Answer answer = Answer::None;
        quint32 magic = 0; ///< of statfs(2), where it is alive
    };

    /// None where no answer came within the limit, counted from when the question was put.
    [[nodiscard]] Outcome ask(int mountId, UniqueDescriptor path, std::chrono::milliseconds limit);

private:
    struct Question;
    /// Shared with the threads that wait for an answer, which may outlive this object.
    struct Board {
        std::mutex mutex;
        std::map<int, std::shared_ptr<Question>> open;
    };

    static void answer(const std::shared_ptr<Board>& board, int mountId, int path);

    std::shared_ptr<Board> m_board = std::make_shared<Board>();
};

} // namespace harbrix
