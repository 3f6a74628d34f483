#include "orchestration/AlertDecision.h"

#include <gtest/gtest.h>
#include <limits>

namespace vesko {
namespace {

using enum NotificationAlertKind;
using Kinds = std::set<NotificationAlertKind>;
using LastFired = NotificationPreferencesStorage::LastFired;

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
const Date now = dateFromUnixSeconds(1'700'000'000);
constexpr NotificationPreferences all{true, 1000, true, 500, true};

AlertSituation plenty() { return {1'000'000, 100, 100, false}; }

AlertSituation grownBy(std::int64_t bytes) {
    AlertSituation situation = plenty();
    situation.recoverableBytes += bytes;
    return situation;
}

Kinds due(const AlertSituation& situation, const LastFired& lastFired = {}) {
    return dueAlerts(situation, all, lastFired, now);
}

TEST(AlertDecision, NothingIsDueWhereNothingHappened) { EXPECT_EQ(due(plenty()), Kinds()); }

TEST(AlertDecision, SpaceIsLowBelowTheThresholdAndNotAtIt) {
    AlertSituation situation = plenty();
    situation.availableBytes = 1000;
    EXPECT_EQ(due(situation), Kinds());
    situation.availableBytes = 999;
    EXPECT_EQ(due(situation), Kinds{lowSpace});
}

TEST(AlertDecision, AVolumeThatSaidNothingHasNoSpace) {
    AlertSituation situation = plenty();
    situation.availableBytes = 0;
    EXPECT_EQ(due(situation), Kinds{lowSpace});
}

TEST(AlertDecision, AnOpportunityIsLargeAboveTheThresholdAndNotAtIt) {
    EXPECT_EQ(due(grownBy(500)), Kinds{scanCompleted});
    EXPECT_EQ(due(grownBy(501)), (Kinds{largeNewOpportunity, scanCompleted}));
}

TEST(AlertDecision, AScanThatOnlyLosesGroupsCanOnlyFindSpaceLow) {
    EXPECT_EQ(due(grownBy(-100)), Kinds());
    AlertSituation situation = grownBy(-100);
    situation.availableBytes = 0;
    EXPECT_EQ(due(situation), Kinds{lowSpace});
}

TEST(AlertDecision, ANewGroupIsGrowthThoughTheSumShrank) {
    AlertSituation situation = grownBy(-100);
    situation.hasNewGroups = true;
    EXPECT_EQ(due(situation), Kinds{scanCompleted});
}

TEST(AlertDecision, ANegativeThresholdCountsAShrinkingSum) {
    NotificationPreferences preferences = all;
    preferences.largeOpportunityDeltaBytes = -100;
    EXPECT_EQ(dueAlerts(grownBy(-99), preferences, {}, now), Kinds{largeNewOpportunity});
    EXPECT_EQ(dueAlerts(grownBy(-100), preferences, {}, now), Kinds());
}

TEST(AlertDecision, GrowthBeyond64BitsIsTheLargestThereIs) {
    AlertSituation situation = plenty();
    situation.recoverableBytes = most;
    situation.previousRecoverableBytes = least;
    NotificationPreferences preferences = all;
    preferences.largeOpportunityDeltaBytes = most - 1;
    EXPECT_EQ(dueAlerts(situation, preferences, {}, now), (Kinds{largeNewOpportunity, scanCompleted}));
    preferences.largeOpportunityDeltaBytes = most;
    EXPECT_EQ(dueAlerts(situation, preferences, {}, now), Kinds{scanCompleted});
    std::swap(situation.recoverableBytes, situation.previousRecoverableBytes);
    preferences.largeOpportunityDeltaBytes = least;
    EXPECT_EQ(dueAlerts(situation, preferences, {}, now), Kinds());
}

TEST(AlertDecision, EachKindHasItsSwitch) {
    AlertSituation situation = grownBy(501);
    situation.availableBytes = 0;
    EXPECT_EQ(due(situation), (Kinds{lowSpace, largeNewOpportunity, scanCompleted}));
    NotificationPreferences preferences = all;
    preferences.lowSpaceEnabled = false;
    EXPECT_EQ(dueAlerts(situation, preferences, {}, now), (Kinds{largeNewOpportunity, scanCompleted}));
    preferences.largeOpportunityEnabled = false;
    EXPECT_EQ(dueAlerts(situation, preferences, {}, now), Kinds{scanCompleted});
    preferences.scanCompletedEnabled = false;
    EXPECT_EQ(dueAlerts(situation, preferences, {}, now), Kinds());
}

class Cooldown : public ::testing::TestWithParam<NotificationAlertKind> {};

TEST_P(Cooldown, EndsAfter24HoursToTheMicrosecond) {
    AlertSituation situation = grownBy(501);
    situation.availableBytes = 0;
    const auto isDueAfter = [&](std::chrono::microseconds time) {
        return due(situation, {{GetParam(), now - time}}).contains(GetParam());
    };
    EXPECT_TRUE(isDueAfter(std::chrono::hours(24)));
    EXPECT_FALSE(isDueAfter(std::chrono::hours(24) - std::chrono::microseconds(1)));
    EXPECT_FALSE(isDueAfter(std::chrono::microseconds(0)));
    EXPECT_EQ(due(situation, {{GetParam(), now}}).size(), 2u) << "the others have cooldowns of their own";
}

TEST_P(Cooldown, HoldsForAMomentThatIsStillToCome) {
    AlertSituation situation = grownBy(501);
    situation.availableBytes = 0;
    for (const Date date : {now + std::chrono::hours(1), now + std::chrono::hours(1000), Date::max()})
        EXPECT_FALSE(due(situation, {{GetParam(), date}}).contains(GetParam()));
    EXPECT_TRUE(due(situation, {{GetParam(), Date::min()}}).contains(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(AlertDecision, Cooldown,
                         ::testing::Values(lowSpace, largeNewOpportunity, scanCompleted),
                         [](const auto& info) { return std::string(notificationAlertKindWord(info.param)); });

} // namespace
} // namespace vesko
