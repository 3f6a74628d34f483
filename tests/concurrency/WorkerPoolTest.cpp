#include "Flows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace vesko {
namespace {

using namespace std::chrono_literals;

template <class Condition> bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) return true;
        std::this_thread::sleep_for(1ms);
    }
    return condition();
}

class WorkerPoolBlocked : public testing::TestWithParam<int> {};

TEST_P(WorkerPoolBlocked, CallsDoNotKeepAnotherWaiting) {
    Door door;
    WorkerPool pool;
    for (int i = 0; i < GetParam(); ++i) pool.post([&] { door.pass(); });
    ASSERT_TRUE(door.awaitWaiting(GetParam()));
    // Until nothing is under way any more that would start a worker by itself.
    std::this_thread::sleep_for(60ms);
    std::atomic<bool> ran{false};
    pool.post([&] { ran = true; });
    EXPECT_TRUE(eventually([&] { return ran.load(); }));
    door.open();
}

INSTANTIATE_TEST_SUITE_P(Counts, WorkerPoolBlocked, testing::Values(1, 16, 64, 200));

TEST(WorkerPool, NeverHasMoreWorkersThanItsBound) {
    Door door;
    WorkerPool pool({.prompt = 2, .most = 4, .stall = 2ms});
    std::atomic<bool> fifth{false};
    for (int i = 0; i < 4; ++i) pool.post([&] { door.pass(); });
    ASSERT_TRUE(door.awaitWaiting(4));
    pool.post([&] { fifth = true; });
    std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(fifth);
    EXPECT_EQ(pool.threads(), 4u);
    door.open();
    EXPECT_TRUE(eventually([&] { return fifth.load(); }));
}

