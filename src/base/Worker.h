#pragma once

#include "base/Completion.h"
#include "base/Scheduler.h"
#include "base/Task.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThreadPool>

#include <memory>
#include <optional>
#include <type_traits>
#include <variant>

namespace harbrix {

/// The threads on which calls may block. There are far more than cores, since they wait rather than
/// work: a share that hangs must not keep another one from being looked at.
[[nodiscard]] QThreadPool& workerPool();

/// Runs `call` on the main thread, after what was handed over before. Any thread. At the end of the
/// process there is no main thread to tell any more, and the call is dropped.
template <typename Call>
void onMainThread(Call call) {
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(call), Qt::QueuedConnection);
}

namespace detail {

template <typename Work>
using WorkValue = std::conditional_t<std::is_void_v<std::invoke_result_t<Work>>, std::monostate,
                                     std::invoke_result_t<Work>>;

/// Runs `work` on a worker and hands its result to `tell` on the main thread.
template <typename Work, typename Tell>
void startOnWorker(Work work, Tell tell) {
    workerPool().start([work = std::move(work), tell = std::move(tell)]() mutable {
        auto stored = std::make_shared<std::optional<WorkValue<Work>>>();
        if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
            work();
            stored->emplace();
        } else {
            stored->emplace(work());
        }
        onMainThread([tell, stored] { tell(std::move(**stored)); });
    });
}

} // namespace detail

/// Runs `work` on a worker and gives its result to the flow that awaits it, on the main thread:
/// `auto call = onWorker([path] { return stat(path); }); const auto answer = co_await call;`
/// A flow that is abandoned leaves the work to end by itself and its result is dropped.
template <typename Work>
[[nodiscard]] auto onWorker(Work work) {
    Completion<detail::WorkValue<Work>> completion;
    detail::startOnWorker(std::move(work), completion.resolver());
    return completion;
}

/// The same for work that may hang on a share whose server is gone: nothing once `limit` has
/// passed. The work then ends by itself, some time, and its result is dropped.
template <typename Work>
Task<std::optional<detail::WorkValue<Work>>> onWorkerWithin(Scheduler& scheduler, Seconds limit,
                                                            Work work) {
    using Value = detail::WorkValue<Work>;
    Completion<std::optional<Value>> first;
    const Timer deadline =
        scheduler.after(limit, [tell = first.resolver()] { tell(std::nullopt); });
    detail::startOnWorker(std::move(work), [tell = first.resolver()](Value value) {
        tell(std::optional<Value>(std::move(value)));
    });
    co_return co_await first;
}

} // namespace harbrix
