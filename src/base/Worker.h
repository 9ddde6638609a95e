#pragma once

#include "base/Completion.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThreadPool>

#include <type_traits>
#include <variant>

namespace harbrix {

/// The threads on which calls may block. There are far more than cores, since they wait rather than
/// work: a share that hangs must not keep another one from being looked at.
[[nodiscard]] QThreadPool& workerPool();

/// Runs `work` on a worker and gives its result to the flow that awaits it, on the main thread:
/// `auto call = onWorker([path] { return stat(path); }); const auto answer = co_await call;`
/// A flow that is abandoned leaves the work to end by itself and its result is dropped.
template <typename Work>
[[nodiscard]] auto onWorker(Work work) {
    using Value = std::invoke_result_t<Work>;
    using Stored = std::conditional_t<std::is_void_v<Value>, std::monostate, Value>;
    Completion<Stored> completion;
    workerPool().start([work = std::move(work), tell = completion.resolver()]() mutable {
        auto stored = std::make_shared<std::optional<Stored>>();
        if constexpr (std::is_void_v<Value>) {
            work();
            stored->emplace();
        } else {
            stored->emplace(work());
        }
        // At the end of the process there is no main thread to tell any more.
        if (QCoreApplication* application = QCoreApplication::instance())
            QMetaObject::invokeMethod(
                application, [tell, stored] { tell(std::move(**stored)); }, Qt::QueuedConnection);
    });
    return completion;
}

} // namespace harbrix
