#pragma once

#include <memory>
#include <optional>
#include <utility>

#ifndef Q_MOC_RUN // moc stumbles over the concepts that it pulls in
#include <coroutine>
#endif

namespace harbrix {

/// A one-shot event with a value: one side calls resolve(), one flow awaits it. The resolving side
/// holds a Resolver, which may outlive the flow: resolving an abandoned completion does nothing.
/// Main thread only.
template <typename T>
class Completion {
    struct State {
        std::optional<T> value;
        std::coroutine_handle<> waiting;
    };

public:
    class Resolver {
    public:
        /// Resumes the waiting flow before it returns. The first value stands; later ones are
        /// dropped.
        void operator()(T value) const {
            const auto state = m_state.lock();
            if (!state || state->value)
                return;
            state->value.emplace(std::move(value));
            if (state->waiting)
                std::exchange(state->waiting, {}).resume();
        }

    private:
        friend Completion;
        explicit Resolver(std::weak_ptr<State> state) : m_state(std::move(state)) {}
        std::weak_ptr<State> m_state;
    };

    Completion() : m_state(std::make_shared<State>()) {}
    Completion(Completion&&) noexcept = default;
    Completion& operator=(Completion&&) noexcept = default;
    Completion(const Completion&) = delete;
    Completion& operator=(const Completion&) = delete;
    ~Completion() = default;

    [[nodiscard]] Resolver resolver() const { return Resolver(m_state); }

    bool await_ready() const noexcept { return m_state->value.has_value(); }
    void await_suspend(std::coroutine_handle<> flow) noexcept { m_state->waiting = flow; }
    T await_resume() { return std::move(*m_state->value); }

private:
    // Only this side owns the state, so that an abandoned flow takes it along.
    std::shared_ptr<State> m_state;
};

} // namespace harbrix
