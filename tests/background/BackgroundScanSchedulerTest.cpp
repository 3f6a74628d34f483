#include "background/BackgroundScanScheduler.h"

#include "background/FakeActivity.h"
#include "concurrency/Concurrency.h"
#include "support/ManualLoop.h"
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace vesko {
namespace {

using namespace std::chrono_literals;
using Calls = std::vector<std::string>;

class BackgroundScans : public ::testing::Test {
protected:
    BackgroundScans() {
        scheduler->isScanActive = [this] { return asked("active", isActive); };
        scheduler->onFire = [this] { return run(); };
    }
    ~BackgroundScans() override {
        EXPECT_TRUE(shutDown(registry, [this] { loop.drain(); }));
    }

    BackgroundScanSchedulerParts parts() {
        return {tasks, platform.maker(), [this] { return asked("access", hasAccess); },
                [this] { return asked("enabled", isEnabled); }};
    }
    bool asked(const char* question, bool answer) {
        calls.emplace_back(question);
        return answer;
    }
    /// What a turn runs: takes its time and notes how it ended.
    Task<void> run() {
        calls.emplace_back("run");
        try {
            if (duration > Duration::zero()) co_await sleepFor(duration);
        } catch (const Cancelled&) {
            calls.emplace_back("cancelled");
            co_return;
        }
        calls.emplace_back("ran");
    }
    Calls fire() {
        calls.clear();
        platform.fire();
        EXPECT_EQ(calls, Calls()) << "everything waits for the main thread";
        loop.drain();
        return calls;
    }

    ManualLoop loop;
    TaskRegistry registry;
    const TaskContext tasks{&loop, nullptr, &loop, {}, &registry};
    testing::FakePlatform platform;
    bool hasAccess = true;
    bool isEnabled = true;
    bool isActive = false;
    Duration duration{};
    Calls calls;
    std::shared_ptr<BackgroundScanScheduler> scheduler = std::make_shared<BackgroundScanScheduler>(parts());
};

TEST_F(BackgroundScans, TheActivityRepeatsEverySixHoursGiveOrTakeTwo) {
    ASSERT_EQ(platform.made.size(), 1u);
    EXPECT_EQ(platform.made[0].identifier, "com.vesko.scan-refresh");
    EXPECT_TRUE(platform.made[0].repeats);
    EXPECT_EQ(platform.made[0].interval, 21'600s);
    EXPECT_EQ(platform.made[0].tolerance, 7'200s);
    EXPECT_EQ(platform.scheduled, 0);
}

TEST_F(BackgroundScans, ASecondScheduleDoesNothing) {
    scheduler->schedule();
    scheduler->schedule();
    EXPECT_EQ(platform.scheduled, 1);
}

TEST_F(BackgroundScans, ATurnAsksInOrderAndRuns) {
    scheduler->schedule();
    EXPECT_EQ(fire(), (Calls{"access", "enabled", "active", "run", "ran"}));
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(loop.timers(), 0u) << "the limit's timer goes with the turn";
    EXPECT_EQ(fire(), (Calls{"access", "enabled", "active", "run", "ran"}));
    EXPECT_EQ(platform.finished, 2);
}

TEST_F(BackgroundScans, WithoutFullDiskAccessATurnIsSkippedFirstOfAll) {
    scheduler->schedule();
    hasAccess = isEnabled = false;
    isActive = true;
    EXPECT_EQ(fire(), Calls{"access"});
    EXPECT_EQ(platform.finished, 1);
}

TEST_F(BackgroundScans, SwitchedOffATurnIsSkippedNext) {
    scheduler->schedule();
    isEnabled = false;
    isActive = true;
    EXPECT_EQ(fire(), (Calls{"access", "enabled"}));
    EXPECT_EQ(platform.finished, 1);
}

TEST_F(BackgroundScans, WhileAScanGoesOnATurnIsSkipped) {
    scheduler->schedule();
    isActive = true;
    EXPECT_EQ(fire(), (Calls{"access", "enabled", "active"}));
    EXPECT_EQ(platform.finished, 1);
    isActive = false;
    EXPECT_EQ(fire(), (Calls{"access", "enabled", "active", "run", "ran"})) << "the next turn comes as usual";
}

TEST_F(BackgroundScans, WithNothingToRunATurnIsSkipped) {
    scheduler->schedule();
    scheduler->onFire = nullptr;
    EXPECT_EQ(fire(), (Calls{"access", "enabled", "active"}));
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(loop.timers(), 0u);
}

TEST_F(BackgroundScans, UntilItIsToldAboutScansThereIsNone) {
    BackgroundScanSchedulerParts own = parts();
    const auto fresh = std::make_shared<BackgroundScanScheduler>(std::move(own));
    EXPECT_FALSE(fresh->isScanActive());
    EXPECT_FALSE(fresh->onFire);
}

TEST_F(BackgroundScans, ATurnIsFinishedWhenItsWorkIs) {
    scheduler->schedule();
    duration = 299s;
    fire();
    loop.advance(298s);
    EXPECT_EQ(platform.finished, 0);
    loop.advance(1s);
    EXPECT_EQ(calls.back(), "ran");
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(loop.timers(), 0u);
    loop.advance(10min);
    EXPECT_EQ(platform.finished, 1);
}

TEST_F(BackgroundScans, ATurnIsFinishedAfterFiveMinutesAndItsWorkCancelled) {
    scheduler->schedule();
    duration = 1h;
    fire();
    loop.advance(300s - 1ns);
    EXPECT_EQ(calls.back(), "run");
    EXPECT_EQ(platform.finished, 0);
    loop.advance(1ns);
    EXPECT_EQ(calls.back(), "cancelled");
    EXPECT_EQ(platform.finished, 1);
    loop.advance(2h);
    EXPECT_EQ(platform.finished, 1);
    EXPECT_TRUE(registry.empty());
}

TEST_F(BackgroundScans, WorkThatDoesNotListenHoldsNobodyUp) {
    scheduler->schedule();
    TaskHandle<void> deaf;
    scheduler->onFire = [&]() -> Task<void> {
        deaf = spawn(tasks, []() -> Task<void> { co_await sleepFor(1h); });
        co_await deaf.value();
    };
    fire();
    loop.advance(300s);
    EXPECT_EQ(platform.finished, 1);
    EXPECT_FALSE(deaf.done()) << "it goes on by itself";
    loop.advance(1h);
    EXPECT_TRUE(deaf.done());
    EXPECT_EQ(platform.finished, 1);
}

TEST_F(BackgroundScans, WorkThatFailsFinishesItsTurn) {
    scheduler->schedule();
    scheduler->onFire = []() -> Task<void> {
        throw std::runtime_error("no");
        co_return;
    };
    fire();
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(loop.timers(), 0u);
}

TEST_F(BackgroundScans, ATurnAfterTheSchedulersEndIsFinishedAtOnce) {
    scheduler->schedule();
    scheduler.reset();
    EXPECT_EQ(platform.ended, 1);
    calls.clear();
    platform.fire();
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(loop.drain(), 0u);
    EXPECT_EQ(calls, Calls());
}

TEST_F(BackgroundScans, AnEndBetweenTheTurnAndItsTaskFinishesTheTurn) {
    scheduler->schedule();
    platform.fire();
    scheduler.reset();
    loop.drain();
    EXPECT_EQ(platform.finished, 1);
    EXPECT_EQ(calls, Calls());
}

TEST_F(BackgroundScans, TheProgramsEndFinishesARunningTurn) {
    scheduler->schedule();
    duration = 1h;
    fire();
    EXPECT_TRUE(shutDown(registry, [this] { loop.drain(); }));
    EXPECT_EQ(calls.back(), "cancelled");
    EXPECT_EQ(platform.finished, 1);
}

TEST_F(BackgroundScans, ATurnMayComeOnAnyThread) {
    scheduler->schedule();
    std::thread([this] { platform.fire(); }).join();
    EXPECT_EQ(platform.finished, 0);
    loop.drain();
    EXPECT_EQ(calls, (Calls{"access", "enabled", "active", "run", "ran"}));
    EXPECT_EQ(platform.finished, 1);
}

TEST_F(BackgroundScans, TurnsAndTheSchedulersEndMayMeet) {
    for (int round = 0; round < 200; ++round) {
        testing::FakePlatform other;
        auto own = std::make_shared<BackgroundScanScheduler>(
            BackgroundScanSchedulerParts{tasks, other.maker(), [] { return true; }, [] { return true; }});
        own->schedule();
        std::thread platformThread([&] { other.fire(); });
        own.reset();
        platformThread.join();
        loop.drain();
        ASSERT_EQ(other.finished, 1);
    }
}

} // namespace
} // namespace vesko
