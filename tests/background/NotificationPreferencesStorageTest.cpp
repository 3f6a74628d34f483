#include "background/NotificationPreferencesStorage.h"

#include "support/MemoryUserDefaults.h"
#include <gtest/gtest.h>
#include <limits>

namespace vesko {
namespace {

using Storage = NotificationPreferencesStorage;
using LastFired = Storage::LastFired;
using testing::MemoryUserDefaults;

constexpr NotificationPreferences unusual{false, 3, false, -4, true};
constexpr std::string_view unusualText =
    R"({"lowSpaceEnabled":false,"lowSpaceThresholdBytes":3,"largeOpportunityEnabled":false,)"
    R"("largeOpportunityDeltaBytes":-4,"scanCompletedEnabled":true})";

NotificationPreferences loaded(std::string_view bytes) {
    MemoryUserDefaults defaults;
    defaults.setData("vesko.notificationPreferences", bytes);
    return Storage::loadPreferences(defaults);
}

LastFired loadedLastFired(std::string_view bytes) {
    MemoryUserDefaults defaults;
    defaults.setData("vesko.notificationLastFired", bytes);
    return Storage::loadLastFired(defaults);
}

std::string with(std::string text, std::string_view part, std::string_view other) {
    EXPECT_TRUE(text.contains(part));
    return text.replace(text.find(part), part.size(), other);
}

Date at(std::int64_t referenceSeconds) { return dateFromUnixSeconds(978'307'200 + referenceSeconds); }

TEST(NotificationPreferencesStorage, WithoutAValueTheDefaultsHold) {
    const MemoryUserDefaults defaults;
    const NotificationPreferences preferences = Storage::loadPreferences(defaults);
    EXPECT_TRUE(preferences.lowSpaceEnabled);
    EXPECT_EQ(preferences.lowSpaceThresholdBytes, 10'000'000'000);
    EXPECT_TRUE(preferences.largeOpportunityEnabled);
    EXPECT_EQ(preferences.largeOpportunityDeltaBytes, 5'000'000'000);
    EXPECT_FALSE(preferences.scanCompletedEnabled);
}

TEST(NotificationPreferencesStorage, PreferencesAreOneCompactObjectInTheOrderOfTheFields) {
    MemoryUserDefaults defaults;
    Storage::savePreferences({}, defaults);
    EXPECT_EQ(defaults.data("vesko.notificationPreferences"),
              R"({"lowSpaceEnabled":true,"lowSpaceThresholdBytes":10000000000,)"
              R"("largeOpportunityEnabled":true,"largeOpportunityDeltaBytes":5000000000,)"
              R"("scanCompletedEnabled":false})");
    Storage::savePreferences(unusual, defaults);
    EXPECT_EQ(defaults.data("vesko.notificationPreferences"), unusualText);
    EXPECT_EQ(Storage::loadPreferences(defaults), unusual);
}

TEST(NotificationPreferencesStorage, OtherOrderSpaceAndKeysOfOthersDoNotMatter) {
    EXPECT_EQ(loaded(R"({ "scanCompletedEnabled": true, "later": null,
                          "largeOpportunityDeltaBytes": -4, "largeOpportunityEnabled": false,
                          "lowSpaceThresholdBytes": 3, "lowSpaceEnabled": false })"),
              unusual);
}

TEST(NotificationPreferencesStorage, WithOneKeyMissingAllDefaultsHold) {
    for (const char* part : {R"("lowSpaceEnabled":false,)", R"("lowSpaceThresholdBytes":3,)",
                             R"("largeOpportunityEnabled":false,)", R"("largeOpportunityDeltaBytes":-4,)",
                             R"(,"scanCompletedEnabled":true)"})
        EXPECT_EQ(loaded(with(std::string(unusualText), part, "")), NotificationPreferences()) << part;
}

TEST(NotificationPreferencesStorage, WithOneValueOfAnotherTypeAllDefaultsHold) {
    const std::string text(unusualText);
    for (const char* value : {"0", "1", "\"false\"", "null", "[]", "{}", "0.0"}) {
        EXPECT_EQ(loaded(with(text, "Enabled\":false", "Enabled\":" + std::string(value))),
                  NotificationPreferences())
            << value;
        EXPECT_EQ(loaded(with(text, "\"scanCompletedEnabled\":true",
                              "\"scanCompletedEnabled\":" + std::string(value))),
                  NotificationPreferences())
            << value;
    }
    for (const char* value : {"3.5", "true", "\"3\"", "null", "[3]", "{}", "9223372036854775808",
                              "-9223372036854775809", "1e19", "NaN", "Infinity", "03", "+3", "0x3"})
        EXPECT_EQ(loaded(with(text, ":3,", ":" + std::string(value) + ",")), NotificationPreferences())
            << value;
}

TEST(NotificationPreferencesStorage, AWholeNumberMayBeWrittenAsAFraction) {
    for (const char* value : {"3.0", "3e0", "0.3E1", "30e-1"})
        EXPECT_EQ(loaded(with(std::string(unusualText), ":3,", ":" + std::string(value) + ",")), unusual)
            << value;
}

TEST(NotificationPreferencesStorage, AmountsKeepAll64Bits) {
    NotificationPreferences extreme = unusual;
    extreme.lowSpaceThresholdBytes = std::numeric_limits<std::int64_t>::max();
    extreme.largeOpportunityDeltaBytes = std::numeric_limits<std::int64_t>::min();
    MemoryUserDefaults defaults;
    Storage::savePreferences(extreme, defaults);
    EXPECT_EQ(Storage::loadPreferences(defaults), extreme);
}

TEST(NotificationPreferencesStorage, OfAKeyThatIsThereTwiceTheLastCounts) {
    EXPECT_EQ(loaded(with(std::string(unusualText), ":3,", ":9,\"lowSpaceThresholdBytes\":3,")), unusual);
}

TEST(NotificationPreferencesStorage, WhatIsNoSuchObjectCountsAsNone) {
    const std::string text(unusualText);
    for (std::size_t length = 0; length < text.size(); ++length)
        ASSERT_EQ(loaded(text.substr(0, length)), NotificationPreferences()) << length;
    for (const std::string& other : {"[" + text + "]", text + text, std::string("null"), "\"" + text + "\"",
                                     text + '\0', std::string(100'000, '[')})
        EXPECT_EQ(loaded(other), NotificationPreferences()) << other.substr(0, 80);
}

TEST(NotificationPreferencesStorage, AValueThatIsNoDataCountsAsNone) {
    MemoryUserDefaults defaults;
    defaults.setString("vesko.notificationPreferences", unusualText);
    defaults.setString("vesko.notificationLastFired", R"([{"kind":"lowSpace","date":1}])");
    EXPECT_EQ(Storage::loadPreferences(defaults), NotificationPreferences());
    EXPECT_EQ(Storage::loadLastFired(defaults), LastFired());
}

TEST(NotificationPreferencesStorage, LastFiredIsAListOfKindsWithSecondsSince2001) {
    MemoryUserDefaults defaults;
    const LastFired all{
        {NotificationAlertKind::scanCompleted, at(0)},
        {NotificationAlertKind::lowSpace, at(785'000'000)},
        {NotificationAlertKind::largeNewOpportunity, at(785'000'000) + std::chrono::microseconds(123'456)}};
    Storage::saveLastFired(all, defaults);
    EXPECT_EQ(defaults.data("vesko.notificationLastFired"),
              R"([{"kind":"lowSpace","date":785000000},)"
              R"({"kind":"largeNewOpportunity","date":785000000.123456},)"
              R"({"kind":"scanCompleted","date":0}])");
    EXPECT_EQ(Storage::loadLastFired(defaults), all);
    Storage::saveLastFired({}, defaults);
    EXPECT_EQ(defaults.data("vesko.notificationLastFired"), "[]");
}

TEST(NotificationPreferencesStorage, AnElementOfAnUnknownKindIsPassedOver) {
    EXPECT_EQ(
        loadedLastFired(R"([{"kind":"later","date":5},{"kind":"lowSpace","date":7},{"kind":"","date":5}])"),
        (LastFired{{NotificationAlertKind::lowSpace, at(7)}}));
}

TEST(NotificationPreferencesStorage, AnEmptyListIsAnEmptyMap) {
    EXPECT_EQ(loadedLastFired("[]"), LastFired());
    EXPECT_EQ(Storage::loadLastFired(MemoryUserDefaults()), LastFired());
}

TEST(NotificationPreferencesStorage, OfSeveralElementsOfOneKindTheLastCounts) {
    EXPECT_EQ(loadedLastFired(R"([{"kind":"lowSpace","date":9},{"kind":"lowSpace","date":7}])"),
              (LastFired{{NotificationAlertKind::lowSpace, at(7)}}));
}

TEST(NotificationPreferencesStorage, OneWrongElementSpoilsTheList) {
    for (const char* element :
         {R"({"kind":"lowSpace"})", R"({"date":7})", R"({"kind":"lowSpace","date":"7"})",
          R"({"kind":"lowSpace","date":null})", R"({"kind":"lowSpace","date":true})",
          R"({"kind":1,"date":7})", R"({"kind":"later","date":"7"})", R"({"kind":"lowSpace","date":1e400})",
          "null", "[]", "7"})
        EXPECT_EQ(loadedLastFired(R"([{"kind":"scanCompleted","date":7},)" + std::string(element) + "]"),
                  LastFired())
            << element;
    EXPECT_EQ(loadedLastFired(R"({"kind":"scanCompleted","date":7})"), LastFired());
}

TEST(NotificationPreferencesStorage, DatesOfTheFarPastAndFutureAreTheFarthestThereAre) {
    EXPECT_EQ(loadedLastFired(R"([{"kind":"lowSpace","date":1e300},{"kind":"scanCompleted","date":-1e300}])"),
              (LastFired{{NotificationAlertKind::lowSpace, Date::max()},
                         {NotificationAlertKind::scanCompleted, Date::min()}}));
}

} // namespace
} // namespace vesko
