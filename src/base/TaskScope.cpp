#include "base/TaskScope.h"

namespace harbrix {

/// The outermost frame of a launched flow. It is owned by the scope's list and takes itself off
/// that list, and frees itself, when the flow has ended.
struct TaskScope::Root {
    struct promise_type {
        promise_type(Task<void>&, TaskScope* owner) : scope(owner) {}

        Root get_return_object() noexcept {
            return {std::coroutine_handle<promise_type>::from_promise(*this)};
        }
        std::suspend_always initial_suspend() noexcept { return {}; }
        auto final_suspend() noexcept {
            struct Leave {
                bool await_ready() noexcept { return false; }
                void await_suspend(std::coroutine_handle<promise_type> frame) noexcept {
                    TaskScope* scope = frame.promise().scope;
                    const auto position = frame.promise().position;
                    frame.destroy();
                    scope->ended(position);
                }
                void await_resume() noexcept {}
            };
            return Leave{};
        }
        void return_void() noexcept {}
        void unhandled_exception() {
            if (!scope->m_onEscape)
                std::terminate();
            scope->m_onEscape(std::current_exception());
        }

        TaskScope* scope;
        std::list<std::coroutine_handle<>>::iterator position;
    };
    std::coroutine_handle<promise_type> frame;
};

TaskScope::Root TaskScope::runToEnd(Task<void> task, TaskScope*) {
    co_await task;
}

TaskScope::~TaskScope() {
    while (!m_running.empty()) {
        const auto frame = m_running.back();
        m_running.pop_back();
        frame.destroy();
    }
}

void TaskScope::launch(Task<void> task) {
    const Root root = runToEnd(std::move(task), this);
    root.frame.promise().position = m_running.insert(m_running.end(), root.frame);
    root.frame.resume();
}

Completion<std::monostate> TaskScope::whenIdle() {
    Completion<std::monostate> idle;
    if (m_running.empty())
        idle.resolver()({});
    else
        m_idleWaiters.push_back(idle.resolver());
    return idle;
}

void TaskScope::ended(std::list<std::coroutine_handle<>>::iterator frame) {
    m_running.erase(frame);
    if (!m_running.empty())
        return;
    // A waiter may destroy this scope, so it is told from a copy and nothing follows.
    const auto waiters = std::exchange(m_idleWaiters, {});
    for (const auto& tell : waiters)
        tell({});
}

Task<void> whenAll(std::vector<Task<void>> tasks) {
    std::exception_ptr escaped;
    TaskScope group([&escaped](const std::exception_ptr& exception) { escaped = exception; });
    for (Task<void>& task : tasks)
        group.launch(std::move(task));
    auto idle = group.whenIdle();
    co_await idle;
    if (escaped)
        std::rethrow_exception(escaped);
}

} // namespace harbrix
