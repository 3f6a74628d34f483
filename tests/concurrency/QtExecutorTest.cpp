#include "platform/qt/QtExecutor.h"

#include "concurrency/Concurrency.h"
#include "platform/qt/QtClock.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace vesko {
namespace {

using namespace std::chrono_literals;

// Runs the loop until the condition holds; false after the limit.
template <class Condition> bool runUntil(Condition condition, std::chrono::milliseconds limit = 30s) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
        QCoreApplication::sendPostedEvents();
    }
    return true;
}

// Keeps WaitForMoreEvents from waiting for ever.
struct Heart {
    QTimer timer;
    int beats = 0;
    Heart(std::chrono::milliseconds every = 10ms) {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { ++beats; });
        timer.setTimerType(Qt::PreciseTimer);
        timer.start(every);
    }
};

TEST(QtExecutor, RunsInTheLoopAndNotBeforePostReturns) {
    QtExecutor executor;
    const Heart heart;
    std::thread::id ran;
    executor.post([&] { ran = std::this_thread::get_id(); });
    EXPECT_EQ(ran, std::thread::id());
    EXPECT_TRUE(runUntil([&] { return ran != std::thread::id(); }));
    EXPECT_EQ(ran, std::this_thread::get_id());
}

TEST(QtExecutor, TenThousandPostsOfEightThreadsEachKeepTheirOrder) {
    QtExecutor executor;
    const Heart heart;
    constexpr int threads = 8;
    constexpr int each = 10'000;
    std::vector<int> last(threads, -1);
    int ran = 0;
    int outOfOrder = 0;
    std::vector<std::thread> posters;
    for (int t = 0; t < threads; ++t) {
        posters.emplace_back([&, t] {
            for (int i = 0; i < each; ++i) {
                executor.post([&, t, i] {
                    int& previous = last[static_cast<std::size_t>(t)];
                    if (i != previous + 1) ++outOfOrder;
                    previous = i;
                    ++ran;
                });
            }
        });
    }
    EXPECT_TRUE(runUntil([&] { return ran == threads * each; }));
    for (std::thread& poster : posters) poster.join();
    EXPECT_EQ(ran, threads * each);
    EXPECT_EQ(outOfOrder, 0);
}

TEST(QtExecutor, WhatIsPostedFromWithinRunsAfterWhatWaits) {
    QtExecutor executor;
    const Heart heart;
    std::vector<int> order;
    executor.post([&] {
        order.push_back(1);
        executor.post([&] { order.push_back(3); });
    });
    executor.post([&] { order.push_back(2); });
    EXPECT_TRUE(runUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST(QtExecutor, ALongQueueLeavesTheLoopTimeForOtherEvents) {
    QtExecutor executor;
    int ran = 0;
    int beatsMeanwhile = 0;
    Heart heart(5ms);
    // 400 closures of 1 ms: in one turn they would hold the loop for 400 ms.
    for (int i = 0; i < 400; ++i) {
        executor.post([&] {
            const auto end = std::chrono::steady_clock::now() + 1ms;
            while (std::chrono::steady_clock::now() < end) continue;
            if (++ran == 400) beatsMeanwhile = heart.beats;
        });
    }
    EXPECT_TRUE(runUntil([&] { return ran == 400; }));
    EXPECT_GE(beatsMeanwhile, 15);
}

TEST(QtExecutor, AClosureThatPostsItselfForEverDoesNotStarveTheLoop) {
    QtExecutor executor;
    Heart heart(5ms);
    bool stop = false;
    long ran = 0;
    std::function<void()> again = [&] {
        ++ran;
        if (!stop) executor.post(again);
    };
    executor.post(again);
    EXPECT_TRUE(runUntil([&] { return heart.beats >= 10; }));
    EXPECT_GT(ran, 100);
    stop = true;
    const long before = ran;
    EXPECT_TRUE(runUntil([&] { return ran > before; }));
}

TEST(QtExecutor, ANestedLoopRunsWhatWaitsBehindTheClosureThatRunsIt) {
    QtExecutor executor;
    const Heart heart;
    std::vector<int> order;
    QEventLoop nested;
    executor.post([&] {
        order.push_back(1);
        nested.exec();
        order.push_back(4);
    });
    executor.post([&] { order.push_back(2); });
    executor.post([&] {
        order.push_back(3);
        nested.quit();
    });
    EXPECT_TRUE(runUntil([&] { return order.size() == 4; }));
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4}));
}

TEST(QtExecutor, WhatHasNotRunIsDroppedWithTheExecutor) {
    auto held = std::make_shared<int>(0);
    {
        QtExecutor executor;
        executor.post([held] { ++*held; });
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(*held, 0);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(QtExecutor, AnIdleLoopIsNotWokenForNothing) {
    QtExecutor executor;
    int ran = 0;
    executor.post([&] { ++ran; });
    {
        const Heart heart;
        ASSERT_TRUE(runUntil([&] { return ran == 1; }));
    }
    int wakes = 0;
    QEventLoop loop;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                     [&] { ++wakes; });
    QTimer::singleShot(100ms, &loop, &QEventLoop::quit);
    loop.exec();
    // The timer's wake at least; a byte left in the pipe would wake the loop thousands of times.
    EXPECT_GE(wakes, 1);
    EXPECT_LT(wakes, 30);
}

TEST(QtExecutor, FlowsRunOnIt) {
    QtExecutor home;
    QtClock clock;
    TaskRegistry registry;
    WorkerPool workers;
    const Heart heart;
    const TaskContext context{&home, &workers, &clock, {}, &registry};
    std::vector<int> got;
    auto handle = spawn(context, [&got]() -> Task<void> {
        for (int i = 0; i < 200; ++i) {
            auto work = offload([i] { return i; });
            const int value = co_await work;
            got.push_back(value);
        }
        co_await sleepFor(20ms);
    });
    auto sleeper = spawn(context, []() -> Task<void> { co_await sleepFor(1h); });
    EXPECT_TRUE(runUntil([&] { return handle.done(); }));
    EXPECT_EQ(got.size(), 200u);
    EXPECT_TRUE(shutDown(registry, [] { QCoreApplication::processEvents(); }));
    EXPECT_TRUE(sleeper.done());
}

} // namespace
} // namespace vesko
