#include "Flows.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace vesko {
namespace {

using namespace std::chrono_literals;

enum class End { None, Slept, Cancelled };

Task<void> sleepAndTell(Duration duration, End* end) {
    try {
        co_await sleepFor(duration);
        *end = End::Slept;
    } catch (const Cancelled&) {
        *end = End::Cancelled;
    }
}

TEST(Sleep, EndsAtItsInstantAndNotBefore) {
    Flows flows;
    End end = End::None;
    spawn(flows.context, [&end]() -> Task<void> { return sleepAndTell(30s, &end); });
    flows.loop.advance(30s - 1ns);
    EXPECT_EQ(end, End::None);
    flows.loop.advance(1ns);
    EXPECT_EQ(end, End::Slept);
}

TEST(Sleep, CancellingEndsItAtOnceAndTakesTheTimerBack) {
    Flows flows;
    End end = End::None;
    auto handle = spawn(flows.context, [&end]() -> Task<void> { return sleepAndTell(30s, &end); });
    flows.loop.drain();
    ASSERT_EQ(flows.loop.timers(), 1u);
    handle.cancel();
    flows.loop.drain();
    EXPECT_EQ(end, End::Cancelled);
    EXPECT_EQ(flows.loop.timers(), 0u);
    EXPECT_TRUE(handle.done());
}

TEST(Sleep, ACancelledTaskDoesNotBeginToSleep) {
    Flows flows;
    End end = End::None;
    auto handle = spawn(flows.context, [&end]() -> Task<void> { return sleepAndTell(30s, &end); });
    handle.cancel();
    flows.loop.drain();
    EXPECT_EQ(end, End::Cancelled);
    EXPECT_EQ(flows.loop.timers(), 0u);
}

TEST(Sleep, ACancelAfterItHasRungComesTooLate) {
    Flows flows;
    // A loop of its own for the coroutine: the timer rings in one, the coroutine resumes in the other.
    ManualLoop home;
    TaskContext context = flows.context;
    context.home = &home;
    End end = End::None;
    auto handle = spawn(context, [&end]() -> Task<void> { return sleepAndTell(1s, &end); });
    home.drain();
    flows.loop.advance(1s);
    handle.cancel();
    home.drain();
    EXPECT_EQ(end, End::Slept);
}

TEST(Sleep, ACancelBeforeItRingsCountsThoughItRingsBeforeItsTaskGoesOn) {
    Flows flows;
    ManualLoop home;
    TaskContext context = flows.context;
    context.home = &home;
    End end = End::None;
    auto handle = spawn(context, [&end]() -> Task<void> { return sleepAndTell(1s, &end); });
    home.drain();
    handle.cancel();
    flows.loop.advance(1s);
    home.drain();
    EXPECT_EQ(end, End::Cancelled);
}

TEST(Sleep, CancellingFromAnotherThreadMayRaceWithTheRing) {
    for (int round = 0; round < 500; ++round) {
        Flows flows;
        End end = End::None;
        auto handle = spawn(flows.context, [&end]() -> Task<void> { return sleepAndTell(1s, &end); });
        std::atomic<bool> go{false};
        std::thread canceller([&] {
            while (!go) continue;
            handle.cancel();
        });
        go = true;
        for (int spin = 0; spin < round % 32; ++spin) std::this_thread::yield();
        flows.loop.advance(1s);
        canceller.join();
        flows.loop.drain();
        EXPECT_NE(end, End::None);
        EXPECT_TRUE(handle.done());
        EXPECT_EQ(flows.loop.timers(), 0u);
    }
}

TEST(Sleep, NoDurationAndANegativeOneWaitForTheNextTurn) {
    Flows flows;
    End none = End::None;
    End negative = End::None;
    spawn(flows.context, [&none]() -> Task<void> { return sleepAndTell(0s, &none); });
    spawn(flows.context, [&negative]() -> Task<void> { return sleepAndTell(-5s, &negative); });
    flows.loop.drain();
    EXPECT_EQ(none, End::None);
    flows.loop.advance(0s);
    EXPECT_EQ(none, End::Slept);
    EXPECT_EQ(negative, End::Slept);
}

TEST(Sleep, TheLongestDurationDoesNotOverflow) {
    Flows flows;
    End end = End::None;
    auto handle =
        spawn(flows.context, [&end]() -> Task<void> { return sleepAndTell(Duration::max(), &end); });
    flows.loop.advance(24h * 365);
    EXPECT_EQ(end, End::None);
    handle.cancel();
    flows.loop.drain();
    EXPECT_EQ(end, End::Cancelled);
}

TEST(Sleep, ThirtyDaysOfPollingPassQuickly) {
    Flows flows;
    int polls = 0;
    auto handle = spawn(flows.context, [&polls]() -> Task<void> {
        for (;;) {
            co_await sleepFor(30s);
            ++polls;
        }
    });
    const auto begin = std::chrono::steady_clock::now();
    flows.loop.advance(24h * 30);
    EXPECT_EQ(polls, 30 * 24 * 60 * 2);
    // Far above what it takes, even under a sanitizer.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
    handle.cancel();
    flows.loop.drain();
    EXPECT_TRUE(handle.done());
}

} // namespace
} // namespace vesko
