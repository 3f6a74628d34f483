#include "base/Date.h"
#include <gtest/gtest.h>
#include <limits>

namespace vesko {
namespace {

constexpr std::int64_t morning = 1'795'256'100; // 2026-11-21T10:15:00Z, by date -u -d @1795256100

TEST(Date, IsWrittenInUtcWithWholeSeconds) {
    EXPECT_EQ(iso8601(dateFromUnixSeconds(morning)), "2026-11-21T10:15:00Z");
    EXPECT_EQ(iso8601(dateFromUnixSeconds(0)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(iso8601(dateFromUnixSeconds(951'782'400)), "2000-02-29T00:00:00Z");
}

TEST(Date, AFractionIsRoundedDownAlsoBefore1970) {
    EXPECT_EQ(iso8601(dateFromUnixSeconds(morning, 999'999'999)), "2026-11-21T10:15:00Z");
    EXPECT_EQ(iso8601(dateFromUnixSeconds(-1, 500'000'000)), "1969-12-31T23:59:59Z");
}

TEST(Date, YearsBeyondFourDigitsAreWrittenAsTheLastOne) {
    EXPECT_EQ(iso8601(Date::max()), "9999-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(Date::min()), "0000-01-01T00:00:00Z");
    EXPECT_TRUE(dateFromIso8601(iso8601(Date::max())));
    EXPECT_TRUE(dateFromIso8601(iso8601(Date::min())));
}

TEST(Date, WhatWasWrittenIsReadBack) {
    for (const std::int64_t seconds : {std::int64_t{0}, morning, std::int64_t{-1}, std::int64_t{951'782'400},
                                       std::int64_t{-62'167'219'200}, std::int64_t{253'402'300'799}})
        EXPECT_EQ(dateFromIso8601(iso8601(dateFromUnixSeconds(seconds))), dateFromUnixSeconds(seconds))
            << seconds;
}

TEST(Date, ANumericOffsetIsRead) {
    EXPECT_EQ(dateFromIso8601("2026-11-21T07:15:00-03:00"), dateFromUnixSeconds(morning));
    EXPECT_EQ(dateFromIso8601("2026-11-21T15:45:00+05:30"), dateFromUnixSeconds(morning));
}

TEST(Date, AnythingElseIsNoDate) {
    for (const char* text : {"",
                             "2026-11-21",
                             "2026-11-21T10:15:00",
                             "2026-11-21T10:15:00.5Z",
                             "2026-11-21 10:15:00Z",
                             "2026-11-21T10:15:00z",
                             "2026-11-21T10:15:00Z ",
                             " 2026-11-21T10:15:00Z",
                             "2026-13-21T10:15:00Z",
                             "2026-00-21T10:15:00Z",
                             "2026-02-29T10:15:00Z",
                             "2026-11-00T10:15:00Z",
                             "2026-11-21T24:00:00Z",
                             "2026-11-21T10:60:00Z",
                             "2026-11-21T10:15:60Z",
                             "2026-11-21T10:15:00+0300",
                             "2026-11-21T10:15:00+24:00",
                             "2026-11-21T10:15:00+03:60",
                             "2026-11-21T10:15:00+3:000",
                             "-026-11-21T10:15:00Z",
                             "2026-1a-21T10:15:00Z",
                             "12026-11-21T10:15:00Z"})
        EXPECT_FALSE(dateFromIso8601(text)) << text;
}

TEST(Date, DistancesAreSignedSecondsAndNeverOverflow) {
    const Date now = dateFromUnixSeconds(morning);
    EXPECT_DOUBLE_EQ(secondsBetween(now, dateFromUnixSeconds(morning + 90, 500'000'000)), 90.5);
    EXPECT_DOUBLE_EQ(secondsBetween(now, dateFromUnixSeconds(morning - 90)), -90);
    EXPECT_DOUBLE_EQ(secondsBetween(Date::min(), Date::max()), 18'446'744'073'709.551615);
    EXPECT_DOUBLE_EQ(secondsBetween(Date::max(), Date::min()), -18'446'744'073'709.551615);
}

TEST(Date, ForeignSecondsAreClamped) {
    EXPECT_EQ(dateFromUnixSeconds(std::numeric_limits<std::int64_t>::max()), Date::max());
    EXPECT_EQ(dateFromUnixSeconds(std::numeric_limits<std::int64_t>::min()), Date::min());
    EXPECT_EQ(dateFromUnixSeconds(9'223'372'036'854, 999'999'999), Date::max());
    EXPECT_EQ(dateFromUnixSeconds(-9'223'372'036'854, -999'999'999), Date::min());
}

TEST(Date, ReferenceSecondsCountFrom2001) {
    EXPECT_EQ(referenceSeconds(dateFromUnixSeconds(978'307'200)), 0);
    EXPECT_EQ(referenceSeconds(dateFromUnixSeconds(morning, 250'000'000)), 816'948'900.25);
    EXPECT_EQ(dateFromReferenceSeconds(816'948'900.25), dateFromUnixSeconds(morning, 250'000'000));
    EXPECT_EQ(dateFromReferenceSeconds(-978'307'200), dateFromUnixSeconds(0));
}

TEST(Date, EveryMicrosecondOfOurTimeSurvivesAsReferenceSeconds) {
    for (std::int64_t nanoseconds = 0; nanoseconds < 1'000'000'000; nanoseconds += 997'000) {
        const Date date = dateFromUnixSeconds(morning, nanoseconds);
        ASSERT_EQ(dateFromReferenceSeconds(referenceSeconds(date)), date) << nanoseconds;
    }
}

TEST(Date, ReferenceSecondsOutOfRangeAreNoDate) {
    for (const double seconds :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), 1e300, -1e300, 9.3e12, -9.3e12, 9.2233720368e12})
        EXPECT_FALSE(dateFromReferenceSeconds(seconds)) << seconds;
}

TEST(Date, TheSystemsDatesAreThoseOfTheClock) {
    const auto before = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    const Date now = systemDates().now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

} // namespace
} // namespace vesko
