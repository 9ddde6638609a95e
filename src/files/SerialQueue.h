#pragma once

#include "base/Completion.h"

#include <deque>
#include <memory>

namespace harbrix {

/// Lets flows through one at a time, in the order in which they asked:
/// `auto waiting = queue.turn(); const auto turn = co_await waiting;`
/// A flow that is abandoned gives its place up. Main thread only.
class SerialQueue {
    struct State;

public:
    /// Held while it is a flow's turn; dropping it lets the next one through.
    class Turn {
    public:
        Turn(Turn&& other) noexcept = default;
        Turn& operator=(Turn&& other) noexcept;
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn() { end(); }

        void end();

    private:
        friend SerialQueue;
        explicit Turn(const std::shared_ptr<State>& state) : m_state(state) {}
        std::weak_ptr<State> m_state;
    };

    SerialQueue() : m_state(std::make_shared<State>()) {}

    [[nodiscard]] Completion<Turn> turn();

private:
    struct State {
        std::deque<Completion<Turn>::Resolver> waiting;
        bool isTaken = false;
        bool isPassingOn = false;
    };
    static void passOn(const std::shared_ptr<State>& state);

    std::shared_ptr<State> m_state;
};

} // namespace harbrix
