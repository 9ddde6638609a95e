#include "base/Task.h"

#include "base/Completion.h"
#include "base/ManualScheduler.h"
#include "base/TaskScope.h"
#include "base/Worker.h"

#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

#include <stdexcept>

namespace harbrix {
namespace {

using namespace std::chrono_literals;

template <typename Awaited>
concept CanAwaitTemporary = requires(Task<void>::promise_type promise) {
    promise.await_transform(std::declval<Awaited>());
};
static_assert(!CanAwaitTemporary<Task<int>>,
              "a temporary in a co_await expression must not compile");
static_assert(CanAwaitTemporary<Task<int>&>);

struct CountsItself {
    explicit CountsItself(int& count) : m_count(count) { ++m_count; }
    CountsItself(const CountsItself& other) : m_count(other.m_count) { ++m_count; }
    CountsItself& operator=(const CountsItself&) = delete;
    ~CountsItself() { --m_count; }
    int& m_count;
};

Task<QString> lengthOf(QString text, Scheduler* scheduler) {
    auto pause = scheduler->pause(1s);
    co_await pause;
    co_return QString::number(text.size());
}

Task<void> appendLengths(QStringList texts, Scheduler* scheduler, QStringList* out) {
    for (const QString& text : texts) {
        auto length = lengthOf(text, scheduler);
        out->append(co_await length);
    }
}

TEST(Task, AwaitsOneAfterAnother) {
    ManualScheduler scheduler;
    TaskScope scope;
    QStringList out;
    scope.launch(appendLengths({"a", "bb", "ccc"}, &scheduler, &out));
    EXPECT_EQ(out, QStringList{});
    scheduler.advance(2s);
    EXPECT_EQ(out, (QStringList{"1", "2"}));
    EXPECT_EQ(scope.running(), 1U);
    scheduler.advance(1s);
    EXPECT_EQ(out, (QStringList{"1", "2", "3"}));
    EXPECT_EQ(scope.running(), 0U);
}

Task<void> holdWhileWaiting(Scheduler* scheduler, CountsItself witness, bool* reachedEnd) {
    const CountsItself local(witness);
    auto pause = scheduler->pause(5s);
    co_await pause;
    *reachedEnd = true;
}

TEST(Task, AbandonedFlowsFreeTheirLocalsAndAreNeverResumed) {
    ManualScheduler scheduler;
    int alive = 0;
    bool reachedEnd = false;
    {
        TaskScope scope;
        scope.launch(holdWhileWaiting(&scheduler, CountsItself(alive), &reachedEnd));
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(alive, 0);
    scheduler.advance(10s);
    EXPECT_FALSE(reachedEnd);
}

Task<int> failing() {
    throw std::runtime_error("lost");
    co_return 1;
}

Task<void> passFailureOn() {
    auto task = failing();
    co_await task;
}

TEST(TaskScope, TellsWhatEscapesAndGoesOn) {
    QString told;
    TaskScope scope([&told](const std::exception_ptr& escaped) {
        try {
            std::rethrow_exception(escaped);
        } catch (const std::exception& error) {
            told = QString::fromUtf8(error.what());
        }
    });
    scope.launch(passFailureOn());
    EXPECT_EQ(told, "lost");
    EXPECT_EQ(scope.running(), 0U);
}

Task<void> sleepFor(Scheduler* scheduler, Seconds span) {
    auto pause = scheduler->pause(span);
    co_await pause;
}

Task<void> runAll(Scheduler* scheduler, bool* ended) {
    std::vector<Task<void>> tasks;
    for (const int seconds : {3, 1, 0})
        tasks.push_back(sleepFor(scheduler, Seconds(seconds)));
    auto all = whenAll(std::move(tasks));
    co_await all;
    *ended = true;
}

TEST(TaskScope, WhenAllRunsSideBySideAndEndsWithTheLast) {
    ManualScheduler scheduler;
    TaskScope scope;
    bool ended = false;
    scope.launch(runAll(&scheduler, &ended));
    scheduler.advance(2.9s);
    EXPECT_FALSE(ended);
    scheduler.advance(0.1s);
    EXPECT_TRUE(ended);
}

Task<void> awaitInto(Completion<int> completion, int* out) {
    *out = co_await completion;
}

TEST(Completion, FirstValueStandsAndLateOnesAreDropped) {
    Completion<int> completion;
    const auto resolve = completion.resolver();
    int got = 0;
    {
        TaskScope scope;
        scope.launch(awaitInto(std::move(completion), &got));
        resolve(7);
        resolve(8);
    }
    resolve(9);
    EXPECT_EQ(got, 7);
}

Task<void> workElsewhere(Qt::HANDLE* workThread, Qt::HANDLE* backOn, QEventLoop* loop) {
    auto call = onWorker([] { return QThread::currentThreadId(); });
    *workThread = co_await call;
    *backOn = QThread::currentThreadId();
    loop->quit();
}

TEST(Worker, RunsElsewhereAndComesBackToTheMainThread) {
    QEventLoop loop;
    Qt::HANDLE workThread = nullptr;
    Qt::HANDLE backOn = nullptr;
    TaskScope scope;
    scope.launch(workElsewhere(&workThread, &backOn, &loop));
    loop.exec();
    EXPECT_NE(workThread, backOn);
    EXPECT_EQ(backOn, QThread::currentThreadId());
}

TEST(Timer, CancellingAndRepeating) {
    ManualScheduler scheduler;
    int single = 0;
    int repeated = 0;
    Timer once = scheduler.after(2s, [&] { ++single; });
    Timer often = scheduler.every(3s, [&] {
        if (++repeated == 2)
            often.cancel();
    });
    {
        const Timer dropped = scheduler.after(1s, [&] { single += 100; });
    }
    EXPECT_EQ(scheduler.untilNextAlarm(), std::optional<Duration>(2s));
    scheduler.advance(60s);
    EXPECT_EQ(single, 1);
    EXPECT_FALSE(once.isActive());
    EXPECT_EQ(repeated, 2);
    EXPECT_EQ(scheduler.untilNextAlarm(), std::nullopt);
}

TEST(ManualScheduler, PostedCallbacksRunInOrderBeforeTheClockMoves) {
    ManualScheduler scheduler;
    QStringList order;
    const Timer late = scheduler.after(1s, [&] {
        order << "alarm";
        scheduler.post([&] { order << "posted by alarm"; });
    });
    const Timer later = scheduler.after(1s, [&] { order << "second alarm"; });
    scheduler.post([&] { order << "first"; });
    scheduler.post([&] { order << "second"; });
    scheduler.advance(1s);
    EXPECT_EQ(order, (QStringList{"first", "second", "alarm", "posted by alarm", "second alarm"}));
}

/// The cleanup of the cache every 30 days, or every 49.7, where 32 bits of milliseconds end.
TEST(RealScheduler, WaitsLongerThanATimerOfTheEventLoopCan) {
    RealScheduler scheduler;
    int fired = 0;
    std::vector<Timer> timers;
    for (const double days : {24.9, 30.0, 49.8, 50.0, 1000.0})
        timers.push_back(scheduler.every(Seconds(days * 86'400), [&] { ++fired; }));
    bool isOver = false;
    const Timer end = scheduler.after(Seconds(0.05), [&] { isOver = true; });
    while (!isOver)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(fired, 0);
    for (const Timer& timer : timers)
        EXPECT_TRUE(timer.isActive());
}

TEST(RealScheduler, FiresAndForgetsCancelledTimers) {
    RealScheduler scheduler;
    QEventLoop loop;
    bool cancelledFired = false;
    Timer cancelled = scheduler.after(5ms, [&] { cancelledFired = true; });
    cancelled.cancel();
    const Duration begun = scheduler.now();
    const Timer due = scheduler.after(20ms, [&] { loop.quit(); });
    loop.exec();
    EXPECT_GE(scheduler.now() - begun, 20ms);
    EXPECT_FALSE(cancelledFired);
}

} // namespace
} // namespace harbrix
