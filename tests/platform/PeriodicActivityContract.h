#pragma once
#include "background/PeriodicActivity.h"
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <utility>

namespace vesko::testing {

/// What the periodic activities of every system promise. `System` makes one, and has the time in its hands:
///     std::unique_ptr<PeriodicActivity> make(const PeriodicActivitySettings& settings);
///     void pass(std::chrono::seconds time);  // and whatever falls due meanwhile
template <class System> class PeriodicActivityContract : public ::testing::Test {
protected:
    using Hours = std::chrono::hours;

    void schedule(bool repeats = true) {
        activity = system.make({"org.example.work", repeats, Hours(6), Hours(2)});
        activity->schedule([this](PeriodicActivity::Finished finished) {
            ++turns;
            finish = std::move(finished);
            if (finishesAtOnce) finish();
        });
    }

    System system;
    bool finishesAtOnce = true;
    std::atomic<int> turns = 0;
    PeriodicActivity::Finished finish;
    std::unique_ptr<PeriodicActivity> activity;
};
TYPED_TEST_SUITE_P(PeriodicActivityContract);

TYPED_TEST_P(PeriodicActivityContract, ATurnComesAfterEachIntervalAndNoneBefore) {
    this->schedule();
    EXPECT_EQ(this->turns, 0);
    this->system.pass(std::chrono::hours(6) - std::chrono::seconds(1));
    EXPECT_EQ(this->turns, 0);
    this->system.pass(std::chrono::seconds(1));
    EXPECT_EQ(this->turns, 1);
    this->system.pass(std::chrono::hours(18));
    EXPECT_EQ(this->turns, 4);
}

TYPED_TEST_P(PeriodicActivityContract, OneThatDoesNotRepeatHasOneTurn) {
    this->schedule(false);
    this->system.pass(std::chrono::hours(60));
    EXPECT_EQ(this->turns, 1);
}

TYPED_TEST_P(PeriodicActivityContract, OneThatIsNotScheduledHasNone) {
    this->activity = this->system.make({"org.example.work", true, std::chrono::hours(6), {}});
    this->system.pass(std::chrono::hours(60));
    this->activity.reset();
    EXPECT_EQ(this->turns, 0);
}

TYPED_TEST_P(PeriodicActivityContract, TheNextTurnWaitsForTheOneBefore) {
    this->finishesAtOnce = false;
    this->schedule();
    this->system.pass(std::chrono::hours(30));
    EXPECT_EQ(this->turns, 1);
    this->finish();
    this->system.pass(std::chrono::hours(6));
    EXPECT_EQ(this->turns, 2);
}

TYPED_TEST_P(PeriodicActivityContract, ATurnMayBeFinishedOnAnotherThread) {
    this->finishesAtOnce = false;
    this->schedule();
    for (int turn = 1; turn <= 3; ++turn) {
        this->system.pass(std::chrono::hours(6));
        EXPECT_EQ(this->turns, turn);
        std::thread([this] { this->finish(); }).join();
    }
}

TYPED_TEST_P(PeriodicActivityContract, NoTurnComesAfterItsEnd) {
    this->schedule();
    this->system.pass(std::chrono::hours(6));
    this->activity.reset();
    this->system.pass(std::chrono::hours(60));
    EXPECT_EQ(this->turns, 1);
}

TYPED_TEST_P(PeriodicActivityContract, ATurnMayOutlastTheActivity) {
    this->finishesAtOnce = false;
    this->schedule();
    this->system.pass(std::chrono::hours(6));
    this->activity.reset();
    std::thread([this] { this->finish(); }).join();
    this->system.pass(std::chrono::hours(60));
    EXPECT_EQ(this->turns, 1);
}

TYPED_TEST_P(PeriodicActivityContract, ItMayEndInItsOwnTurn) {
    this->activity = this->system.make({"org.example.work", true, std::chrono::hours(6), {}});
    this->activity->schedule([this](const PeriodicActivity::Finished& finished) {
        ++this->turns;
        this->activity.reset();
        finished();
    });
    this->system.pass(std::chrono::hours(60));
    EXPECT_EQ(this->turns, 1);
}

TYPED_TEST_P(PeriodicActivityContract, EachHasItsOwnTime) {
    this->schedule();
    int others = 0;
    const auto other = this->system.make({"org.example.other", true, std::chrono::hours(1), {}});
    other->schedule([&others](const PeriodicActivity::Finished& finished) {
        ++others;
        finished();
    });
    this->system.pass(std::chrono::hours(12));
    EXPECT_EQ(this->turns, 2);
    EXPECT_EQ(others, 12);
}

REGISTER_TYPED_TEST_SUITE_P(PeriodicActivityContract, ATurnComesAfterEachIntervalAndNoneBefore,
                            OneThatDoesNotRepeatHasOneTurn, OneThatIsNotScheduledHasNone,
                            TheNextTurnWaitsForTheOneBefore, ATurnMayBeFinishedOnAnotherThread,
                            NoTurnComesAfterItsEnd, ATurnMayOutlastTheActivity, ItMayEndInItsOwnTurn,
                            EachHasItsOwnTime);

} // namespace vesko::testing
