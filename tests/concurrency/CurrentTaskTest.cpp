#include "Flows.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace vesko {
namespace {

// Stands for blocking code that gets no token: it looks by itself.
bool deepBelow() {
    while (!currentTaskIsCancelled()) std::this_thread::yield();
    return true;
}

TEST(CurrentTask, IsNoneWhereNoTaskIsWorkedFor) {
    EXPECT_FALSE(currentTaskIsCancelled());
    EXPECT_FALSE(currentStopToken().stopRequested());
}

TEST(CurrentTask, BlockingCodeOfAnOffloadSeesTheCancellation) {
    Flows flows;
    bool seen = false;
    bool seenAtHome = true;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto work = offload([] { return deepBelow(); });
        seen = co_await work;
        seenAtHome = currentTaskIsCancelled();
    });
    flows.loop.drain();
    handle.cancel();
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_TRUE(seen);
    EXPECT_FALSE(seenAtHome);
}

TEST(CurrentTask, BlockingCodeOfAGroupSeesTheGroupsCancellation) {
    Flows flows;
    int seen = 0;
    auto handle = spawn(flows.context, [&seen]() -> Task<void> {
        auto group = withTaskGroup<bool>([&seen](TaskGroup<bool>& children) -> Task<void> {
            for (int i = 0; i < 3; ++i) children.add([] { return deepBelow(); });
            children.cancelAll();
            for (;;) {
                auto child = co_await children.next();
                if (!child) break;
                if (child->take()) ++seen;
            }
        });
        co_await group;
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(seen, 3);
}

TEST(CurrentTask, CallsPostedFromAWorkerBelongToTheSameTask) {
    Flows flows;
    std::atomic<bool> seen{false};
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto work = offload([&] {
            Door door;
            flows.workers.post([&] {
                seen = deepBelow();
                door.open();
            });
            door.pass();
        });
        co_await work;
    });
    flows.loop.drain();
    handle.cancel();
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_TRUE(seen);
}

TEST(CurrentTask, AScopeCarriesTheTokenToAFurtherThreadAndGivesTheOldOneBack) {
    const StopSource outer;
    const StopSource inner;
    CurrentTaskScope scope(outer.token());
    bool innerSeen = false;
    bool plainSeen = true;
    std::thread([&, token = currentStopToken()] {
        plainSeen = currentTaskIsCancelled();
        CurrentTaskScope carried(token);
        outer.requestStop();
        innerSeen = currentTaskIsCancelled();
    }).join();
    EXPECT_FALSE(plainSeen);
    EXPECT_TRUE(innerSeen);
    {
        CurrentTaskScope nested(inner.token());
        EXPECT_FALSE(currentTaskIsCancelled());
    }
    EXPECT_TRUE(currentTaskIsCancelled());
}

TEST(CurrentTask, AWorkerForgetsTheTaskAfterTheCall) {
    ManualLoop loop;
    WorkerPool workers({.prompt = 1, .most = 1});
    const TaskContext context{&loop, &workers, &loop, {}, nullptr};
    auto first = spawn(context, []() -> Task<void> {
        auto work = offload([] {});
        co_await work;
    });
    first.cancel();
    ASSERT_TRUE(loop.waitFor([&] { return first.done(); }));
    Door door;
    bool seen = true;
    workers.post([&] {
        seen = currentTaskIsCancelled();
        door.open();
    });
    door.pass();
    EXPECT_FALSE(seen);
}

} // namespace
} // namespace vesko
