#include "Flows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <set>
#include <string>
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

// Calls that come to a door and note who runs them. Held by each of them, so that one that runs too late to
// be waited for still has it.
struct Visits {
    Door door;
    std::mutex mutex;
    std::set<std::thread::id> visitors;
    std::atomic<int> ended{0};
};

// Posts that many calls at once; true when all of them ran at the same time, each on a worker of its own, and
// have ended. The workers wait then, or are about to.
bool allRunAtOnce(WorkerPool& pool, int calls) {
    const auto visits = std::make_shared<Visits>();
    for (int i = 0; i < calls; ++i) {
        pool.post([visits] {
            {
                std::lock_guard lock(visits->mutex);
                visits->visitors.insert(std::this_thread::get_id());
            }
            visits->door.pass();
            ++visits->ended;
        });
    }
    const bool areThere = visits->door.awaitWaiting(calls);
    visits->door.open();
    return areThere && eventually([&] { return visits->ended == calls; }) &&
           visits->visitors.size() == static_cast<std::size_t>(calls);
}

bool runs(WorkerPool& pool) {
    const auto ran = std::make_shared<std::atomic<bool>>(false);
    pool.post([ran] { *ran = true; });
    return eventually([&] { return ran->load(); });
}

// No worker of these wakes by itself, so what nobody is woken for never runs.
constexpr int waiting = 16;
constexpr WorkerPoolLimits untilWoken{.prompt = waiting, .most = waiting, .idle = 1h};

TEST(WorkerPool, EveryPostWakesAWorkerThatWaits) {
    WorkerPool pool(untilWoken);
    ASSERT_TRUE(allRunAtOnce(pool, waiting));
    for (int i = 0; i < 200; ++i) ASSERT_TRUE(runs(pool)) << i;
    EXPECT_EQ(pool.threads(), static_cast<std::size_t>(waiting));
}

TEST(WorkerPool, AsManyPostsAsWorkersWaitRunAtOnceEachOnItsOwn) {
    WorkerPool pool(untilWoken);
    for (int round = 0; round < 100; ++round) ASSERT_TRUE(allRunAtOnce(pool, waiting)) << round;
    EXPECT_EQ(pool.threads(), static_cast<std::size_t>(waiting));
}

// Where Linux tells of the pool's threads (proc(5)), each of which is asked itself: others, such as those of
// a sanitizer, come and go. Empty when not all came.
std::set<std::string> foldersOfWorkers(WorkerPool& pool, int count) {
    struct Folders {
        Door door;
        std::mutex mutex;
        std::set<std::string> paths;
        std::atomic<int> ended{0};
    };
    const auto folders = std::make_shared<Folders>();
    for (int i = 0; i < count; ++i) {
        pool.post([folders] {
            {
                std::lock_guard lock(folders->mutex);
                folders->paths.insert("/proc/" + std::filesystem::read_symlink("/proc/thread-self").string());
            }
            folders->door.pass();
            ++folders->ended;
        });
    }
    const bool areThere = folders->door.awaitWaiting(count);
    folders->door.open();
    if (!areThere || !eventually([&] { return folders->ended == count; })) return {};
    return folders->paths;
}

std::string toldOf(const std::string& threadFolder, const std::string& name) {
    std::ifstream lines(threadFolder + "/status");
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(name + ":\t")) return line.substr(name.size() + 2);
    return "";
}

// How often these threads have gone to sleep.
long sleeps(const std::set<std::string>& threads) {
    long sum = 0;
    for (const std::string& each : threads) sum += std::stol(toldOf(each, "voluntary_ctxt_switches"));
    return sum;
}

TEST(WorkerPool, APostLetsTheOtherWorkersSleep) {
    if (!std::filesystem::exists("/proc/thread-self"))
        GTEST_SKIP() << "no word here on how often a thread slept";
    WorkerPool pool(untilWoken);
    const std::set<std::string> workers = foldersOfWorkers(pool, waiting);
    ASSERT_EQ(workers.size(), static_cast<std::size_t>(waiting));
    const auto areAsleep = [&] {
        return std::ranges::all_of(workers,
                                   [](const auto& each) { return toldOf(each, "State").starts_with('S'); });
    };
    ASSERT_TRUE(eventually(areAsleep));
    const long before = sleeps(workers);
    constexpr int posts = 200;
    for (int i = 0; i < posts; ++i) ASSERT_TRUE(runs(pool)) << i;
    ASSERT_TRUE(eventually(areAsleep));
    const long slept = sleeps(workers) - before;
    EXPECT_GE(slept, posts / 2);
    // One sleep a post, and some for the lock; all workers together would sleep sixteen times a post.
    EXPECT_LE(slept, posts * 5);
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
