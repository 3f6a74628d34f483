#include "ClockPeriodicActivity.h"

#include "support/ManualLoop.h"
#include <gtest/gtest.h>
#include <vector>

namespace vesko {
namespace {

using namespace std::chrono_literals;

class ClockPeriodicActivityTest : public ::testing::Test {
protected:
    void schedule(PeriodicActivitySettings settings) {
        activity = platformPeriodicActivity({&loop, nullptr, &loop, {}, nullptr})(settings);
        begin = loop.now();
        activity->schedule([this](PeriodicActivity::Finished finished) {
            turns.push_back(std::chrono::duration_cast<std::chrono::minutes>(loop.now() - begin));
            finish = std::move(finished);
            if (finishesAtOnce) finish();
        });
    }

    ManualLoop loop;
    Instant begin;
    bool finishesAtOnce = true;
    std::vector<std::chrono::minutes> turns;
    PeriodicActivity::Finished finish;
    std::unique_ptr<PeriodicActivity> activity;
};

const PeriodicActivitySettings everySixHours{"test", true, 6h, 2h};
using Turns = std::vector<std::chrono::minutes>;

TEST_F(ClockPeriodicActivityTest, TurnsComeEveryIntervalWithOneTimerAndNothingInBetween) {
    schedule(everySixHours);
    EXPECT_EQ(loop.timers(), 1u);
    EXPECT_EQ(loop.drain(), 0u);
    loop.advance(6h - 1ns);
    EXPECT_EQ(turns, Turns());
    loop.advance(1ns);
    EXPECT_EQ(turns, Turns{6h});
    loop.advance(30h);
    EXPECT_EQ(turns, (Turns{6h, 12h, 18h, 24h, 30h, 36h}));
    EXPECT_EQ(loop.timers(), 1u);
}

TEST_F(ClockPeriodicActivityTest, TheNextTurnWaitsForTheOneBefore) {
    finishesAtOnce = false;
    schedule(everySixHours);
    loop.advance(20h);
    EXPECT_EQ(turns, Turns{6h});
    EXPECT_EQ(loop.timers(), 0u);
    finish();
    loop.drain();
    loop.advance(0ns);
    EXPECT_EQ(turns, (Turns{6h, 20h})) << "what was missed comes once";
}

TEST_F(ClockPeriodicActivityTest, ATurnThatIsALittleLateKeepsTheBeat) {
    finishesAtOnce = false;
    schedule(everySixHours);
    loop.advance(13h);
    finishesAtOnce = true;
    finish();
    loop.drain();
    loop.advance(0ns);
    EXPECT_EQ(turns, (Turns{6h, 13h})) << "an hour late, as on waking";
    loop.advance(5h);
    EXPECT_EQ(turns, (Turns{6h, 13h, 18h}));
}

TEST_F(ClockPeriodicActivityTest, ATurnThatIsVeryLateBeginsANewBeat) {
    finishesAtOnce = false;
    schedule(everySixHours);
    loop.advance(17h);
    finishesAtOnce = true;
    finish();
    loop.drain();
    loop.advance(5h);
    EXPECT_EQ(turns, (Turns{6h, 17h}));
    loop.advance(1h);
    EXPECT_EQ(turns, (Turns{6h, 17h, 23h}));
}

TEST_F(ClockPeriodicActivityTest, FinishingTwiceIsFinishingOnce) {
    finishesAtOnce = false;
    schedule(everySixHours);
    loop.advance(6h);
    finish();
    finish();
    loop.drain();
    EXPECT_EQ(loop.timers(), 1u);
}

TEST_F(ClockPeriodicActivityTest, OneThatDoesNotRepeatHasOneTurn) {
    schedule({"test", false, 6h, 2h});
    loop.advance(60h);
    EXPECT_EQ(turns, Turns{6h});
    EXPECT_EQ(loop.timers(), 0u);
}

TEST_F(ClockPeriodicActivityTest, ItsEndTakesTheTimerBack) {
    schedule(everySixHours);
    activity.reset();
    EXPECT_EQ(loop.timers(), 0u);
}

TEST_F(ClockPeriodicActivityTest, ATurnMayOutlastTheActivity) {
    finishesAtOnce = false;
    schedule(everySixHours);
    loop.advance(6h);
    activity.reset();
    finish();
    loop.advance(60h);
    EXPECT_EQ(turns, Turns{6h});
}

TEST_F(ClockPeriodicActivityTest, ItMayEndInItsOwnTurn) {
    schedule(everySixHours);
    activity = platformPeriodicActivity({&loop, nullptr, &loop, {}, nullptr})(everySixHours);
    bool hasFired = false;
    activity->schedule([&](const PeriodicActivity::Finished& finished) {
        hasFired = true;
        activity.reset();
        finished();
    });
    loop.advance(60h);
    EXPECT_TRUE(hasFired);
    EXPECT_EQ(loop.timers(), 0u);
}

} // namespace
} // namespace vesko
