#include "Flows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace vesko {
namespace {

using namespace std::chrono_literals;

int waitForStop(StopToken stop) {
    while (!stop.stopRequested()) std::this_thread::sleep_for(1ms);
    return 1;
}

Task<std::vector<int>> collect(TaskGroup<int>& group) {
    std::vector<int> values;
    for (;;) {
        auto child = co_await group.next();
        if (!child) break;
        values.push_back(child->take());
    }
    co_return values;
}

TEST(TaskGroup, DeliversBlockingChildrenInTheOrderInWhichTheyFinish) {
    Flows flows;
    std::array<Door, 4> doors;
    std::vector<int> order;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto group = withTaskGroup<int>([&](TaskGroup<int>& children) -> Task<void> {
            for (int i = 0; i < 4; ++i) {
                children.add([&doors, i] {
                    doors[static_cast<std::size_t>(i)].pass();
                    return i;
                });
            }
            for (;;) {
                auto child = co_await children.next();
                if (!child) break;
                order.push_back(child->take());
            }
        });
        co_await group;
    });
    flows.loop.drain();
    std::size_t opened = 0;
    for (const int next : {2, 0, 3, 1}) {
        doors[static_cast<std::size_t>(next)].open();
        ++opened;
        ASSERT_TRUE(flows.loop.waitFor([&] { return order.size() == opened; }));
    }
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(order, (std::vector<int>{2, 0, 3, 1}));
}

TEST(TaskGroup, ChildrenThatFinishedBeforeTheyAreAskedForAreAllDelivered) {
    Flows flows;
    std::vector<int> got;
    auto handle = spawn(flows.context, [&got]() -> Task<void> {
        auto group = withTaskGroup<int>([](TaskGroup<int>& children) -> Task<std::vector<int>> {
            for (int i = 0; i < 50; ++i) children.add([i] { return i; });
            co_await sleepFor(1s);
            auto values = co_await collect(children);
            co_return values;
        });
        got = co_await group;
    });
    flows.loop.drain();
    std::this_thread::sleep_for(20ms);
    flows.loop.advance(1s);
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    std::sort(got.begin(), got.end());
    ASSERT_EQ(got.size(), 50u);
    EXPECT_EQ(got.front(), 0);
    EXPECT_EQ(got.back(), 49);
}

TEST(TaskGroup, AGroupWithoutChildrenEndsAtOnce) {
    Flows flows;
    std::vector<int> got{1};
    auto handle = spawn(flows.context, [&got]() -> Task<void> {
        auto group = withTaskGroup<int>([](TaskGroup<int>& children) { return collect(children); });
        got = co_await group;
    });
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
    EXPECT_TRUE(got.empty());
}

TEST(TaskGroup, CancellingTheTaskReachesTheChildrenAndTheScopeWaitsForThem) {
    Flows flows;
    std::atomic<int> ended{0};
    std::vector<int> got;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto group = withTaskGroup<int>([&ended](TaskGroup<int>& children) -> Task<std::vector<int>> {
            for (int i = 0; i < 4; ++i) {
                children.add([&ended](StopToken stop) {
                    const int value = waitForStop(stop);
                    ++ended;
                    return value;
                });
            }
            auto values = co_await collect(children);
            co_return values;
        });
        got = co_await group;
    });
    flows.loop.drain();
    EXPECT_FALSE(flows.loop.waitFor([&] { return handle.done(); }, 30ms));
    handle.cancel();
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(ended, 4);
    EXPECT_EQ(got.size(), 4u);
}

TEST(TaskGroup, AnExceptionOfTheBodyCancelsAndAwaitsTheChildren) {
    Flows flows;
    std::atomic<int> ended{0};
    std::string caught;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto group = withTaskGroup<int>([&ended](TaskGroup<int>& children) -> Task<void> {
            children.add([&ended](StopToken stop) {
                const int value = waitForStop(stop);
                ++ended;
                return value;
            });
            children.add([]() -> int { throw std::runtime_error("child"); });
            auto first = co_await children.next();
            first->take();
        });
        try {
            co_await group;
        } catch (const std::runtime_error& error) {
            caught = error.what();
        }
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(caught, "child");
    EXPECT_EQ(ended, 1);
}

