#include "Flows.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace vesko {
namespace {

TEST(Offload, RunsOnAWorkerAndResumesAtHome) {
    Flows flows;
    const auto home = std::this_thread::get_id();
    std::thread::id worker;
    std::thread::id resumed;
    int got = 0;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto work = offload([&] {
            worker = std::this_thread::get_id();
            return 42;
        });
        got = co_await work;
        resumed = std::this_thread::get_id();
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(got, 42);
    EXPECT_NE(worker, home);
    EXPECT_EQ(resumed, home);
}

TEST(Offload, AnExceptionOfTheClosureComesHome) {
    Flows flows;
    std::string caught;
    auto handle = spawn(flows.context, [&caught]() -> Task<void> {
        auto work = offload([]() -> int { throw std::runtime_error("no such disk"); });
        try {
            const int value = co_await work;
            caught = std::to_string(value);
        } catch (const std::runtime_error& error) {
            caught = error.what();
        }
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(caught, "no such disk");
}

TEST(Offload, AClosureWithoutAResultAndOneThatCanOnlyBeMoved) {
    Flows flows;
    bool ran = false;
    int got = 0;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto nothing = offload([&ran] { ran = true; });
        co_await nothing;
        auto moved = offload([owned = std::make_unique<int>(5)]() mutable { return std::move(owned); });
        const auto value = co_await moved;
        got = *value;
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_TRUE(ran);
    EXPECT_EQ(got, 5);
}

TEST(Offload, CancellingIsSeenByTheClosureButDoesNotCutItShort) {
    Flows flows;
    std::atomic<bool> begun{false};
    std::string got;
    auto handle = spawn(flows.context, [&]() -> Task<void> {
        auto work = offload([&begun](StopToken stop) -> std::string {
            begun = true;
            while (!stop.stopRequested()) std::this_thread::yield();
            return "partial";
        });
        got = co_await work;
    });
    ASSERT_TRUE(flows.loop.waitFor([&] { return begun.load(); }));
    EXPECT_FALSE(handle.done());
    handle.cancel();
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_EQ(got, "partial");
}

TEST(Offload, ACallOfACancelledTaskStillRuns) {
    Flows flows;
    bool sawStop = false;
    auto handle = spawn(flows.context, [&sawStop]() -> Task<void> {
        auto work = offload([](StopToken stop) { return stop.stopRequested(); });
        sawStop = co_await work;
    });
    handle.cancel();
    ASSERT_TRUE(flows.loop.waitFor([&] { return handle.done(); }));
    EXPECT_TRUE(sawStop);
}

TEST(Offload, ManyFlowsAtOnceEachGetTheirOwnResult) {
    Flows flows;
    long sum = 0;
    int ended = 0;
    for (int i = 0; i < 500; ++i) {
        spawn(flows.context, [&, i]() -> Task<void> {
            auto work = offload([i] { return i; });
            const int value = co_await work;
            sum += value;
            ++ended;
        });
    }
    ASSERT_TRUE(flows.loop.waitFor([&] { return ended == 500; }));
    EXPECT_EQ(sum, 499 * 500 / 2);
}

} // namespace
} // namespace vesko
