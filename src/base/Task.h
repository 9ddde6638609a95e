#pragma once

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#ifndef Q_MOC_RUN // moc stumbles over the concepts that it pulls in
#include <coroutine>
#endif

namespace harbrix {

template <typename T = void>
class Task;

namespace detail {

/// Stands for a named awaitable inside a co_await expression; g++ 12 would copy the awaitable
/// itself.
template <typename Awaitable>
struct Borrowed {
    Awaitable& awaitable;

    bool await_ready() { return awaitable.await_ready(); }
    auto await_suspend(std::coroutine_handle<> flow) { return awaitable.await_suspend(flow); }
    decltype(auto) await_resume() { return awaitable.await_resume(); }
};

class TaskPromiseBase {
public:
    std::suspend_always initial_suspend() noexcept { return {}; }

    /// Hands the thread straight to whoever awaits the task, so that long chains use no stack.
    auto final_suspend() noexcept {
        struct Resumer {
            std::coroutine_handle<> continuation;
            bool await_ready() noexcept { return false; }
            std::coroutine_handle<> await_suspend(std::coroutine_handle<>) noexcept {
                return continuation ? continuation : std::noop_coroutine();
            }
            void await_resume() noexcept {}
        };
        return Resumer{m_continuation};
    }

    void unhandled_exception() noexcept { m_exception = std::current_exception(); }

    /// Only named awaitables can be awaited: g++ 12 destroys temporaries of a co_await expression
    /// twice, so the form that holds them must not compile.
    template <typename Awaitable>
    Borrowed<Awaitable> await_transform(Awaitable& awaitable) noexcept {
        return {awaitable};
    }
    template <typename Awaitable>
    requires(!std::is_lvalue_reference_v<Awaitable>) void await_transform(Awaitable&&) = delete;

    void setContinuation(std::coroutine_handle<> continuation) noexcept {
        m_continuation = continuation;
    }

protected:
    void rethrowIfFailed() const {
        if (m_exception)
            std::rethrow_exception(m_exception);
    }

private:
    std::coroutine_handle<> m_continuation;
    std::exception_ptr m_exception;
};

template <typename T>
class TaskPromise : public TaskPromiseBase {
public:
    Task<T> get_return_object() noexcept;
    template <typename Value>
    void return_value(Value&& value) {
        m_value.emplace(std::forward<Value>(value));
    }
    T take() {
        rethrowIfFailed();
        return std::move(*m_value);
    }

private:
    std::optional<T> m_value;
};

template <>
class TaskPromise<void> : public TaskPromiseBase {
public:
    Task<void> get_return_object() noexcept;
    void return_void() noexcept {}
    void take() const { rethrowIfFailed(); }
};

} // namespace detail

/// A flow that may wait: a coroutine that begins when it is first awaited (or given to a TaskScope)
/// and resumes whoever awaits it at its end. A task owns its frame: destroying it before its end
/// abandons the flow at the point where it waits, and runs the destructors of its locals.
///
/// Tasks live on the main thread. Parameters of a task are taken by value.
template <typename T>
class [[nodiscard]] Task {
public:
    using promise_type = detail::TaskPromise<T>;

    Task(Task&& other) noexcept : m_frame(std::exchange(other.m_frame, {})) {}
    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            destroy();
            m_frame = std::exchange(other.m_frame, {});
        }
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() { destroy(); }

    bool await_ready() const noexcept { return m_frame.done(); }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> continuation) noexcept {
        m_frame.promise().setContinuation(continuation);
        return m_frame;
    }
    T await_resume() { return m_frame.promise().take(); }

private:
    friend promise_type;
    explicit Task(std::coroutine_handle<promise_type> frame) noexcept : m_frame(frame) {}

    void destroy() noexcept {
        if (m_frame)
            m_frame.destroy();
    }

    std::coroutine_handle<promise_type> m_frame;
};

namespace detail {

template <typename T>
Task<T> TaskPromise<T>::get_return_object() noexcept {
    return Task<T>(std::coroutine_handle<TaskPromise<T>>::from_promise(*this));
}

inline Task<void> TaskPromise<void>::get_return_object() noexcept {
    return Task<void>(std::coroutine_handle<TaskPromise<void>>::from_promise(*this));
}

} // namespace detail

} // namespace harbrix
