#include "platform/posix/ContinuousTime.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/WakeTimer.h"
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <optional>

namespace vesko {

namespace {
std::optional<Instant> playedTime;
}

/// In the place of the system's: the time since the start, unless the test says another.
Instant continuousNow() {
    if (playedTime) return *playedTime;
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return Instant(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
}

namespace {

using namespace std::chrono_literals;

void runFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

class WakeTimerTest : public ::testing::Test {
protected:
    ~WakeTimerTest() override { playedTime.reset(); }

    void runUntilRings(int wanted) const {
        for (const QDeadlineTimer end(10'000); rings < wanted && !end.hasExpired();) runFor(1ms);
    }

    int rings = 0;
    WakeTimer timer{[this] { ++rings; }};
};

TEST_F(WakeTimerTest, RingsOnce) {
    timer.set(continuousNow() + 10ms);
    runUntilRings(1);
    runFor(30ms);
    EXPECT_EQ(rings, 1);
}

TEST_F(WakeTimerTest, AnInstantThatHasPassedRingsInTheNextTurn) {
    timer.set(continuousNow() - 24h * 365);
    EXPECT_EQ(rings, 0);
    runUntilRings(1);
    EXPECT_EQ(rings, 1);
}

TEST_F(WakeTimerTest, ALaterInstantReplacesTheOneBefore) {
    timer.set(continuousNow() + 10ms);
    timer.set(continuousNow() + 1h);
    runFor(40ms);
    EXPECT_EQ(rings, 0);
}

TEST_F(WakeTimerTest, AClearedTimerDoesNotRing) {
    timer.set(continuousNow() + 10ms);
    timer.clear();
    runFor(40ms);
    EXPECT_EQ(rings, 0);
}

// The toolkit's timer and the time of the machine do not run alike: one of them stands still during sleep.
TEST_F(WakeTimerTest, AClockWhoseTimerRingsTooEarlyWaitsForTheInstant) {
    playedTime = continuousNow();
    const Instant instant = *playedTime + 20ms;
    QtClock clock;
    int calls = 0;
    clock.at(instant, [&] { ++calls; });
    runFor(100ms);
    EXPECT_EQ(calls, 0) << "the machine's time has not moved";
    playedTime = instant;
    for (const QDeadlineTimer end(10'000); calls == 0 && !end.hasExpired();) runFor(1ms);
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace vesko
