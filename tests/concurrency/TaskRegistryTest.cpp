#include "Flows.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace vesko {
namespace {

using namespace std::chrono_literals;

TEST(TaskRegistry, KnowsASpawnedTaskUntilItEnds) {
    Flows flows;
    EXPECT_TRUE(flows.registry.empty());
    spawn(flows.context, []() -> Task<void> { co_await sleepFor(1s); });
    spawn(flows.context, []() -> Task<void> { co_await sleepFor(2s); });
    EXPECT_EQ(flows.registry.size(), 2u);
    flows.loop.advance(1s);
    EXPECT_EQ(flows.registry.size(), 1u);
    flows.loop.advance(1s);
    EXPECT_TRUE(flows.registry.empty());
}

TEST(TaskRegistry, IsEmptyOnlyAfterWhatTheTaskHeldIsGone) {
    Flows flows;
    bool wasEntered = false;
    struct AtTheEnd {
        std::function<void()> tell;
        ~AtTheEnd() { tell(); }
    };
    auto held = std::make_shared<AtTheEnd>([&] { wasEntered = !flows.registry.empty(); });
    spawn(flows.context, [held = std::move(held)]() -> Task<void> { co_return; });
    flows.loop.drain();
    EXPECT_TRUE(wasEntered);
    EXPECT_TRUE(flows.registry.empty());
}

TEST(TaskRegistry, CancelAllReachesEveryLiveTask) {
    Flows flows;
    int cancelled = 0;
    for (int i = 0; i < 5; ++i) {
        spawn(flows.context, [&cancelled]() -> Task<void> {
            try {
                co_await sleepFor(1h);
            } catch (const Cancelled&) {
                ++cancelled;
            }
        });
    }
    flows.loop.drain();
    flows.registry.cancelAll();
    flows.loop.drain();
    EXPECT_EQ(cancelled, 5);
    EXPECT_TRUE(flows.registry.empty());
}

TEST(TaskRegistry, ATaskMayOutliveIt) {
    ManualLoop loop;
    WorkerPool workers;
    std::optional<TaskRegistry> registry(std::in_place);
    auto handle =
        spawn({&loop, &workers, &loop, {}, &*registry}, []() -> Task<void> { co_await sleepFor(1s); });
    loop.drain();
    registry.reset();
    loop.advance(1s);
    EXPECT_TRUE(handle.done());
}

TEST(ShutDown, FinishesEveryKindOfFlow) {
    Flows flows;
    std::atomic<int> children{0};
    int cleanedUp = 0;
    spawn(flows.context, [&cleanedUp]() -> Task<void> {
        try {
            co_await sleepFor(1h);
        } catch (const Cancelled&) {
            ++cleanedUp;
        }
    });
    spawn(flows.context, [&]() -> Task<void> {
        auto group = withTaskGroup<void>([&children](TaskGroup<void>& running) -> Task<void> {
            for (int i = 0; i < 3; ++i) {
                running.add([&children] {
                    while (!currentTaskIsCancelled()) std::this_thread::yield();
                    ++children;
                });
            }
            co_return;
        });
        co_await group;
        ++cleanedUp;
    });
    spawn(flows.context, [&]() -> Task<void> {
        AsyncStream<int> silent([](AsyncStream<int>::Producer) {});
        auto nothing = co_await silent.next();
        if (!nothing) ++cleanedUp;
    });
    flows.loop.drain();
    EXPECT_TRUE(shutDown(flows.registry, [&] { flows.loop.drain(); }, 10s));
    EXPECT_EQ(cleanedUp, 3);
    EXPECT_EQ(children, 3);
    EXPECT_TRUE(flows.registry.empty());
    EXPECT_EQ(flows.loop.timers(), 0u);
}

TEST(ShutDown, ReachesTasksThatAreSpawnedWhileEnding) {
    Flows flows;
    int generations = 0;
    spawn(flows.context, [&]() -> Task<void> {
        try {
            co_await sleepFor(1h);
        } catch (const Cancelled&) {}
        auto context = co_await currentContext();
        spawn(context, [&generations]() -> Task<void> {
            try {
                co_await sleepFor(1h);
            } catch (const Cancelled&) {
                ++generations;
            }
        });
    });
    flows.loop.drain();
    EXPECT_TRUE(shutDown(flows.registry, [&] { flows.loop.drain(); }, 10s));
    EXPECT_EQ(generations, 1);
}

TEST(ShutDown, NothingToEndTakesOneTurn) {
    TaskRegistry registry;
    int turns = 0;
    EXPECT_TRUE(shutDown(registry, [&] { ++turns; }));
    EXPECT_EQ(turns, 1);
}

// Keeps the frame that awaits it, and so those that await that one, in sight of the leak checker: a flow
// whose worker was left behind is never destroyed.
class StayReachable {
public:
    bool await_ready() const noexcept { return false; }
    bool await_suspend(std::coroutine_handle<> frame) const {
        // Never destroyed, since the leak checker looks after the statics have gone.
        static auto& frames = *new std::vector<std::coroutine_handle<>>;
        frames.push_back(frame);
        return false;
    }
    void await_resume() const noexcept {}
};

TEST(ShutDown, AWorkerThatIsBlockedIsLeftBehindWithinTwoSeconds) {
    struct World {
        Flows flows;
        Door door;
        std::atomic<bool> finished{false};
        bool resumed = false;
    };
    // The frame of the flow and what it uses stay until the worker that was left behind is through.
    auto world = std::make_shared<World>();
    Flows& flows = world->flows;
    auto handle = spawn(flows.context, [&world = *world]() -> Task<void> {
        co_await StayReachable();
        auto work = offload([&world] {
            world.door.pass();
            world.finished = true;
        });
        co_await work;
        world.resumed = true;
    });
    auto other = spawn(flows.context, []() -> Task<void> { co_await sleepFor(1h); });
    flows.loop.drain();
    ASSERT_TRUE(world->door.awaitWaiting(1));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(shutDown(flows.registry, [&] { flows.loop.drain(); }));
    EXPECT_EQ(flows.workers.abandon(), 1u);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    EXPECT_TRUE(other.done());
    EXPECT_FALSE(handle.done());
    world->door.open();
    while (!world->finished) std::this_thread::yield();
    std::this_thread::sleep_for(10ms);
    flows.loop.drain();
    EXPECT_FALSE(world->resumed);
}

} // namespace
} // namespace vesko
