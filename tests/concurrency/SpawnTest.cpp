#include "Flows.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace vesko {
namespace {

using namespace std::chrono_literals;

TEST(Spawn, BeginsWithTheNextTurnOfTheLoop) {
    Flows flows;
    bool ran = false;
    auto handle = spawn(flows.context, [&ran]() -> Task<void> {
        ran = true;
        co_return;
    });
    EXPECT_FALSE(ran);
    EXPECT_FALSE(handle.done());
    flows.loop.drain();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(handle.done());
}

TEST(Spawn, KeepsTheClosureAliveUntilTheTaskEnds) {
    Flows flows;
    auto held = std::make_shared<int>(3);
    const std::weak_ptr<int> watched = held;
    int got = 0;
    auto handle = spawn(flows.context, [held = std::move(held), &got]() -> Task<void> {
        co_await sleepFor(5s);
        got = *held;
    });
    flows.loop.drain();
    EXPECT_FALSE(watched.expired());
    flows.loop.advance(5s);
    EXPECT_EQ(got, 3);
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(handle.done());
}

TEST(Spawn, DroppingTheHandleChangesNothing) {
    Flows flows;
    bool ended = false;
    {
        auto handle = spawn(flows.context, [&ended]() -> Task<void> {
            co_await sleepFor(5s);
            ended = true;
        });
    }
    flows.loop.advance(5s);
    EXPECT_TRUE(ended);
}

TEST(Spawn, SeveralMayWaitForOneValue) {
    Flows flows;
    auto source = spawn(flows.context, []() -> Task<std::string> {
        co_await sleepFor(5s);
        co_return "volume";
    });
    std::string first;
    std::string second;
    std::string late;
    spawn(flows.context, [&first, source]() -> Task<void> { first = co_await source.value(); });
    spawn(flows.context, [&second, source]() -> Task<void> { second = co_await source.value(); });
    flows.loop.advance(5s);
    EXPECT_EQ(first, "volume");
    EXPECT_EQ(second, "volume");
    spawn(flows.context, [&late, source]() -> Task<void> { late = co_await source.value(); });
    flows.loop.drain();
    EXPECT_EQ(late, "volume");
}

TEST(Spawn, AnExceptionReachesTheOneThatAsksForTheValue) {
    Flows flows;
    auto source = spawn(flows.context, []() -> Task<int> {
        throw std::runtime_error("full");
        co_return 0;
    });
    std::string caught;
    spawn(flows.context, [&caught, source]() -> Task<void> {
        try {
            const int value = co_await source.value();
            caught = std::to_string(value);
        } catch (const std::runtime_error& error) {
            caught = error.what();
        }
    });
    flows.loop.drain();
    EXPECT_EQ(caught, "full");
}

TEST(Spawn, ATaskDoesNotInheritTheCancellationOfTheOneThatSpawnsIt) {
    Flows flows;
    TaskHandle<bool> inner;
    auto outer = spawn(flows.context, [&inner]() -> Task<void> {
        auto context = co_await currentContext();
        inner = spawn(context, []() -> Task<bool> {
            co_await sleepFor(5s);
            auto own = co_await currentContext();
            co_return own.stop.stopRequested();
        });
        co_await sleepFor(100s);
    });
    flows.loop.drain();
    outer.cancel();
    flows.loop.advance(5s);
    EXPECT_TRUE(outer.done());
    ASSERT_TRUE(inner.done());
    bool stopped = true;
    spawn(flows.context, [&stopped, inner]() -> Task<void> { stopped = co_await inner.value(); });
    flows.loop.drain();
    EXPECT_FALSE(stopped);
}

TEST(Spawn, AnEmptyHandleDoesNothing) {
    const TaskHandle<int> handle;
    handle.cancel();
    EXPECT_FALSE(handle.done());
    EXPECT_FALSE(static_cast<bool>(handle));
}

struct Model : std::enable_shared_from_this<Model> {
    int refreshed = 0;
    TaskHandle<void> poll;

    void start(const TaskContext& context) {
        poll = spawn(context, [weak = weak_from_this()]() -> Task<void> {
            for (;;) {
                co_await sleepFor(30s);
                auto self = weak.lock();
                if (!self) co_return;
                ++self->refreshed;
            }
        });
    }
};

TEST(Spawn, AFlowThatHoldsItsOwnerWeaklyEndsAfterTheOwner) {
    Flows flows;
    auto model = std::make_shared<Model>();
    model->start(flows.context);
    const auto poll = model->poll;
    flows.loop.advance(95s);
    EXPECT_EQ(model->refreshed, 3);
    const std::weak_ptr<Model> watched = model;
    model.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(poll.done());
    flows.loop.advance(30s);
    EXPECT_TRUE(poll.done());
    EXPECT_EQ(flows.loop.timers(), 0u);
}

TEST(CancelOnDrop, AReplacedTaskIsCancelledSoABurstLeadsToOneRun) {
    Flows flows;
    int fired = 0;
    CancelOnDrop<void> pending;
    for (int i = 0; i < 5; ++i) {
        pending = spawn(flows.context, [&fired]() -> Task<void> {
            co_await sleepFor(2s);
            ++fired;
        });
        flows.loop.advance(1s);
    }
    EXPECT_EQ(fired, 0);
    flows.loop.advance(5s);
    EXPECT_EQ(fired, 1);
    EXPECT_TRUE(pending.handle().done());
    EXPECT_TRUE(flows.registry.empty());
}

TEST(CancelOnDrop, CancelsWithItsOwnerAndNotWhenItIsMoved) {
    Flows flows;
    TaskHandle<void> handle = spawn(flows.context, []() -> Task<void> { co_await sleepFor(2s); });
    {
        CancelOnDrop<void> owner(handle);
        {
            CancelOnDrop<void> other(std::move(owner));
            owner = std::move(other);
        }
        flows.loop.drain();
        EXPECT_FALSE(handle.done());
    }
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
}

} // namespace
} // namespace vesko
