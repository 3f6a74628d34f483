#include "Flows.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace vesko {
namespace {

Task<int> give(int value) { co_return value; }

Task<int> fail(std::string what) {
    throw std::runtime_error(what);
    co_return 0;
}

Task<std::unique_ptr<int>> giveOwned(int value) { co_return std::make_unique<int>(value); }

TEST(Task, BeginsOnlyWhenItIsAwaited) {
    Flows flows;
    std::vector<std::string> order;
    auto handle = spawn(flows.context, [&order]() -> Task<void> {
        auto body = [&order]() -> Task<void> {
            order.push_back("body");
            co_return;
        };
        auto task = body();
        order.push_back("made");
        co_await task;
        order.push_back("awaited");
    });
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
    EXPECT_EQ(order, (std::vector<std::string>{"made", "body", "awaited"}));
}

TEST(Task, OneThatIsNeverAwaitedIsFreed) {
    auto token = std::make_shared<int>(1);
    {
        auto body = [](std::shared_ptr<int> held) -> Task<int> { co_return *held; };
        auto task = body(token);
        EXPECT_EQ(token.use_count(), 2);
    }
    EXPECT_EQ(token.use_count(), 1);
}

TEST(Task, AnExceptionPassesThroughTheOnesThatAwait) {
    Flows flows;
    std::string caught;
    auto handle = spawn(flows.context, [&caught]() -> Task<void> {
        auto middle = []() -> Task<int> {
            const int value = co_await fail("disk");
            co_return value;
        };
        auto task = middle();
        try {
            const int value = co_await task;
            caught = std::to_string(value);
        } catch (const std::runtime_error& error) {
            caught = error.what();
        }
    });
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
    EXPECT_EQ(caught, "disk");
}

TEST(Task, ValuesThatCanOnlyBeMovedComeOut) {
    Flows flows;
    int got = 0;
    spawn(flows.context, [&got]() -> Task<void> {
        auto owned = co_await giveOwned(7);
        got = *owned;
    });
    flows.loop.drain();
    EXPECT_EQ(got, 7);
}

TEST(Task, AnAwaitedTaskHasTheContextOfTheOneThatAwaits) {
    Flows flows;
    TaskContext inner;
    auto handle = spawn(flows.context, [&inner]() -> Task<void> {
        auto body = [&inner]() -> Task<void> {
            inner = co_await currentContext();
            co_return;
        };
        auto task = body();
        co_await task;
    });
    flows.loop.drain();
    EXPECT_EQ(inner.home, flows.context.home);
    EXPECT_EQ(inner.workers, flows.context.workers);
    EXPECT_EQ(inner.clock, flows.context.clock);
    EXPECT_EQ(inner.registry, flows.context.registry);
    EXPECT_FALSE(inner.stop.stopRequested());
    handle.cancel();
    EXPECT_TRUE(inner.stop.stopRequested());
}

TEST(Task, ALongLoopOfAwaitsDoesNotGrowTheStack) {
    Flows flows;
    long sum = 0;
    spawn(flows.context, [&sum]() -> Task<void> {
        for (int i = 0; i < 200'000; ++i) {
            const int value = co_await give(1);
            sum += value;
        }
    });
    flows.loop.drain();
    EXPECT_EQ(sum, 200'000);
}

} // namespace
} // namespace vesko