TEST(WorkerPool, ABurstOfShortCallsIsLeftToTheWorkersThereAre) {
    std::atomic<int> ran{0};
    WorkerPool pool({.prompt = 3, .most = 200, .stall = 10s});
    for (int i = 0; i < 20'000; ++i) pool.post([&] { ++ran; });
    EXPECT_TRUE(eventually([&] { return ran == 20'000; }));
    EXPECT_LE(pool.threads(), 3u);
}

TEST(WorkerPool, IdleWorkersEndAndNewOnesStartWhenNeeded) {
    WorkerPool pool({.idle = 10ms});
    for (int round = 0; round < 3; ++round) {
        Door door;
        std::atomic<int> ran{0};
        for (int i = 0; i < 16; ++i) {
            pool.post([&] {
                door.pass();
                ++ran;
            });
        }
        ASSERT_TRUE(door.awaitWaiting(16));
        EXPECT_EQ(pool.threads(), 16u);
        door.open();
        ASSERT_TRUE(eventually([&] { return ran == 16; }));
        EXPECT_TRUE(eventually([&] { return pool.threads() == 0; }));
    }
}

TEST(WorkerPool, AnIdleWorkerIsTakenBeforeANewOneStarts) {
    WorkerPool pool;
    for (int i = 0; i < 50; ++i) {
        Door door;
        pool.post([&] { door.open(); });
        door.pass();
        // The call has ended, its worker may still be on its way back.
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_LE(pool.threads(), 5u);
}

TEST(WorkerPool, OneIdleWorkerIsNotCountedOnByTwoCalls) {
    WorkerPool pool;
    for (int round = 0; round < 50; ++round) {
        Door door;
        std::atomic<int> ended{0};
        const auto block = [&] {
            door.pass();
            ++ended;
        };
        const int calls = static_cast<int>(pool.threads()) + 2;
        for (int i = 0; i < calls && i < 30; ++i) pool.post(block);
        ASSERT_TRUE(door.awaitWaiting(std::min(calls, 30)));
        door.open();
        ASSERT_TRUE(eventually([&] { return ended == std::min(calls, 30); }));
    }
}

TEST(WorkerPool, ItsDestructionRunsWhatWasPosted) {
    std::atomic<int> ran{0};
    {
        WorkerPool pool({.prompt = 2, .most = 2});
        for (int i = 0; i < 100; ++i) {
            pool.post([&] {
                std::this_thread::sleep_for(100us);
                ++ran;
            });
        }
    }
    EXPECT_EQ(ran, 100);
}

TEST(WorkerPool, WhatACallHoldsGoesWithTheCall) {
    WorkerPool pool;
    auto held = std::make_shared<int>(1);
    pool.post([held] {});
    EXPECT_TRUE(eventually([&] { return held.use_count() == 1; }));
}

TEST(WorkerPool, ManyThreadsMayPost) {
    std::atomic<int> ran{0};
    {
        WorkerPool pool({.idle = 1ms});
        std::vector<std::thread> posters;
        for (int t = 0; t < 8; ++t) {
            posters.emplace_back([&] {
                for (int i = 0; i < 1000; ++i) {
                    pool.post([&] { ++ran; });
                    if (i % 100 == 0) std::this_thread::sleep_for(1ms);
                }
            });
        }
        for (std::thread& poster : posters) poster.join();
    }
    EXPECT_EQ(ran, 8000);
}

TEST(WorkerPool, LeavingBlockedWorkersBehindTakesNoTime) {
    auto door = std::make_shared<Door>();
    auto left = std::make_shared<std::atomic<int>>(0);
    const auto begin = std::chrono::steady_clock::now();
    {
        WorkerPool pool;
        for (int i = 0; i < 3; ++i) {
            pool.post([door, left] {
                door->pass();
                ++*left;
            });
        }
        ASSERT_TRUE(door->awaitWaiting(3));
        EXPECT_EQ(pool.abandon(), 3u);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    EXPECT_EQ(*left, 0);
    door->open();
    EXPECT_TRUE(eventually([&] { return *left == 3; }));
}

TEST(WorkerPool, CallsThatHaveNotBegunAreDroppedWhenItIsAbandoned) {
    auto door = std::make_shared<Door>();
    auto ran = std::make_shared<std::atomic<bool>>(false);
    {
        WorkerPool pool({.prompt = 1, .most = 1});
        pool.post([door] { door->pass(); });
        ASSERT_TRUE(door->awaitWaiting(1));
        pool.post([ran] { *ran = true; });
        EXPECT_EQ(ran.use_count(), 2);
        pool.abandon();
        EXPECT_EQ(ran.use_count(), 1);
        pool.post([ran] { *ran = true; });
        EXPECT_EQ(ran.use_count(), 1);
    }
    door->open();
    EXPECT_TRUE(eventually([&] { return door.use_count() == 1; }));
    EXPECT_FALSE(*ran);
}

TEST(WorkerPool, AnIdlePoolIsAbandonedWithoutAnyoneLeftBehind) {
    WorkerPool pool;
    std::atomic<bool> ran{false};
    pool.post([&] { ran = true; });
    ASSERT_TRUE(eventually([&] { return ran.load(); }));
    std::this_thread::sleep_for(5ms);
    EXPECT_EQ(pool.abandon(), 0u);
}

// A home loop that counts what reaches it.
struct CountingHome : Executor {
    std::atomic<int>& posts;
    explicit CountingHome(std::atomic<int>& count) : posts(count) {}
    void post(std::function<void()>) override { ++posts; }
};

TEST(WorkerPool, AWorkerThatFinishesLateDoesNotTouchTheHomeThatIsGone) {
    std::atomic<int> posts{0};
    auto door = std::make_shared<Door>();
    auto ended = std::make_shared<std::atomic<bool>>(false);
    {
        auto home = std::make_unique<CountingHome>(posts);
        WorkerPool pool;
        pool.post([door, ended, loop = home.get()] {
            door->pass();
            postHome(*loop, [] {});
            *ended = true;
        });
        ASSERT_TRUE(door->awaitWaiting(1));
        EXPECT_EQ(pool.abandon(), 1u);
        home.reset();
    }
    door->open();
    EXPECT_TRUE(eventually([&] { return ended->load(); }));
    EXPECT_EQ(posts, 0);
}

} // namespace
} // namespace vesko