TEST(TaskGroup, AThrowingChildLeavesTheOthersAlone) {
    Flows flows;
    int values = 0;
    int errors = 0;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto group = withTaskGroup<int>([&](TaskGroup<int>& children) -> Task<void> {
            for (int i = 0; i < 6; ++i) {
                children.add([i]() -> int {
                    if (i % 3 == 0) throw std::runtime_error("child");
                    return i;
                });
            }
            for (;;) {
                auto child = co_await children.next();
                if (!child) break;
                try {
                    child->take();
                    ++values;
                } catch (const std::runtime_error&) {
                    ++errors;
                }
            }
        });
        co_await group;
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(values, 4);
    EXPECT_EQ(errors, 2);
}

TEST(TaskGroup, AnErrorThatNobodyTakesDoesNotLeaveTheGroup) {
    Flows flows;
    bool ended = false;
    auto handle = spawn(flows.context, [&ended]() -> Task<void> {
        auto group = withTaskGroup<void>([](TaskGroup<void>& children) -> Task<void> {
            children.add([] { throw std::runtime_error("unseen"); });
            co_return;
        });
        co_await group;
        ended = true;
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_TRUE(ended);
}

TEST(TaskGroup, ALimitOfTimeIsAChildThatSleeps) {
    Flows flows;
    std::string first;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto group = withTaskGroup<std::string>([](TaskGroup<std::string>& children) -> Task<std::string> {
            children.addTask([]() -> Task<std::string> {
                co_await sleepFor(1h);
                co_return "work";
            });
            children.addTask([]() -> Task<std::string> {
                co_await sleepFor(300s);
                co_return "limit";
            });
            auto child = co_await children.next();
            children.cancelAll();
            co_return child->take();
        });
        first = co_await group;
    });
    flows.loop.advance(300s - 1ns);
    EXPECT_FALSE(handle.done());
    flows.loop.advance(1ns);
    EXPECT_TRUE(handle.done());
    EXPECT_EQ(first, "limit");
    EXPECT_EQ(flows.loop.timers(), 0u);
}

TEST(TaskGroup, ChildCoroutinesAndBlockingChildrenMix) {
    Flows flows;
    std::vector<int> got;
    auto handle = spawn(flows.context, [&got]() -> Task<void> {
        auto group = withTaskGroup<int>([](TaskGroup<int>& children) -> Task<std::vector<int>> {
            children.add([] { return 1; });
            children.addTask([]() -> Task<int> {
                auto work = offload([] { return 2; });
                const int value = co_await work;
                co_return value;
            });
            children.addTask([]() -> Task<int> {
                throw Cancelled{};
                co_return 0;
            });
            std::vector<int> values;
            for (;;) {
                auto child = co_await children.next();
                if (!child) break;
                if (!child->failed()) values.push_back(child->take());
            }
            co_return values;
        });
        got = co_await group;
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    std::sort(got.begin(), got.end());
    EXPECT_EQ(got, (std::vector<int>{1, 2}));
}

TEST(TaskGroup, CancelAllReachesChildrenThatAreAddedLater) {
    Flows flows;
    bool stopped = false;
    auto handle = spawn(flows.context, [&stopped]() -> Task<void> {
        auto group = withTaskGroup<bool>([](TaskGroup<bool>& children) -> Task<bool> {
            children.cancelAll();
            children.add([](StopToken stop) { return stop.stopRequested(); });
            auto child = co_await children.next();
            co_return child->take();
        });
        stopped = co_await group;
        // The group's cancellation is not the task's.
        auto context = co_await currentContext();
        stopped = stopped && !context.stop.stopRequested();
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_TRUE(stopped);
}

TEST(TaskGroup, AGroupInACancelledTaskBeginsCancelled) {
    Flows flows;
    bool stopped = false;
    auto handle = spawn(flows.context, [&stopped]() -> Task<void> {
        auto group = withTaskGroup<bool>([](TaskGroup<bool>& children) -> Task<bool> {
            children.add([](StopToken stop) { return stop.stopRequested(); });
            auto child = co_await children.next();
            co_return child->take();
        });
        stopped = co_await group;
    });
    handle.cancel();
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_TRUE(stopped);
}

TEST(TaskGroup, WhatAChildHoldsIsGoneWhenItIsDelivered) {
    Flows flows;
    int stillHeld = 0;
    auto handle = spawn(flows.context, [&stillHeld]() -> Task<void> {
        for (int round = 0; round < 200; ++round) {
            auto held = std::make_shared<int>(round);
            auto body = [&held](TaskGroup<int>& children) -> Task<void> {
                children.add([held] { return *held; });
                auto child = co_await children.next();
                child->take();
            };
            auto group = withTaskGroup<int>(body);
            co_await group;
            if (held.use_count() != 1) ++stillHeld;
        }
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(stillHeld, 0);
}

} // namespace
} // namespace vesko
