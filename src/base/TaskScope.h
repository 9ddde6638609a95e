#pragma once

#include "base/Completion.h"
#include "base/Task.h"

#include <exception>
#include <functional>
#include <list>
#include <variant>
#include <vector>

namespace harbrix {

/// Keeps fire-and-forget flows alive. Each owner of such flows holds a scope; destroying the scope
/// abandons what still runs. Main thread only.
class TaskScope {
public:
    /// Called with an exception that a flow let escape; the default ends the process with it.
    using EscapeHandler = std::function<void(const std::exception_ptr&)>;

    TaskScope() = default;
    explicit TaskScope(EscapeHandler onEscape) : m_onEscape(std::move(onEscape)) {}
    TaskScope(const TaskScope&) = delete;
    TaskScope& operator=(const TaskScope&) = delete;
    ~TaskScope();

    /// Starts the flow at once; it runs up to its first wait before this returns.
    void launch(Task<void> task);

    /// Ready once no flow of this scope runs any more, at once if none does.
    [[nodiscard]] Completion<std::monostate> whenIdle();

    [[nodiscard]] std::size_t running() const { return m_running.size(); }

private:
    struct Root;
    static Root runToEnd(Task<void> task, TaskScope* scope);
    void ended(std::list<std::coroutine_handle<>>::iterator frame);

    EscapeHandler m_onEscape;
    std::list<std::coroutine_handle<>> m_running;
    std::vector<Completion<std::monostate>::Resolver> m_idleWaiters;
};

/// Runs all tasks side by side and ends when the last one has ended.
Task<void> whenAll(std::vector<Task<void>> tasks);

} // namespace harbrix
