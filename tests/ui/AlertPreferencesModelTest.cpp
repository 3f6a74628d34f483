#include "ui/AlertPreferencesModel.h"
#include "background/NotificationPreferencesStorage.h"
#include "support/ManualLoop.h"
#include "support/MemoryUserDefaults.h"
#include "ui/RecordingPermission.h"
#include <QSignalSpy>
#include <gtest/gtest.h>
#include <limits>

namespace vesko {
namespace {

using namespace testing;

class AlertPreferences : public ::testing::Test {
protected:
    AlertPreferences() { model.load(); }
    /// A question that a test has started and not looked at is answered too.
    ~AlertPreferences() override { loop.drain(); }
    static NotificationPreferences allOff() { return {false, 10'000'000'000, false, 5'000'000'000, false}; }
    void loadWith(const NotificationPreferences& preferences) {
        stored = preferences;
        model.load();
    }

    ManualLoop loop;
    TaskContext tasks{&loop, &loop, &loop, {}, nullptr};
    std::shared_ptr<RecordingPermission> permission = std::make_shared<RecordingPermission>();
    NotificationPreferences stored;
    int saves = 0;
    AlertPreferencesModel model{{tasks, permission, [this] { return stored; },
                                 [this](const NotificationPreferences& preferences) {
                                     stored = preferences;
                                     ++saves;
                                 }}};
};

TEST_F(AlertPreferences, BeginWithTheDefaults) {
    EXPECT_TRUE(model.lowSpaceEnabled());
    EXPECT_EQ(model.lowSpaceGB(), 10);
    EXPECT_TRUE(model.opportunityEnabled());
    EXPECT_EQ(model.opportunityDeltaGB(), 5);
    EXPECT_FALSE(model.scanCompletedEnabled());
    EXPECT_EQ(saves, 0);
}

TEST_F(AlertPreferences, AMovedSliderIsSavedAtOnceInDecimalGigabytes) {
    model.moveLowSpace(23);
    EXPECT_EQ(stored, (NotificationPreferences{true, 23'000'000'000, true, 5'000'000'000, false}));
    model.moveOpportunity(7);
    EXPECT_EQ(stored, (NotificationPreferences{true, 23'000'000'000, true, 7'000'000'000, false}));
    EXPECT_EQ(saves, 2);
    EXPECT_EQ(model.lowSpaceGB(), 23);
    EXPECT_EQ(model.opportunityDeltaGB(), 7);
}

TEST_F(AlertPreferences, TheSlidersStayWithinTheirRanges) {
    const struct {
        double asked, lowSpace, opportunity;
    } cases[] = {{-3, 5, 1},   {0, 5, 1},    {1, 5, 1},    {4.4, 5, 4},  {5, 5, 5},
                 {20, 20, 20}, {21, 21, 20}, {50, 50, 20}, {51, 50, 20}, {1e30, 50, 20}};
    for (const auto& each : cases) {
        model.moveLowSpace(each.asked);
        model.moveOpportunity(each.asked);
        EXPECT_EQ(model.lowSpaceGB(), each.lowSpace) << each.asked;
        EXPECT_EQ(model.opportunityDeltaGB(), each.opportunity) << each.asked;
        EXPECT_EQ(stored.lowSpaceThresholdBytes, static_cast<std::int64_t>(each.lowSpace) * 1'000'000'000);
        EXPECT_EQ(stored.largeOpportunityDeltaBytes,
                  static_cast<std::int64_t>(each.opportunity) * 1'000'000'000);
    }
}

TEST_F(AlertPreferences, WhatIsNoFigureMovesNothing) {
    for (const double asked :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        model.moveLowSpace(asked);
        model.moveOpportunity(asked);
    }
    EXPECT_EQ(saves, 0);
    EXPECT_EQ(model.lowSpaceGB(), 10);
    EXPECT_EQ(model.opportunityDeltaGB(), 5);
}

TEST_F(AlertPreferences, AThresholdOutOfRangeIsShownAtTheEndAndKeptUntilItsOwnSliderMoves) {
    const std::int64_t huge = std::numeric_limits<std::int64_t>::max();
    loadWith({true, huge, true, -4, false});
    EXPECT_EQ(model.lowSpaceGB(), 50);
    EXPECT_EQ(model.opportunityDeltaGB(), 1);
    EXPECT_EQ(saves, 0);
    // The slider stands at its end already, so it is not moved there.
    model.moveLowSpace(50);
    model.moveLowSpace(60);
    EXPECT_EQ(saves, 0);
    // Another setting is saved with the thresholds as they were.
    model.setScanCompletedEnabled(true);
    EXPECT_EQ(stored, (NotificationPreferences{true, huge, true, -4, true}));
    model.moveOpportunity(2);
    EXPECT_EQ(stored, (NotificationPreferences{true, huge, true, 2'000'000'000, true}));
    model.moveLowSpace(49);
    EXPECT_EQ(stored, (NotificationPreferences{true, 49'000'000'000, true, 2'000'000'000, true}));
}

TEST_F(AlertPreferences, AThresholdBetweenTwoStepsIsShownAsItIsAndKept) {
    loadWith({true, 7'500'000'000, true, 5'000'000'000, false});
    EXPECT_EQ(model.lowSpaceGB(), 7.5);
    EXPECT_EQ(saves, 0);
    model.moveLowSpace(8);
    EXPECT_EQ(stored.lowSpaceThresholdBytes, 8'000'000'000);
}

TEST_F(AlertPreferences, EachSwitchIsSavedAtOnce) {
    model.setLowSpaceEnabled(false);
    EXPECT_EQ(stored, (NotificationPreferences{false, 10'000'000'000, true, 5'000'000'000, false}));
    model.setOpportunityEnabled(false);
    EXPECT_EQ(stored, (NotificationPreferences{false, 10'000'000'000, false, 5'000'000'000, false}));
    model.setScanCompletedEnabled(true);
    EXPECT_EQ(stored, (NotificationPreferences{false, 10'000'000'000, false, 5'000'000'000, true}));
    EXPECT_EQ(saves, 3);
}

TEST_F(AlertPreferences, AllOffAndOneOnAsksForThePermissionOnce) {
    loadWith({true, 10'000'000'000, true, 5'000'000'000, true});
    model.setLowSpaceEnabled(false);
    model.setOpportunityEnabled(false);
    model.setScanCompletedEnabled(false);
    loop.drain();
    EXPECT_EQ(permission->requests, 0);
    model.setOpportunityEnabled(true);
    loop.drain();
    EXPECT_EQ(permission->requests, 1);
}

TEST_F(AlertPreferences, EachSwitchTurnedOnAsksAndOneThatStandsSoAlreadyDoesNot) {
    loadWith(allOff());
    model.setLowSpaceEnabled(true);
    model.setScanCompletedEnabled(true);
    model.setScanCompletedEnabled(true);
    loop.drain();
    EXPECT_EQ(permission->requests, 2);
    EXPECT_EQ(saves, 2);
}

TEST_F(AlertPreferences, ARefusedPermissionLeavesTheSwitchOn) {
    permission->isGiven = false;
    loadWith(allOff());
    model.setLowSpaceEnabled(true);
    loop.drain();
    EXPECT_EQ(permission->requests, 1);
    EXPECT_TRUE(model.lowSpaceEnabled());
    EXPECT_TRUE(stored.lowSpaceEnabled);
}

TEST_F(AlertPreferences, EveryChangeIsTold) {
    QSignalSpy told(&model, &AlertPreferencesModel::changed);
    model.moveLowSpace(11);
    model.setOpportunityEnabled(false);
    model.load();
    EXPECT_EQ(told.count(), 3);
}

TEST_F(AlertPreferences, StandOverTheStoredForm) {
    MemoryUserDefaults defaults;
    AlertPreferencesModel real{{tasks, permission,
                                [&] { return NotificationPreferencesStorage::loadPreferences(defaults); },
                                [&](const NotificationPreferences& preferences) {
                                    NotificationPreferencesStorage::savePreferences(preferences, defaults);
                                }}};
    defaults.setData(NotificationPreferencesStorage::preferencesKey, "no JSON at all");
    real.load();
    EXPECT_EQ(real.lowSpaceGB(), 10);
    EXPECT_EQ(defaults.data(NotificationPreferencesStorage::preferencesKey), "no JSON at all");
    real.moveLowSpace(12);
    EXPECT_EQ(
        defaults.data(NotificationPreferencesStorage::preferencesKey),
        R"({"lowSpaceEnabled":true,"lowSpaceThresholdBytes":12000000000,"largeOpportunityEnabled":true,)"
        R"("largeOpportunityDeltaBytes":5000000000,"scanCompletedEnabled":false})");
}

} // namespace
} // namespace vesko
