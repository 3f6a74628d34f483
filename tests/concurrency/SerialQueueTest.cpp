#include "concurrency/SerialQueue.h"
#include "concurrency/WorkerPool.h"
#include "support/ManualLoop.h"
#include <atomic>
#include <gmock/gmock.h>
#include <latch>
#include <numeric>
#include <thread>
#include <vector>

namespace vesko {
namespace {

TEST(SerialQueue, RunsOneClosureAtATimeInTheOrderOfPosting) {
    WorkerPool workers;
    SerialQueue queue(workers);
    constexpr int count = 2000;
    std::vector<int> ran; // touched by the queue alone: a race here is the failure
    std::latch done(1);
    for (int number = 0; number < count; ++number) queue.post([&ran, number] { ran.push_back(number); });
    queue.post([&] { done.count_down(); });
    done.wait();
    std::vector<int> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(ran, expected);
}

TEST(SerialQueue, TakesClosuresFromSeveralThreadsAndFromItsOwn) {
    WorkerPool workers;
    SerialQueue queue(workers);
    int sum = 0; // touched by the queue alone
    std::latch done(400);
    std::vector<std::thread> posters;
    for (int thread = 0; thread < 4; ++thread)
        posters.emplace_back([&] {
            for (int count = 0; count < 50; ++count)
                queue.post([&] {
                    ++sum;
                    done.count_down();
                    queue.post([&] {
                        ++sum;
                        done.count_down();
                    });
                });
        });
    for (std::thread& poster : posters) poster.join();
    done.wait();
    std::latch read(1);
    queue.post([&] {
        EXPECT_EQ(sum, 400);
        read.count_down();
    });
    read.wait();
}

TEST(SerialQueue, TakesOneWorkerOnlyWhileThereIsSomethingToDo) {
    ManualLoop loop;
    SerialQueue queue(loop);
    int ran = 0;
    queue.post([&] { ++ran; });
    queue.post([&] { ++ran; });
    EXPECT_EQ(loop.drain(), 1u);
    EXPECT_EQ(ran, 2);
    queue.post([&] { ++ran; });
    EXPECT_EQ(loop.drain(), 1u);
    EXPECT_EQ(ran, 3);
}

TEST(SerialQueue, WhatIsPostedRunsAlsoAfterItsEnd) {
    ManualLoop loop;
    int ran = 0;
    {
        SerialQueue queue(loop);
        queue.post([&] { ++ran; });
    }
    loop.drain();
    EXPECT_EQ(ran, 1);
}

} // namespace
} // namespace vesko
