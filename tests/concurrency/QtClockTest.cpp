#include "platform/qt/QtClock.h"

#include "platform/posix/ContinuousTime.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <vector>

namespace vesko {
namespace {

using namespace std::chrono_literals;

void runFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// Runs the loop until as many entries are there; no longer than ten seconds.
template <class List> void runUntilSize(const List& list, std::size_t size) {
    for (int i = 0; i < 1000 && list.size() < size; ++i) runFor(10ms);
}

TEST(ContinuousTime, CountsTheTimeAsleepAndNeverGoesBack) {
#ifdef CLOCK_BOOTTIME
    timespec before{};
    clock_gettime(CLOCK_BOOTTIME, &before);
    const auto now = continuousNow().time_since_epoch();
    timespec after{};
    clock_gettime(CLOCK_BOOTTIME, &after);
    EXPECT_GE(now, std::chrono::seconds(before.tv_sec) + std::chrono::nanoseconds(before.tv_nsec));
    EXPECT_LE(now, std::chrono::seconds(after.tv_sec) + std::chrono::nanoseconds(after.tv_nsec));
#endif
    Instant last = continuousNow();
    for (int i = 0; i < 1000; ++i) {
        const Instant next = continuousNow();
        ASSERT_GE(next, last);
        last = next;
    }
}

TEST(QtClock, CallsBackAtTheInstantAndNotBefore) {
    QtClock clock;
    const Instant begin = clock.now();
    std::vector<Instant> calls;
    clock.at(begin + 40ms, [&] { calls.push_back(clock.now()); });
    runUntilSize(calls, 1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_GE(calls[0] - begin, 40ms);
    EXPECT_LT(calls[0] - begin, 2s);
    runFor(60ms);
    EXPECT_EQ(calls.size(), 1u);
}

TEST(QtClock, CallsBackEarliestFirstWhateverTheOrderOfAsking) {
    QtClock clock;
    const Instant begin = clock.now();
    std::vector<int> order;
    clock.at(begin + 60ms, [&] { order.push_back(3); });
    clock.at(begin + 20ms, [&] { order.push_back(1); });
    clock.at(begin + 40ms, [&] { order.push_back(2); });
    clock.at(begin + 60ms, [&] { order.push_back(4); });
    runUntilSize(order, 4);
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4}));
}

TEST(QtClock, ACancelledCallbackDoesNotRunAndTheOthersDo) {
    QtClock clock;
    const Instant begin = clock.now();
    std::vector<int> order;
    const auto first = clock.at(begin + 10ms, [&] { order.push_back(1); });
    const auto third = clock.at(begin + 30ms, [&] { order.push_back(3); });
    clock.at(begin + 20ms, [&] {
        order.push_back(2);
        clock.cancel(third);
    });
    clock.at(begin + 40ms, [&] { order.push_back(4); });
    clock.cancel(first);
    clock.cancel(first);
    clock.cancel(12345);
    runUntilSize(order, 2);
    runFor(30ms);
    EXPECT_EQ(order, (std::vector{2, 4}));
}

TEST(QtClock, AnInstantThatHasPassedIsCalledInTheNextTurn) {
    QtClock clock;
    std::vector<int> calls;
    clock.at(clock.now() - 1ms, [&] { calls.push_back(1); });
    // Long before the machine started.
    clock.at(clock.now() - 24h * 365, [&] { calls.push_back(0); });
    EXPECT_TRUE(calls.empty());
    runUntilSize(calls, 2);
    EXPECT_EQ(calls, (std::vector{0, 1}));
}

TEST(QtClock, ACallbackMaySetTheNextOneAgainAndAgain) {
    QtClock clock;
    std::vector<int> calls;
    std::function<void()> again = [&] {
        calls.push_back(static_cast<int>(calls.size()));
        if (calls.size() < 20) clock.at(clock.now(), again);
    };
    clock.at(clock.now(), again);
    runUntilSize(calls, 20);
    EXPECT_EQ(calls.size(), 20u);
}

TEST(QtClock, AnInstantBeforeTheMachineStartedIsCalledToo) {
    QtClock clock;
    std::vector<int> calls;
    clock.at(clock.now() - 24h * 365, [&] { calls.push_back(1); });
    runUntilSize(calls, 1);
    EXPECT_EQ(calls.size(), 1u);
}

TEST(QtClock, CallbacksThatSetThemselvesForNowDoNotStarveTheLoop) {
    QtClock clock;
    bool stop = false;
    long calls = 0;
    const Instant past = clock.now();
    std::function<void()> again = [&] {
        ++calls;
        // The second bound only ends a loop that is starved.
        if (!stop && calls < 3'000'000) clock.at(past, again);
    };
    clock.at(past, again);
    runFor(30ms);
    EXPECT_GT(calls, 10);
    EXPECT_LT(calls, 3'000'000);
    stop = true;
    runFor(10ms);
}

TEST(QtClock, TheFarthestInstantDoesNotRing) {
    QtClock clock;
    std::vector<int> calls;
    const auto far = clock.at(Instant::max(), [&] { calls.push_back(1); });
    clock.at(clock.now() + 10ms, [&] { calls.push_back(2); });
    runUntilSize(calls, 1);
    runFor(30ms);
    EXPECT_EQ(calls, (std::vector{2}));
    clock.cancel(far);
}

TEST(QtClock, AThousandCallbacksAllRun) {
    QtClock clock;
    const Instant begin = clock.now();
    std::vector<int> calls;
    for (int i = 0; i < 1000; ++i) {
        clock.at(begin + std::chrono::microseconds(i * 20), [&calls, i] { calls.push_back(i); });
    }
    runUntilSize(calls, 1000);
    ASSERT_EQ(calls.size(), 1000u);
    EXPECT_TRUE(std::is_sorted(calls.begin(), calls.end()));
}

} // namespace
} // namespace vesko
