#include "files/SerialQueue.h"

namespace harbrix {

SerialQueue::Turn& SerialQueue::Turn::operator=(Turn&& other) noexcept {
    if (this != &other) {
        end();
        m_state = std::move(other.m_state);
    }
    return *this;
}

void SerialQueue::Turn::end() {
    const auto state = std::exchange(m_state, {}).lock();
    if (!state)
        return;
    state->isTaken = false;
    passOn(state);
}

Completion<SerialQueue::Turn> SerialQueue::turn() {
    Completion<Turn> completion;
    m_state->waiting.push_back(completion.resolver());
    passOn(m_state);
    return completion;
}

/// A loop rather than a chain of calls: a thousand abandoned flows, or flows that end at once, must
/// not use up the stack.
void SerialQueue::passOn(const std::shared_ptr<State>& state) {
    if (state->isPassingOn)
        return;
    state->isPassingOn = true;
    while (!state->isTaken && !state->waiting.empty()) {
        const auto next = std::move(state->waiting.front());
        state->waiting.pop_front();
        state->isTaken = true;
        next(Turn(state));
    }
    state->isPassingOn = false;
}

} // namespace harbrix
